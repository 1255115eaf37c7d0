// Creation and appending of Print Schema elements and attributes.
#include <printsubsystem/printschema.h>

#include "printschematext.h"
#include "printschemaxmldocument.h"

namespace {

constexpr const WCHAR* kSourceUnit = W("printschemaxmldocument");
constexpr const WCHAR* kNameAttribute = W("name");
constexpr WideStringView kElementNamespace = kFrameworkNamespace;

}  // namespace

HRESULT PrintSchemaXmlDocument::CreateXMLElement(const WCHAR* qualifiedName, IXMLDOMElement** element) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateXMLElement"), kSourceUnit);
    checks.Require(element != nullptr, E_POINTER);
    *element = nullptr;
    checks.Require(qualifiedName != nullptr, E_INVALIDARG);
    checks.Require(HasDocument(), kNoDocument);
    ComPtr<IXMLDOMNode> node;
    checks.Succeeds(document_->createNode(Variant(static_cast<LONG>(NODE_ELEMENT)).Get(),
                                          CopyText(checks, qualifiedName).Get(),
                                          CopyText(checks, kElementNamespace).Get(), node.Put()));
    *element = QueryFor<IXMLDOMElement>(checks, node.Get(), IID_IXMLDOMElement).Detach();
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::AppendXMLAttribute(IXMLDOMElement* element, const WCHAR* qualifiedName,
                                                   const WCHAR* namespaceUri, const WCHAR* value) {
    const ComChecks checks(W("PrintSchemaXmlDocument::AppendXMLAttribute"), kSourceUnit);
    checks.Require(element && qualifiedName && value, E_INVALIDARG);
    checks.Require(HasDocument(), kNoDocument);
    const Bstr uri = namespaceUri ? CopyText(checks, namespaceUri) : Bstr();
    ComPtr<IXMLDOMNode> node;
    checks.Succeeds(document_->createNode(Variant(static_cast<LONG>(NODE_ATTRIBUTE)).Get(),
                                          CopyText(checks, qualifiedName).Get(), uri.Get(), node.Put()));
    checks.Succeeds(node->put_nodeValue(Variant(CopyWritable(checks, value)).Get()));
    const auto attribute = QueryFor<IXMLDOMAttribute>(checks, node.Get(), IID_IXMLDOMAttribute);
    ComPtr<IXMLDOMAttribute> replaced;
    checks.Succeeds(element->setAttributeNode(attribute.Get(), replaced.Put()));
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::CreateNamedElement(const WCHAR* localName, WideStringView prefix, const WCHAR* name,
                                                   IXMLDOMElement** element) {
    const ComChecks checks(W("PrintSchemaXmlDocument::CreateNamedElement"), kSourceUnit);
    ComPtr<IXMLDOMElement> created;
    CreateXMLElement(Join(checks, FrameworkPrefix(), localName).Get(), created.Put());
    AppendXMLAttribute(created.Get(), kNameAttribute, nullptr, Join(checks, prefix, name).Get());
    *element = created.Detach();
    return S_OK;
}

void PrintSchemaXmlDocument::AppendTypedValue(const ComChecks& checks, IXMLDOMElement* element, const WCHAR* type,
                                              const WCHAR* value) {
    ComPtr<IXMLDOMElement> child;
    CreateXMLElement(Join(checks, FrameworkPrefix(), W("Value")).Get(), child.Put());
    AppendXMLAttribute(child.Get(), Join(checks, xsiPrefix_.View(), W("type")).Get(), kXmlSchemaInstanceNamespace,
                       Join(checks, SchemaPrefix(), type).Get());
    if (!IsEmpty(value)) checks.Succeeds(child->put_text(CopyWritable(checks, value).Get()));
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
    AppendTypedValue(checks, created.Get(), type, value);
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
    AppendTypedValue(checks, created.Get(), type, value);
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
