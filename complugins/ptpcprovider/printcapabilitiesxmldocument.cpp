// Creating, finding and renaming in a PrintCapabilities.
#include "printcapabilitiesxmldocument.h"

#include "printschematext.h"
#include "printticketquerybuilder.h"

#include <span>

namespace {

constexpr const WCHAR* kSourceUnit = W("printcapabilitiesxmldocument");
constexpr const WCHAR* kRelative = W(".");  // start of a query below a node
constexpr ConstantBstr kConstrainedAttribute(W("constrained"));

// A property of the framework namespace with its value.
struct TypedProperty {
    const WCHAR* name;
    const WCHAR* type;
    Bstr value;
};

Bstr Text(const ComChecks& checks, LONG value) { return CopyText(checks, FormatInteger(value).AsWideString()); }

// All properties are created before the first is appended.
void AppendProperties(PrintCapabilitiesXmlDocument& document, IXMLDOMElement* parent,
                      std::span<const TypedProperty> properties) {
    std::vector<ComPtr<IXMLDOMElement>> elements;
    for (const TypedProperty& property : properties) {
        document.CreateProperty(NamespaceKind::Framework, property.name, property.type, property.value.Get(),
                                elements.emplace_back().Put());
    }
    for (const ComPtr<IXMLDOMElement>& element : elements) document.AppendChild(parent, element.Get());
}

}  // namespace

PrintCapabilitiesXmlDocument::PrintCapabilitiesXmlDocument(IXMLDOMDocument2* document)
    : PrintSchemaXmlDocument(W("PrintCapabilities"), document) {}

// ---- creation

void PrintCapabilitiesXmlDocument::AppendProperty(IXMLDOMElement* parent, NamespaceKind kind, const WCHAR* name,
                                                  const WCHAR* type, const WCHAR* value) {
    ComPtr<IXMLDOMElement> property;
    CreateProperty(kind, name, type, value, property.Put());
    AppendChild(parent, property.Get());
}

void PrintCapabilitiesXmlDocument::AppendDisplayName(IXMLDOMElement* parent, const WCHAR* displayName) {
    if (IsEmpty(displayName)) return;
    AppendProperty(parent, NamespaceKind::Keywords, W("DisplayName"), W("string"), displayName);
}

