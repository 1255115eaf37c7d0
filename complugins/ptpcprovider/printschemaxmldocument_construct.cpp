// Construction of a Print Schema document: its root, its prefixes, and the private prefix made mk.
#include <printsubsystem/printschema.h>

#include "printschematext.h"
#include "printschemaxmldocument.h"

namespace {

constexpr const WCHAR* kSourceUnit = W("printschemaxmldocument");
constexpr ComChecks kConstruction(W("PrintSchemaXmlDocument::PrintSchemaXmlDocument"), kSourceUnit);
constexpr ComChecks kNormalization(W("PrintSchemaXmlDocument::NormalizePrivatePrefix"), kSourceUnit);
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
    hr = attributes->getNamedItem(CopyText(kNormalization, name).Get(), attribute->Put());
    return SUCCEEDED(hr) && !*attribute ? S_FALSE : hr;
}

// What two prefixes stand for at a place of the document.
struct PrefixScope {
    bool isPrivate = true;     // the prefix that the root declares for the private namespace: for that, still
    bool isMkForeign = false;  // mk: for another namespace
};

// A prefix without its colon.
WideStringView Bare(WideStringView prefix) noexcept { return prefix.substr(0, prefix.find(W(':'))); }

// Tells what the node's own declaration says, if it has one: whether it is of the private namespace.
template <class Tell>
HRESULT ReadDeclaration(IXMLDOMNode* node, const WCHAR* declarationName, Tell tell) {
    ComPtr<IXMLDOMNode> declaration;
    HRESULT hr = GetAttribute(node, declarationName, &declaration);
    if (hr != S_OK) return hr;
    Variant uri;
    hr = declaration->get_nodeValue(uri.Put());
    if (SUCCEEDED(hr)) tell(uri.Text() == kPrivateKeywordsNamespace);
    return hr;
}

// The node's name attribute, when it begins with the prefix; else null.
HRESULT GetPrefixedName(IXMLDOMNode* node, WideStringView prefix, ComPtr<IXMLDOMNode>* name) {
    HRESULT hr = GetAttribute(node, W("name"), name);
    Variant value;
    if (hr == S_OK) hr = (*name)->get_nodeValue(value.Put());
    if (!value.Text().starts_with(prefix)) name->Reset();
    return hr;
}

}  // namespace

PrintSchemaXmlDocument::PrintSchemaXmlDocument(const WCHAR* rootName, IXMLDOMDocument2* document)
    : document_(ComPtr<IXMLDOMDocument2>::Share(document)), rootName_(CopyText(kConstruction, ViewOf(rootName))) {
    const ComChecks& checks = kConstruction;
    if (!HasDocument()) return;
    SetProperty(checks, W("SelectionLanguage"), W("XPath"));
    SetSelectionNamespace(checks, kSelectionPrefix);
    checks.Require(FindRoot(checks), S_FALSE);

    if (GetPrefixFromURI(kPrivateKeywordsNamespace, &privatePrefix_) == S_OK) {
        checks.Succeeds(NormalizePrivatePrefix());
    } else {
        privatePrefix_ = CopyText(checks, kUndeclaredPrivatePrefix);
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
    checks.Succeeds(document_->setProperty(CopyText(checks, name).Get(), Variant(CopyText(checks, value)).Get()));
}

void PrintSchemaXmlDocument::SetSelectionNamespace(const ComChecks& checks, WideStringView prefix) {
    CXString declaration;
    declaration.Format(W("xmlns:%s='%s'"), CopyText(checks, prefix).Get(), kFrameworkNamespace);
    SetProperty(checks, W("SelectionNamespaces"), declaration.AsWideString());
}

// Takes the root element when it is the framework's of this document's root name. The query alone would also find such
// an element deep inside a document of another kind.
bool PrintSchemaXmlDocument::FindRoot(const ComChecks& checks) {
    CXString query;
    query.Format(W("//%s:%s"), CopyText(checks, kSelectionPrefix).Get(), rootName_.Get());
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
    std::vector<ComPtr<IXMLDOMNode>> names;
    HRESULT hr = FindPrivateNames(&names);
    if (hr == S_FALSE) return S_OK;
    if (SUCCEEDED(hr)) hr = RenamePrivateNames(names);
    if (SUCCEEDED(hr)) hr = RenamePrivateDeclaration();
    if (SUCCEEDED(hr)) privatePrefix_ = CopyText(kNormalization, kNormalPrivatePrefix);
    return hr;
}

// The name attributes that begin with the private prefix where it stands for the private namespace. S_FALSE when mk is
// something else at the root or at one of them. One walk, which takes along what the elements around declare: to look
// upward from each name would cost the square of a document with many declarations.
HRESULT PrintSchemaXmlDocument::FindPrivateNames(std::vector<ComPtr<IXMLDOMNode>>* names) const {
    const Bstr declarationName = Join(kNormalization, W("xmlns:"), Bare(privatePrefix_.View()));
    std::vector<std::pair<ComPtr<IXMLDOMNode>, PrefixScope>> pending = {{rootNode_, {}}};
    while (!pending.empty()) {
        const auto [node, around] = std::move(pending.back());
        pending.pop_back();
        PrefixScope scope = around;
        ComPtr<IXMLDOMNode> name, sibling, child;
        HRESULT hr = ReadDeclaration(node.Get(), declarationName.Get(), [&](bool own) { scope.isPrivate = own; });
        if (SUCCEEDED(hr))
            hr = ReadDeclaration(node.Get(), kNormalPrivateDeclaration, [&](bool own) { scope.isMkForeign = !own; });
        if (SUCCEEDED(hr) && scope.isPrivate) hr = GetPrefixedName(node.Get(), privatePrefix_.View(), &name);
        const bool isRoot = node.Get() == rootNode_.Get();
        if (SUCCEEDED(hr) && scope.isMkForeign && (name || isRoot)) return S_FALSE;
        if (SUCCEEDED(hr) && !isRoot) hr = node->get_nextSibling(sibling.Put());
        if (SUCCEEDED(hr)) hr = node->get_firstChild(child.Put());
        if (FAILED(hr)) return hr;
        if (name) names->push_back(std::move(name));
        if (sibling) pending.emplace_back(std::move(sibling), around);
        if (child) pending.emplace_back(std::move(child), scope);
    }
    return S_OK;
}

HRESULT PrintSchemaXmlDocument::RenamePrivateNames(const std::vector<ComPtr<IXMLDOMNode>>& names) {
    for (const ComPtr<IXMLDOMNode>& attribute : names) {
        Variant value;
        HRESULT hr = attribute->get_nodeValue(value.Put());
        if (FAILED(hr)) return hr;
        CXString name(WideString(value.Text()));
        name.Replace(CXString(WideString(privatePrefix_.View())), CXString(WideString(kNormalPrivatePrefix)));
        hr = attribute->put_nodeValue(Variant(CopyText(kNormalization, name.AsWideString())).Get());
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

// The root then declares mk in place of the prefix that it came with.
HRESULT PrintSchemaXmlDocument::RenamePrivateDeclaration() {
    const Bstr oldName = Join(kNormalization, W("xmlns:"), Bare(privatePrefix_.View()));
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
