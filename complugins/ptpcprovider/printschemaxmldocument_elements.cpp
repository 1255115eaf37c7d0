// Creation and appending of Print Schema elements and attributes.
#include <printsubsystem/printschema.h>

#include "printschematext.h"
#include "printschemaxmldocument.h"

#include <utility>

namespace {

constexpr const WCHAR* kSourceUnit = W("printschemaxmldocument");
constexpr ConstantBstr kElementNamespace(kFrameworkNamespace);
constexpr ConstantBstr kInstanceNamespace(kXmlSchemaInstanceNamespace);

}  // namespace

HRESULT PrintSchemaXmlDocument::CreateXMLElement(const WCHAR* qualifiedName, IXMLDOMElement** element) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateXMLElement"), kSourceUnit);
    checks.Require(element != nullptr, E_POINTER);
    *element = nullptr;
    checks.Require(qualifiedName != nullptr, E_INVALIDARG);
    *element = CreateElement(CopyText(checks, qualifiedName).Get()).Detach();
    return S_OK;
}

ComPtr<IXMLDOMElement> PrintSchemaXmlDocument::CreateElement(BSTR qualifiedName) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateXMLElement"), kSourceUnit);
    checks.Require(HasDocument(), kNoDocument);
    ComPtr<IXMLDOMNode> node;
    checks.Succeeds(document_->createNode(Variant(static_cast<LONG>(NODE_ELEMENT)).Get(), qualifiedName,
                                          kElementNamespace.Get(), node.Put()));
    return QueryFor<IXMLDOMElement>(checks, node.Get(), IID_IXMLDOMElement);
}

HRESULT PrintSchemaXmlDocument::AppendXMLAttribute(IXMLDOMElement* element, const WCHAR* qualifiedName,
                                                   const WCHAR* namespaceUri, const WCHAR* value) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendXMLAttribute"), kSourceUnit);
    checks.Require(element && qualifiedName && value, E_INVALIDARG);
    const Bstr uri = namespaceUri ? CopyText(checks, namespaceUri) : Bstr();
    SetAttribute(element, CopyText(checks, qualifiedName).Get(), uri.Get(), CopyText(checks, value));
    return S_OK;
}

void PrintSchemaXmlDocument::SetAttribute(IXMLDOMElement* element, BSTR qualifiedName, BSTR namespaceUri, Bstr value) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendXMLAttribute"), kSourceUnit);
    checks.Require(HasDocument(), kNoDocument);
    ComPtr<IXMLDOMNode> node;
    checks.Succeeds(document_->createNode(Variant(static_cast<LONG>(NODE_ATTRIBUTE)).Get(), qualifiedName, namespaceUri,
                                          node.Put()));
    checks.Succeeds(node->put_nodeValue(Variant(MakeWritable(std::move(value))).Get()));
    const auto attribute = QueryFor<IXMLDOMAttribute>(checks, node.Get(), IID_IXMLDOMAttribute);
    ComPtr<IXMLDOMAttribute> replaced;
    checks.Succeeds(element->setAttributeNode(attribute.Get(), replaced.Put()));
}

HRESULT PrintSchemaXmlDocument::CreateNamedElement(const WCHAR* localName, WideStringView prefix, const WCHAR* name,
                                                   IXMLDOMElement** element) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateNamedElement"), kSourceUnit);
    ComPtr<IXMLDOMElement> created = CreateElement(Join(checks, FrameworkPrefix(), localName).Get());
    SetAttribute(created.Get(), kNameAttribute.Get(), nullptr, Join(checks, prefix, name));
    *element = created.Detach();
    return S_OK;
}

void PrintSchemaXmlDocument::AppendTypedValue(const ComChecks& checks, IXMLDOMElement* element, const WCHAR* type,
                                              Bstr value) {
    const ComPtr<IXMLDOMElement> child = CreateElement(Join(checks, FrameworkPrefix(), W("Value")).Get());
    SetAttribute(child.Get(), Join(checks, xsiPrefix_.View(), W("type")).Get(), kInstanceNamespace.Get(),
                 Join(checks, SchemaPrefix(), type));
    if (!value.IsEmpty()) checks.Succeeds(child->put_text(MakeWritable(std::move(value)).Get()));
    AppendChild(element, child.Get());
}

// ---- properties

HRESULT PrintSchemaXmlDocument::CreateProperty(NamespaceKind kind, const WCHAR* name, IXMLDOMElement** property) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateProperty"), kSourceUnit);
    checks.Require(property != nullptr, E_POINTER);
    *property = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    return CreateNamedElement(W("Property"), PrefixOf(kind).View(), name, property);
}

HRESULT PrintSchemaXmlDocument::CreateProperty(NamespaceKind kind, const WCHAR* name, const WCHAR* type,
                                               const WCHAR* value, IXMLDOMElement** property) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateProperty"), kSourceUnit);
    checks.Require(property != nullptr, E_POINTER);
    *property = nullptr;
    checks.Require(!IsEmpty(name) && !IsEmpty(type), E_INVALIDARG);
    ComPtr<IXMLDOMElement> created;
    CreateProperty(kind, name, created.Put());
    AppendTypedValue(checks, created.Get(), type, CopyText(checks, ViewOf(value)));
    *property = created.Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::CreateScoredProperty(const WCHAR* name, IXMLDOMElement** property) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateScoredProperty"), kSourceUnit);
    checks.Require(property != nullptr, E_POINTER);
    *property = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    return CreateNamedElement(W("ScoredProperty"), KeywordsPrefix(), name, property);
}