HRESULT PrintCapabilitiesXmlDocument::CreateFeature(const WCHAR* name, const WCHAR* displayName,
                                                    IXMLDOMElement** feature) {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::CreateFeature"), kSourceUnit);
    checks.Require(feature != nullptr, E_POINTER);
    *feature = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    ComPtr<IXMLDOMElement> created;
    CreateNamedElement(W("Feature"), KeywordsPrefix(), name, created.Put());
    AppendDisplayName(created.Get(), displayName);
    *feature = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreatePickOneFeature(const WCHAR* name, const WCHAR* displayName,
                                                           IXMLDOMElement** feature) {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::CreatePickOneFeature"), kSourceUnit);
    checks.Require(feature != nullptr, E_POINTER);
    *feature = nullptr;
    ComPtr<IXMLDOMElement> created;
    CreateFeature(name, displayName, created.Put());
    AppendProperty(created.Get(), NamespaceKind::Framework, W("SelectionType"), W("QName"),
                   Join(checks, KeywordsPrefix(), W("PickOne")).Get());
    *feature = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreateOption(const WCHAR* name, const WCHAR* prefix, const WCHAR* displayName,
                                                   const WCHAR* constraint, IXMLDOMElement** option) {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::CreateOption"), kSourceUnit);
    checks.Require(option != nullptr, E_POINTER);
    *option = nullptr;
    checks.Require(!IsEmpty(name) && !IsEmpty(prefix), E_INVALIDARG);
    ComPtr<IXMLDOMElement> created;
    CreateNamedElement(W("Option"), prefix, name, created.Put());
    AppendDisplayName(created.Get(), displayName);
    if (!IsEmpty(constraint)) {
        SetAttribute(created.Get(), kConstrainedAttribute.Get(), nullptr, Join(checks, KeywordsPrefix(), constraint));
    }
    *option = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::AppendChildOption(const WCHAR* name, const WCHAR* prefix,
                                                        const WCHAR* displayName, const WCHAR* constraint,
                                                        IXMLDOMNode* parent) {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::AppendChildOption"), kSourceUnit);
    checks.Require(parent != nullptr, E_POINTER);
    ComPtr<IXMLDOMElement> option;
    CreateOption(name, prefix, displayName, constraint, option.Put());
    return AppendChild(parent, option.Get());
}

HRESULT PrintCapabilitiesXmlDocument::CreateIntegerParameterDef(const WCHAR* prefix, const WCHAR* name,
                                                                const WCHAR* mandatory, const WCHAR* displayName,
                                                                LONG defaultValue, LONG minimum, LONG maximum,
                                                                LONG multiple, const WCHAR* unitType,
                                                                IXMLDOMElement** parameter) {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::CreateIntegerParameterDef"), kSourceUnit);
    checks.Require(parameter != nullptr, E_POINTER);
    *parameter = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    ComPtr<IXMLDOMElement> created;
    CreateNamedElement(W("ParameterDef"), ViewOf(prefix), name, created.Put());
    const TypedProperty properties[] = {
        {W("DataType"), W("QName"), Join(checks, SchemaPrefix(), W("integer"))},
        {W("DefaultValue"), W("integer"), Text(checks, defaultValue)},
        {W("MaxValue"), W("integer"), Text(checks, maximum)},
        {W("MinValue"), W("integer"), Text(checks, minimum)},
        {W("Mandatory"), W("QName"), Join(checks, KeywordsPrefix(), ViewOf(mandatory))},
        {W("UnitType"), W("string"), CopyText(checks, ViewOf(unitType))},
    };
    AppendProperties(*this, created.Get(), properties);
    AppendProperty(created.Get(), NamespaceKind::Framework, W("Multiple"), W("integer"), FormatInteger(multiple));
    AppendDisplayName(created.Get(), displayName);
    *parameter = created.Detach();
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::CreateStringParameterDef(const WCHAR* prefix, const WCHAR* name,
                                                               const WCHAR* mandatory, const WCHAR* displayName,
                                                               const WCHAR* defaultValue, LONG minimumLength,
                                                               LONG maximumLength, const WCHAR* unitType,
                                                               IXMLDOMElement** parameter) {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::CreateStringParameterDef"), kSourceUnit);
    checks.Require(parameter != nullptr, E_POINTER);
    *parameter = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    ComPtr<IXMLDOMElement> created;
    CreateNamedElement(W("ParameterDef"), ViewOf(prefix), name, created.Put());
    const TypedProperty properties[] = {
        {W("DataType"), W("QName"), Join(checks, SchemaPrefix(), W("string"))},
        {W("MaxLength"), W("integer"), Text(checks, maximumLength)},
        {W("MinLength"), W("integer"), Text(checks, minimumLength)},
        {W("Mandatory"), W("QName"), Join(checks, KeywordsPrefix(), ViewOf(mandatory))},
        {W("UnitType"), W("string"), CopyText(checks, ViewOf(unitType))},
    };
    AppendProperties(*this, created.Get(), properties);
    AppendDisplayName(created.Get(), displayName);
    AppendProperty(created.Get(), NamespaceKind::Framework, W("DefaultValue"), W("string"), defaultValue);
    *parameter = created.Detach();
    return S_OK;
}

// ---- lookups and deletion

HRESULT PrintCapabilitiesXmlDocument::GetParameterDefNodeIfExists(const WCHAR* prefix, const WCHAR* name,
                                                                  IXMLDOMNode** node) const {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::GetParameterDefNodeIfExists"), kSourceUnit);
    checks.Require(node != nullptr, E_POINTER);
    *node = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    const Bstr query =
        ComposeQuery(PrefixOf(NamespaceKind::Framework), [&](auto& steps) { steps.AddParameterDef(prefix, name); });
    return GetNode(query.Get(), node);
}

HRESULT PrintCapabilitiesXmlDocument::DeleteParameterDefNodeIfExists(const WCHAR* prefix, const WCHAR* name) {
    ComPtr<IXMLDOMNode> parameter;
    if (GetParameterDefNodeIfExists(prefix, name, parameter.Put()) == S_FALSE) return S_FALSE;
    return DeleteNode(parameter.Get());
}

ComPtr<IXMLDOMNodeList> PrintCapabilitiesXmlDocument::GetChildOptionNodes(IXMLDOMNode* feature) const {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::GetChildOptionNodes"), kSourceUnit);
    checks.Require(feature != nullptr, E_POINTER);
    CXString query;
    query.Format(W("./%sOption"), PrefixOf(NamespaceKind::Framework).Get());
    ComPtr<IXMLDOMNodeList> options;
    checks.Require(
        Found(checks, feature->selectNodes(CopyText(checks, query.AsWideString()).Get(), options.Put()), options),
        E_FAIL);
    return options;
}

HRESULT PrintCapabilitiesXmlDocument::GetChildOptionNodeIfExists(IXMLDOMNode* feature, const WCHAR* prefix,
                                                                 const WCHAR* name, IXMLDOMNode** option) const {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::GetChildOptionNodeIfExists"), kSourceUnit);
    checks.Require(feature && option, E_POINTER);
    *option = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    const Bstr query = ComposeQuery(
        PrefixOf(NamespaceKind::Framework), [&](auto& steps) { steps.AddChildOptionName(prefix, name); }, kRelative);
    ComPtr<IXMLDOMNode> found;
    if (!Found(checks, feature->selectSingleNode(query.Get(), found.Put()), found)) return S_FALSE;
    *option = found.Detach();
    return S_OK;
}

CXString PrintCapabilitiesXmlDocument::GetChildScoredPropertyValueAsString(IXMLDOMNode* node, const WCHAR* name) const {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::GetChildScoredPropertyValueAsString"), kSourceUnit);
    checks.Require(node != nullptr, E_POINTER);
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    const Bstr query = ComposeQuery(
        PrefixOf(NamespaceKind::Framework),
        [&](auto& steps) { steps.AddScoredProperty(PrefixOf(NamespaceKind::Keywords).Get(), name); }, kRelative);
    ComPtr<IXMLDOMNode> property;
    checks.Require(Found(checks, node->selectSingleNode(query.Get(), property.Put()), property), E_FAIL);
    Bstr text;
    checks.Succeeds(GetTrimmedText(property.Get(), &text));
    checks.Require(!text.IsEmpty(), E_FAIL);
    return CXString(text.View());
}

// ---- display names

HRESULT PrintCapabilitiesXmlDocument::ReplaceDisplayNamePropertyValue(IXMLDOMNode* node, const WCHAR* text) {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::ReplaceDisplayNamePropertyValue"), kSourceUnit);
    checks.Require(node != nullptr, E_INVALIDARG);
    const Bstr query = ComposeQuery(
        PrefixOf(NamespaceKind::Framework),
        [&](auto& steps) { steps.AddChildPropertyValue(PrefixOf(NamespaceKind::Keywords).Get(), W("DisplayName")); },
        kRelative);
    ComPtr<IXMLDOMNode> value;
    if (!Found(checks, node->selectSingleNode(query.Get(), value.Put()), value)) return kElementNotFound;
    checks.Succeeds(value->put_text(MakeWritable(CopyText(checks, ViewOf(text))).Get()));
    return S_OK;
}

HRESULT PrintCapabilitiesXmlDocument::ReplaceOptionDisplayNamePropertyValue(IXMLDOMNode* feature,
                                                                            const WCHAR* optionPrefix,
                                                                            const WCHAR* optionName,
                                                                            const WCHAR* text) {
    const ComChecks checks(W("PrintCapabilitiesXmlDocument::ReplaceOptionDisplayNamePropertyValue"), kSourceUnit);
    checks.Require(!IsEmpty(optionPrefix) && !IsEmpty(optionName) && !IsEmpty(text), E_INVALIDARG);
    checks.Require(feature != nullptr, E_POINTER);
    ComPtr<IXMLDOMNode> option;
    if (GetChildOptionNodeIfExists(feature, optionPrefix, optionName, option.Put()) == S_FALSE) return S_FALSE;
    ReplaceDisplayNamePropertyValue(option.Get(), text);
    return S_OK;
}
