// Reading, creating and deleting in a PrintTicket.
#include "printticketxmldocument.h"

#include "printschematext.h"
#include "printticketquerybuilder.h"

#include <unordered_set>
#include <utility>

namespace {

constexpr const WCHAR* kSourceUnit = W("printticketxmldocument");

}  // namespace

PrintTicketXmlDocument::PrintTicketXmlDocument(IXMLDOMDocument2* document)
    : PrintSchemaXmlDocument(W("PrintTicket"), document) {}

// ---- lookups

HRESULT PrintTicketXmlDocument::GetFeatureOption(const WCHAR* feature, Bstr* optionName, Bstr* optionPrefix) const {
    const ComChecks checks(W("PrintTicketXmlDocument::GetFeatureOption"), kSourceUnit);
    checks.Require(optionName && optionPrefix, E_POINTER);
    checks.Require(!IsEmpty(feature), E_INVALIDARG);
    const Bstr& keywordsPrefix = PrefixOf(NamespaceKind::Keywords);
    const Bstr query = ComposeQuery(PrefixOf(NamespaceKind::Framework), [&](auto& steps) {
        steps.AddFeature(keywordsPrefix.Get(), feature);
        steps.AddOption(keywordsPrefix.Get());
    });
    ComPtr<IXMLDOMNode> option;
    if (GetNode(query.Get(), option.Put()) == S_FALSE) return kElementNotFound;

    Bstr fullName;
    if (GetAttributeValue(option.Get(), W("name"), &fullName) == S_FALSE) {
        fullName = GetTypedValue(checks, option.Get());
    }
    const std::size_t colon = fullName.View().find(W(':'));
    checks.Require(colon != WideStringView::npos, E_FAIL);
    *optionName = CopyText(checks, fullName.View().substr(colon + 1));
    *optionPrefix = CopyText(checks, fullName.View().substr(0, colon + 1));
    return S_OK;
}

HRESULT PrintTicketXmlDocument::GetScoredPropertyValue(const WCHAR* feature, const WCHAR* scoredProperty,
                                                       Bstr* text) const {
    const ComChecks checks(W("PrintTicketXmlDocument::GetScoredPropertyValue"), kSourceUnit);
    checks.Require(text != nullptr, E_POINTER);
    text->Reset();
    checks.Require(!IsEmpty(feature) && !IsEmpty(scoredProperty), E_INVALIDARG);
    const Bstr& keywordsPrefix = PrefixOf(NamespaceKind::Keywords);
    const Bstr query = ComposeQuery(PrefixOf(NamespaceKind::Framework), [&](auto& steps) {
        steps.AddFeature(keywordsPrefix.Get(), feature);
        steps.AddScoredProperty(keywordsPrefix.Get(), scoredProperty);
    });
    return GetNodeValue(query.Get(), text) == S_FALSE ? kElementNotFound : S_OK;
}

HRESULT PrintTicketXmlDocument::GetScoredPropertyValue(const WCHAR* feature, const WCHAR* scoredProperty,
                                                       LONG* value) const {
    const ComChecks checks(W("PrintTicketXmlDocument::GetScoredPropertyValue"), kSourceUnit);
    checks.Require(value != nullptr, E_POINTER);
    checks.Require(!IsEmpty(feature) && !IsEmpty(scoredProperty), E_INVALIDARG);
    Bstr text;
    const HRESULT hr = GetScoredPropertyValue(feature, scoredProperty, &text);
    if (hr == S_OK) *value = ReadDecimalInteger(text.View());
    return hr;
}

HRESULT PrintTicketXmlDocument::GetParameterInitNodeIfExists(const WCHAR* prefix, const WCHAR* name,
                                                             IXMLDOMNode** node) const {
    const ComChecks checks(W("PrintTicketXmlDocument::GetParameterInitNodeIfExists"), kSourceUnit);
    checks.Require(node != nullptr, E_POINTER);
    *node = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    const Bstr query =
        ComposeQuery(PrefixOf(NamespaceKind::Framework), [&](auto& steps) { steps.AddParameterInit(prefix, name); });
    return GetNode(query.Get(), node);
}

