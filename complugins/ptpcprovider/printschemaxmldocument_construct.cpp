// Construction of a Print Schema document: its root, its prefixes, and the private prefix made mk.
#include <printsubsystem/printschema.h>

#include "printschematext.h"
#include "printschemaxmldocument.h"

namespace {

constexpr const WCHAR* kSourceUnit = W("printschemaxmldocument");
constexpr WideStringView kSelectionPrefix = W("psf");              // until the document's own is known
constexpr WideStringView kUndeclaredPrivatePrefix = W("ns0000:");  // where the root does not declare the namespace
constexpr WideStringView kNormalPrivatePrefix = W("mk:");
constexpr const WCHAR* kNormalPrivateDeclaration = W("xmlns:mk");

// An attribute of a node. S_FALSE when the node has none of that name.
HRESULT GetAttribute(IXMLDOMNode* node, const WCHAR* name, ComPtr<IXMLDOMNode>* attribute) {
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    HRESULT hr = node->get_attributes(attributes.Put());
    if (FAILED(hr)) return hr;
    if (!attributes) return S_FALSE;
    hr = attributes->getNamedItem(Bstr(name).Get(), attribute->Put());
    return SUCCEEDED(hr) && !*attribute ? S_FALSE : hr;
}

// S_OK where the element has the prefix mk in scope for another namespace, else S_FALSE.
HRESULT HasForeignPrivatePrefix(IXMLDOMNode* element) {
    for (auto scope = ComPtr<IXMLDOMNode>::Share(element); scope;) {
        ComPtr<IXMLDOMNode> declaration;
        HRESULT hr = GetAttribute(scope.Get(), kNormalPrivateDeclaration, &declaration);
        if (FAILED(hr)) return hr;
        if (hr == S_OK) {
            Variant uri;
            hr = declaration->get_nodeValue(uri.Put());
            if (FAILED(hr)) return hr;
            return uri.Text() == kPrivateKeywordsNamespace ? S_FALSE : S_OK;
        }
        ComPtr<IXMLDOMNode> parent;
        hr = scope->get_parentNode(parent.Put());
        if (FAILED(hr)) return hr;
        scope = std::move(parent);
    }
    return S_FALSE;
}

// A prefix without its colon.
WideStringView Bare(WideStringView prefix) noexcept { return prefix.substr(0, prefix.find(W(':'))); }

}  // namespace

PrintSchemaXmlDocument::PrintSchemaXmlDocument(const WCHAR* rootName, IXMLDOMDocument2* document)
    : document_(ComPtr<IXMLDOMDocument2>::Share(document)), rootName_(ViewOf(rootName)) {
    const ComChecks checks(W("PrintSchemaXmlDocument::PrintSchemaXmlDocument"), kSourceUnit);
    if (!HasDocument()) return;
    SetProperty(checks, W("SelectionLanguage"), W("XPath"));
    SetSelectionNamespace(checks, kSelectionPrefix);
    checks.Require(FindRoot(checks), S_FALSE);

    if (GetPrefixFromURI(kPrivateKeywordsNamespace, &privatePrefix_) == S_OK) {
        checks.Succeeds(NormalizePrivatePrefix());
    } else {
        privatePrefix_ = Bstr(kUndeclaredPrivatePrefix);
    }
    GetPrefixFromURI(kFrameworkNamespace, &psfPrefix_);
    GetPrefixFromURI(kKeywordsNamespace, &pskPrefix_);
    GetPrefixFromURI(kXmlSchemaInstanceNamespace, &xsiPrefix_);
    GetPrefixFromURI(kXmlSchemaNamespace, &xsdPrefix_);
    checks.Require(!psfPrefix_.IsEmpty(), E_FAIL);
    SetSelectionNamespace(checks, Bare(psfPrefix_.View()));
}

PrintSchemaXmlDocument::~PrintSchemaXmlDocument() = default;

void PrintSchemaXmlDocument::SetProperty(const ComChecks& checks, WideStringView name, WideStringView value) {
    checks.Succeeds(document_->setProperty(Bstr(name).Get(), Variant(value).Get()));
}

void PrintSchemaXmlDocument::SetSelectionNamespace(const ComChecks& checks, WideStringView prefix) {
    CXString declaration;
    declaration.Format(W("xmlns:%s='%s'"), Bstr(prefix).Get(), kFrameworkNamespace);
    SetProperty(checks, W("SelectionNamespaces"), declaration.AsWideString());
}

// Takes the root element when it is the framework's of this document's root name. The query alone would also find such
// an element deep inside a document of another kind.
bool PrintSchemaXmlDocument::FindRoot(const ComChecks& checks) {
    CXString query;
    query.Format(W("//%s:%s"), Bstr(kSelectionPrefix).Get(), rootName_.Get());
    ComPtr<IXMLDOMNode> found;
    if (GetNode(query, found.Put()) == S_FALSE) return false;
    ComPtr<IXMLDOMNode> parent;
    if (!Found(checks, found->get_parentNode(parent.Put()), parent)) return false;
    DOMNodeType type = NODE_INVALID;
    checks.Succeeds(parent->get_nodeType(&type));
    if (type != NODE_DOCUMENT) return false;
    rootNode_ = std::move(found);
    return true;
}