HRESULT PrintSchemaXmlDocument::CreateScoredProperty(const WCHAR* name, const WCHAR* type, const WCHAR* value,
                                                     IXMLDOMElement** property) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateScoredProperty"), kSourceUnit);
    checks.Require(property != nullptr, E_POINTER);
    *property = nullptr;
    checks.Require(!IsEmpty(name) && !IsEmpty(type) && !IsEmpty(value), E_INVALIDARG);
    ComPtr<IXMLDOMElement> created;
    CreateScoredProperty(name, created.Put());
    AppendTypedValue(checks, created.Get(), type, CopyText(checks, ViewOf(value)));
    *property = created.Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::CreateIntegerScoredProperty(const WCHAR* name, LONG value, IXMLDOMElement** property) {
    return CreateScoredProperty(name, W("integer"), FormatInteger(value), property);
}

HRESULT PrintSchemaXmlDocument::CreateParameterRef(const WCHAR* prefix, const WCHAR* name, IXMLDOMElement** reference) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateParameterRef"), kSourceUnit);
    checks.Require(reference != nullptr, E_POINTER);
    *reference = nullptr;
    checks.Require(!IsEmpty(prefix) && !IsEmpty(name), E_INVALIDARG);
    return CreateNamedElement(W("ParameterRef"), prefix, name, reference);
}

HRESULT PrintSchemaXmlDocument::CreateParameterRefScoredProperty(const WCHAR* prefix, const WCHAR* name,
                                                                 const WCHAR* refPrefix, const WCHAR* refName,
                                                                 IXMLDOMElement** property) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateParameterRefScoredProperty"), kSourceUnit);
    checks.Require(property != nullptr, E_POINTER);
    *property = nullptr;
    checks.Require(!IsEmpty(name), E_INVALIDARG);
    ComPtr<IXMLDOMElement> created;
    CreateNamedElement(W("ScoredProperty"), ViewOf(prefix), name, created.Put());
    ComPtr<IXMLDOMElement> reference;
    CreateParameterRef(refPrefix, refName, reference.Put());
    AppendChild(created.Get(), reference.Get());
    *property = created.Detach();
    return S_OK;
}

// ---- appending

HRESULT PrintSchemaXmlDocument::AppendChildToRootNode(IXMLDOMNode* child) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendChildToRootNode"), kSourceUnit);
    checks.Require(child != nullptr, E_POINTER);
    checks.Require(HasDocument(), kNoDocument);
    return AppendChild(rootNode_.Get(), child);
}

HRESULT PrintSchemaXmlDocument::AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendChild"), kSourceUnit);
    checks.Require(parent && child, E_POINTER);
    ComPtr<IXMLDOMNode> appended;
    checks.Succeeds(parent->appendChild(child, appended.Put()));
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::AppendChildIntegerProperty(IXMLDOMNode* parent, const WCHAR* name, LONG value) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendChildIntegerProperty"), kSourceUnit);
    checks.Require(parent != nullptr, E_INVALIDARG);
    ComPtr<IXMLDOMElement> property;
    CreateProperty(NamespaceKind::Keywords, name, W("integer"), FormatInteger(value), property.Put());
    return AppendChild(parent, property.Get());
}

HRESULT PrintSchemaXmlDocument::AppendChildIntegerScoredProperty(IXMLDOMNode* parent, const WCHAR* name, LONG value) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendChildIntegerScoredProperty"), kSourceUnit);
    checks.Require(parent != nullptr, E_INVALIDARG);
    ComPtr<IXMLDOMElement> property;
    CreateIntegerScoredProperty(name, value, property.Put());
    return AppendChild(parent, property.Get());
}

HRESULT PrintSchemaXmlDocument::AppendChildQNameScoredProperty(IXMLDOMNode* parent, const WCHAR* name,
                                                               const WCHAR* valueName) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendChildQNameScoredProperty"), kSourceUnit);
    checks.Require(parent && !IsEmpty(valueName), E_INVALIDARG);
    ComPtr<IXMLDOMElement> property;
    CreateScoredProperty(name, W("QName"), Join(checks, KeywordsPrefix(), valueName).Get(), property.Put());
    return AppendChild(parent, property.Get());
}

HRESULT PrintSchemaXmlDocument::AppendChildParameterRefScoredProperty(IXMLDOMNode* parent, const WCHAR* prefix,
                                                                      const WCHAR* name, const WCHAR* refPrefix,
                                                                      const WCHAR* refName) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendChildParameterRefScoredProperty"), kSourceUnit);
    checks.Require(parent != nullptr, E_POINTER);
    ComPtr<IXMLDOMElement> property;
    CreateParameterRefScoredProperty(prefix, name, refPrefix, refName, property.Put());
    return AppendChild(parent, property.Get());
}