HRESULT PrintTicketXmlDocument::GetParameterInitValueNodeIfExists(const WCHAR* prefix, const WCHAR* name,
                                                                  IXMLDOMNode** node) const {
    const ComChecks checks(W("PrintTicketXmlDocument::GetParameterInitValueNodeIfExists"), kSourceUnit);
    checks.Require(node != nullptr, E_POINTER);
    *node = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    const Bstr query = ComposeQuery(PrefixOf(NamespaceKind::Framework), [&](auto& steps) {
        steps.AddParameterInit(prefix, name);
        steps.AddValue();
    });
    return GetNode(query.Get(), node);
}

// ---- creation

HRESULT PrintTicketXmlDocument::CreateFeatureOptionPair(const WCHAR* feature, IXMLDOMElement** featureElement,
                                                        IXMLDOMElement** optionElement) {
    const ComChecks checks(W("PrintTicketXmlDocument::CreateFeatureOptionPair"), kSourceUnit);
    checks.Require(featureElement && optionElement, E_POINTER);
    *featureElement = nullptr;
    *optionElement = nullptr;
    checks.Require(!IsEmpty(feature), E_INVALIDARG);
    ComPtr<IXMLDOMElement> newFeature;
    CreateNamedElement(W("Feature"), KeywordsPrefix(), feature, newFeature.Put());
    ComPtr<IXMLDOMElement> newOption = CreateElement(Join(checks, FrameworkPrefix(), W("Option")).Get());
    AppendChild(newFeature.Get(), newOption.Get());
    *featureElement = newFeature.Detach();
    *optionElement = newOption.Detach();
    return S_OK;
}

HRESULT PrintTicketXmlDocument::CreateFeatureOptionPair(const WCHAR* feature, bool optionIsKeyword, const WCHAR* option,
                                                        IXMLDOMElement** featureElement,
                                                        IXMLDOMElement** optionElement) {
    const ComChecks checks(W("PrintTicketXmlDocument::CreateFeatureOptionPair"), kSourceUnit);
    checks.Require(featureElement && optionElement, E_POINTER);
    *featureElement = nullptr;
    *optionElement = nullptr;
    checks.Require(!IsEmpty(feature) && !IsEmpty(option), E_INVALIDARG);
    ComPtr<IXMLDOMElement> newFeature;
    ComPtr<IXMLDOMElement> newOption;
    CreateFeatureOptionPair(feature, newFeature.Put(), newOption.Put());
    SetAttribute(newOption.Get(), kNameAttribute.Get(), nullptr,
                 Join(checks, optionIsKeyword ? KeywordsPrefix() : PrivatePrefix(), option));
    *featureElement = newFeature.Detach();
    *optionElement = newOption.Detach();
    return S_OK;
}

HRESULT PrintTicketXmlDocument::CreateParameterInit(const ComChecks& checks, const WCHAR* prefix, const WCHAR* name,
                                                    const WCHAR* type, Bstr value, IXMLDOMElement** parameter) {
    checks.Require(parameter != nullptr, E_POINTER);
    *parameter = nullptr;
    checks.Require(!IsEmpty(prefix) && !IsEmpty(name) && !value.IsEmpty(), E_INVALIDARG);
    ComPtr<IXMLDOMElement> created;
    CreateNamedElement(W("ParameterInit"), prefix, name, created.Put());
    AppendTypedValue(checks, created.Get(), type, std::move(value));
    *parameter = created.Detach();
    return S_OK;
}

HRESULT PrintTicketXmlDocument::CreateStringParameterInit(const WCHAR* prefix, const WCHAR* name, const WCHAR* value,
                                                          IXMLDOMElement** parameter) {
    const ComChecks checks(W("PrintTicketXmlDocument::CreateStringParameterInit"), kSourceUnit);
    return CreateStringParameterInit(prefix, name, CopyText(checks, ViewOf(value)), parameter);
}

HRESULT PrintTicketXmlDocument::CreateStringParameterInit(const WCHAR* prefix, const WCHAR* name, Bstr value,
                                                          IXMLDOMElement** parameter) {
    const ComChecks checks(W("PrintTicketXmlDocument::CreateStringParameterInit"), kSourceUnit);
    return CreateParameterInit(checks, prefix, name, W("string"), std::move(value), parameter);
}

HRESULT PrintTicketXmlDocument::CreateIntegerParameterInit(const WCHAR* prefix, const WCHAR* name, ULONG value,
                                                           IXMLDOMElement** parameter) {
    const ComChecks checks(W("PrintTicketXmlDocument::CreateIntegerParameterInit"), kSourceUnit);
    return CreateParameterInit(checks, prefix, name, W("integer"),
                               CopyText(checks, FormatUnsignedInteger(value).AsWideString()), parameter);
}