// Renames the private prefix to mk. No prefix is ever bound anew: where mk stands for another namespace, at the root or
// at an element whose name would change, the document keeps its own prefix.
HRESULT PrintSchemaXmlDocument::NormalizePrivatePrefix() {
    if (privatePrefix_.View() == kNormalPrivatePrefix) return S_OK;
    HRESULT hr = HasForeignPrivatePrefix(rootNode_.Get());
    if (hr != S_FALSE) return hr;  // S_OK: taken, nothing to do
    std::vector<ComPtr<IXMLDOMNode>> names;
    hr = FindPrivateNames(&names);
    if (hr == S_FALSE) return S_OK;
    if (SUCCEEDED(hr)) hr = RenamePrivateNames(names);
    if (SUCCEEDED(hr)) hr = RenamePrivateDeclaration();
    if (SUCCEEDED(hr)) privatePrefix_ = Bstr(kNormalPrivatePrefix);
    return hr;
}

// The name attributes that begin with the private prefix. S_FALSE when one of their elements has mk for something else.
HRESULT PrintSchemaXmlDocument::FindPrivateNames(std::vector<ComPtr<IXMLDOMNode>>* names) const {
    ComPtr<IXMLDOMNodeList> elements;
    HRESULT hr = rootNode_->selectNodes(Bstr(W("//*[@name]")).Get(), elements.Put());
    LONG count = 0;
    if (SUCCEEDED(hr)) hr = elements ? elements->get_length(&count) : E_FAIL;
    for (LONG index = 0; SUCCEEDED(hr) && index < count; ++index) {
        ComPtr<IXMLDOMNode> element;
        hr = elements->get_item(index, element.Put());
        if (FAILED(hr) || !element) continue;
        ComPtr<IXMLDOMNode> attribute;
        hr = GetAttribute(element.Get(), W("name"), &attribute);
        if (hr != S_OK) continue;
        Variant value;
        hr = attribute->get_nodeValue(value.Put());
        if (FAILED(hr) || !value.Text().starts_with(privatePrefix_.View())) continue;
        hr = HasForeignPrivatePrefix(element.Get());
        if (hr == S_OK) return S_FALSE;
        if (hr == S_FALSE) names->push_back(std::move(attribute));
    }
    return FAILED(hr) ? hr : S_OK;
}

HRESULT PrintSchemaXmlDocument::RenamePrivateNames(const std::vector<ComPtr<IXMLDOMNode>>& names) {
    for (const ComPtr<IXMLDOMNode>& attribute : names) {
        Variant value;
        HRESULT hr = attribute->get_nodeValue(value.Put());
        if (FAILED(hr)) return hr;
        CXString name(WideString(value.Text()));
        name.Replace(CXString(WideString(privatePrefix_.View())), CXString(WideString(kNormalPrivatePrefix)));
        hr = attribute->put_nodeValue(Variant(name.AsWideString()).Get());
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

// The root then declares mk in place of the prefix that it came with.
HRESULT PrintSchemaXmlDocument::RenamePrivateDeclaration() {
    const Bstr oldName = Join(W("xmlns:"), Bare(privatePrefix_.View()));
    ComPtr<IXMLDOMNode> declaration;
    HRESULT hr = GetAttribute(rootNode_.Get(), oldName.Get(), &declaration);
    if (hr != S_OK) return hr;
    Variant uri;
    hr = declaration->get_nodeValue(uri.Put());
    if (FAILED(hr)) return hr;

    // The root may declare mk for the private namespace already, behind the prefix that was found first.
    ComPtr<IXMLDOMNode> present;
    hr = GetAttribute(rootNode_.Get(), kNormalPrivateDeclaration, &present);
    if (FAILED(hr)) return hr;
    if (hr == S_FALSE) {
        ComPtr<IXMLDOMElement> root;
        hr = rootNode_->QueryInterface(IID_IXMLDOMElement, root.PutVoid());
        if (FAILED(hr)) return hr;
        try {
            AppendXMLAttribute(root.Get(), kNormalPrivateDeclaration, W(""), CXString(WideString(uri.Text())));
        } catch (const MorvaneComException& exception) {
            return exception.GetHresult();
        }
    }
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    hr = rootNode_->get_attributes(attributes.Put());
    if (FAILED(hr)) return hr;
    ComPtr<IXMLDOMNode> removed;
    return attributes ? attributes->removeNamedItem(oldName.Get(), removed.Put()) : E_FAIL;
}