HRESULT PrintTicketXmlDocument::CreateSignedIntegerParameterInit(const WCHAR* prefix, const WCHAR* name, LONG value,
                                                                 IXMLDOMElement** parameter) {
    const ComChecks checks(W("PrintTicketXmlDocument::CreateSignedIntegerParameterInit"), kSourceUnit);
    return CreateParameterInit(checks, prefix, name, W("integer"),
                               CopyText(checks, FormatInteger(value).AsWideString()), parameter);
}

HRESULT PrintTicketXmlDocument::AppendIntegerParameterInit(const WCHAR* prefix, const WCHAR* name, ULONG value) {
    ComPtr<IXMLDOMElement> parameter;
    CreateIntegerParameterInit(prefix, name, value, parameter.Put());
    return AppendChildToRootNode(parameter.Get());
}

// ---- deletion

HRESULT PrintTicketXmlDocument::DeleteParameterInitNodeIfExists(const WCHAR* prefix, const WCHAR* name) {
    ComPtr<IXMLDOMNode> parameter;
    if (GetParameterInitNodeIfExists(prefix, name, parameter.Put()) == S_FALSE) return S_FALSE;
    return DeleteNode(parameter.Get());
}

HRESULT PrintTicketXmlDocument::DeleteFeatureAndOrphanParameterInitsIfExists(const WCHAR* prefix, const WCHAR* name) {
    const ComChecks checks(W("PrintTicketXmlDocument::DeleteFeatureAndOrphanParameterInitsIfExists"), kSourceUnit);
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    if (DeleteFeatureNodeIfExists(prefix, name) == S_FALSE) return S_FALSE;
    const Bstr further =
        ComposeQuery(PrefixOf(NamespaceKind::Framework), [&](auto& steps) { steps.AddFeature(prefix, name); });
    DeleteSelected(checks, further.Get());
    // What each deletion orphans is orphaned still when all are gone.
    ComPtr<IXMLDOMNodeList> parameterInits;
    ComPtr<IXMLDOMNodeList> parameterRefs;
    GetNodes(W("ParameterInit"), parameterInits.Put());
    GetNodes(W("ParameterRef"), parameterRefs.Put());
    DeleteParamInitOrphans(parameterRefs.Get(), parameterInits.Get());
    return S_FALSE;
}

HRESULT PrintTicketXmlDocument::DeleteParamInitOrphans(IXMLDOMNodeList* parameterRefs,
                                                       IXMLDOMNodeList* parameterInits) {
    const ComChecks checks(W("PrintTicketXmlDocument::DeleteParamInitOrphans"), kSourceUnit);
    checks.Require(parameterRefs && parameterInits, E_POINTER);
    const LONG refCount = CountOf(checks, parameterRefs);
    if (refCount == 0) return DeleteNodeList(parameterInits);
    const LONG initCount = CountOf(checks, parameterInits);
    if (initCount == 0) return S_OK;

    std::unordered_set<WideString> referredTo;
    Bstr name;
    for (LONG index = 0; index < refCount; ++index) {
        const ComPtr<IXMLDOMNode> reference = NodeAt(checks, parameterRefs, index);
        if (GetAttributeValue(reference.Get(), W("name"), &name) == S_OK) referredTo.emplace(name.View());
    }
    for (LONG index = 0; index < initCount; ++index) {
        const ComPtr<IXMLDOMNode> parameter = NodeAt(checks, parameterInits, index);
        if (GetAttributeValue(parameter.Get(), W("name"), &name) == S_FALSE) continue;
        if (!referredTo.contains(WideString(name.View()))) DeleteNode(parameter.Get());
    }
    return S_OK;
}

HRESULT PrintTicketXmlDocument::DeleteNodeList(IXMLDOMNodeList* nodes) {
    const ComChecks checks(W("PrintTicketXmlDocument::DeleteNodeList"), kSourceUnit);
    checks.Require(nodes != nullptr, E_POINTER);
    const LONG count = CountOf(checks, nodes);
    for (LONG index = 0; index < count; ++index) DeleteNode(NodeAt(checks, nodes, index).Get());
    return S_OK;
}
