// Construction of a Print Schema document: its root, its prefixes, and the private prefix made mk.
#include <facts/privateparameters.h>
#include <printsubsystem/printschema.h>

#include "printschematext.h"
#include "printschemaxmldocument.h"

#include <optional>
#include <utility>

namespace {

constexpr const WCHAR* kSourceUnit = W("printschemaxmldocument");
constexpr ComChecks kPrefixLookup(W("PrintSchemaXmlDocument::GetPrefixFromURI"), kSourceUnit);
constexpr ComChecks kConstruction(W("PrintSchemaXmlDocument::PrintSchemaXmlDocument"), kSourceUnit);
constexpr ConstantBstr kSelectionLanguage(W("SelectionLanguage"));
constexpr ConstantBstr kSelectionNamespaces(W("SelectionNamespaces"));
constexpr WideStringView kDeclarationStart = W("xmlns:");
constexpr WideStringView kSelectionPrefix = W("psf");  // until the document's own is known
constexpr WideStringView kNormalPrivatePrefix = W("mk:");
constexpr ConstantBstr kNormalPrivateDeclaration(W("xmlns:mk"));

// An attribute of a node; null when the node has none of that name.
ComPtr<IXMLDOMNode> FindAttribute(const ComChecks& checks, IXMLDOMNode* node, BSTR name) {
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    ComPtr<IXMLDOMNode> attribute;
    if (!Found(checks, node->get_attributes(attributes.Put()), attributes)) return attribute;
    const HRESULT hr = attributes->getNamedItem(name, attribute.Put());
    if (!Found(checks, hr, attribute)) attribute.Reset();
    return attribute;
}

Variant GetValue(const ComChecks& checks, IXMLDOMNode* attribute) {
    Variant value;
    checks.Succeeds(attribute->get_nodeValue(value.Put()));
    return value;
}

// What two prefixes stand for at a place of the document.
struct PrefixScope {
    bool isPrivate = true;     // the prefix that the root declares for the private namespace: for that, still
    bool isMkForeign = false;  // mk: for another namespace
};

// A prefix without its colon.
WideStringView Bare(WideStringView prefix) noexcept { return prefix.substr(0, prefix.find(W(':'))); }

// What the node's own declaration says, if it has one: whether it is of the private namespace.
std::optional<bool> DeclaresPrivate(const ComChecks& checks, IXMLDOMNode* node, BSTR declarationName) {
    const ComPtr<IXMLDOMNode> declaration = FindAttribute(checks, node, declarationName);
    if (!declaration) return std::nullopt;
    return GetValue(checks, declaration.Get()).Text() == kPrivateKeywordsNamespace;
}

// The node's name attribute, when it begins with the prefix; else null.
ComPtr<IXMLDOMNode> FindPrefixedName(const ComChecks& checks, IXMLDOMNode* node, WideStringView prefix) {
    ComPtr<IXMLDOMNode> name = FindAttribute(checks, node, kNameAttribute.Get());
    if (name && !GetValue(checks, name.Get()).Text().starts_with(prefix)) name.Reset();
    return name;
}

}  // namespace

PrintSchemaXmlDocument::PrintSchemaXmlDocument(const WCHAR* rootName, IXMLDOMDocument2* document)
    : document_(ComPtr<IXMLDOMDocument2>::Share(document)), rootName_(CopyText(kConstruction, ViewOf(rootName))) {
    const ComChecks& checks = kConstruction;
    if (!HasDocument()) return;
    SetProperty(checks, kSelectionLanguage.Get(), CopyText(checks, W("XPath")));
    SetSelectionNamespace(checks, kSelectionPrefix);
    checks.Require(FindRoot(checks), S_FALSE);

    // One walk for all prefixes; what becomes of the private one changes no other declaration.
    const std::vector<RootAttribute> attributes = ListRootAttributes();
    if (FindPrefix(attributes, kPrivateKeywordsNamespace, &privatePrefix_) == S_OK) {
        NormalizePrivatePrefix(checks);
    } else {
        privatePrefix_ = Join(checks, kWide<facts::kFallbackPrefix>.text, W(":"));
    }
    FindPrefix(attributes, kFrameworkNamespace, &psfPrefix_);
    FindPrefix(attributes, kKeywordsNamespace, &pskPrefix_);
    FindPrefix(attributes, kXmlSchemaInstanceNamespace, &xsiPrefix_);
    FindPrefix(attributes, kXmlSchemaNamespace, &xsdPrefix_);
    checks.Require(!psfPrefix_.IsEmpty(), E_FAIL);
    SetSelectionNamespace(checks, Bare(psfPrefix_.View()));
}

PrintSchemaXmlDocument::~PrintSchemaXmlDocument() = default;

const Bstr& PrintSchemaXmlDocument::PrefixOf(NamespaceKind kind) const {
    switch (kind) {
        case NamespaceKind::Framework:
            return psfPrefix_;
        case NamespaceKind::Keywords:
            return pskPrefix_;
        case NamespaceKind::Private:
            return privatePrefix_;
    }
    ThrowComException(W("PrintSchemaXmlDocument::GetNsPrefix"), E_INVALIDARG, kSourceUnit);
}

Bstr PrintSchemaXmlDocument::GetNsPrefix(NamespaceKind kind) const {
    const ComChecks checks(W("PrintSchemaXmlDocument::GetNsPrefix"), kSourceUnit);
    return CopyText(checks, PrefixOf(kind).View());
}

std::vector<PrintSchemaXmlDocument::RootAttribute> PrintSchemaXmlDocument::ListRootAttributes() const {
    const ComChecks& checks = kPrefixLookup;
    std::vector<RootAttribute> list;
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    if (!Found(checks, rootNode_->get_attributes(attributes.Put()), attributes)) return list;
    checks.Succeeds(attributes->reset());
    while (true) {
        ComPtr<IXMLDOMNode> attribute;
        if (!Found(checks, attributes->nextNode(attribute.Put()), attribute)) return list;
        Variant value = GetValue(checks, attribute.Get());
        list.push_back({std::move(attribute), std::move(value)});
    }
}

HRESULT PrintSchemaXmlDocument::FindPrefix(const std::vector<RootAttribute>& attributes, WideStringView uri,
                                           Bstr* prefix) {
    const ComChecks& checks = kPrefixLookup;
    for (const RootAttribute& attribute : attributes) {
        if (attribute.value.Text() != uri) continue;
        Bstr name;
        checks.Succeeds(attribute.node->get_nodeName(name.Put()));
        checks.Require(name.View().starts_with(kDeclarationStart) && name.View() != kDeclarationStart, E_FAIL);
        *prefix = Join(checks, name.View().substr(kDeclarationStart.size()), W(":"));
        return S_OK;
    }
    return S_FALSE;
}

HRESULT PrintSchemaXmlDocument::GetPrefixFromURI(const WCHAR* uri, Bstr* prefix) const {
    const ComChecks& checks = kPrefixLookup;
    checks.Require(prefix != nullptr, E_POINTER);
    checks.Require(!IsEmpty(uri), E_INVALIDARG);
    checks.Require(HasDocument(), kNoDocument);
    return FindPrefix(ListRootAttributes(), uri, prefix);
}

void PrintSchemaXmlDocument::SetProperty(const ComChecks& checks, BSTR name, Bstr value) {
    checks.Succeeds(document_->setProperty(name, Variant(std::move(value)).Get()));
}

void PrintSchemaXmlDocument::SetSelectionNamespace(const ComChecks& checks, WideStringView prefix) {
    CXString declaration;
    declaration.Format(W("xmlns:%s='%s'"), prefix, kFrameworkNamespace);
    SetProperty(checks, kSelectionNamespaces.Get(), CopyText(checks, declaration.AsWideString()));
}

// Takes the root element when it is the framework's of this document's root name. The query alone would also find such
// an element deep inside a document of another kind.
bool PrintSchemaXmlDocument::FindRoot(const ComChecks& checks) {
    CXString query;
    query.Format(W("//%s:%s"), kSelectionPrefix, rootName_.Get());
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
void PrintSchemaXmlDocument::NormalizePrivatePrefix(const ComChecks& checks) {
    if (privatePrefix_.View() == kNormalPrivatePrefix) return;
    const std::optional<std::vector<ComPtr<IXMLDOMNode>>> names = FindPrivateNames(checks);
    if (!names) return;
    RenamePrivateNames(checks, *names);
    RenamePrivateDeclaration(checks);
    privatePrefix_ = CopyText(checks, kNormalPrivatePrefix);
}

// The name attributes that begin with the private prefix where it stands for the private namespace. Nothing when mk is
// something else at the root or at one of them. One walk, which takes along what the elements around declare: to look
// upward from each name would cost the square of a document with many declarations.
std::optional<std::vector<ComPtr<IXMLDOMNode>>> PrintSchemaXmlDocument::FindPrivateNames(
    const ComChecks& checks) const {
    const Bstr declarationName = Join(checks, W("xmlns:"), Bare(privatePrefix_.View()));
    std::vector<ComPtr<IXMLDOMNode>> names;
    std::vector<std::pair<ComPtr<IXMLDOMNode>, PrefixScope>> pending = {{rootNode_, {}}};
    while (!pending.empty()) {
        const auto [node, around] = std::move(pending.back());
        pending.pop_back();
        PrefixScope scope = around;
        if (const auto own = DeclaresPrivate(checks, node.Get(), declarationName.Get())) scope.isPrivate = *own;
        if (const auto own = DeclaresPrivate(checks, node.Get(), kNormalPrivateDeclaration.Get()))
            scope.isMkForeign = !*own;
        ComPtr<IXMLDOMNode> name, sibling, child;
        if (scope.isPrivate) name = FindPrefixedName(checks, node.Get(), privatePrefix_.View());
        const bool isRoot = node.Get() == rootNode_.Get();
        if (scope.isMkForeign && (name || isRoot)) return std::nullopt;
        if (!isRoot) checks.Succeeds(node->get_nextSibling(sibling.Put()));
        checks.Succeeds(node->get_firstChild(child.Put()));
        if (name) names.push_back(std::move(name));
        if (sibling) pending.emplace_back(std::move(sibling), around);
        if (child) pending.emplace_back(std::move(child), scope);
    }
    return names;
}

void PrintSchemaXmlDocument::RenamePrivateNames(const ComChecks& checks,
                                                const std::vector<ComPtr<IXMLDOMNode>>& names) {
    for (const ComPtr<IXMLDOMNode>& attribute : names) {
        CXString name(GetValue(checks, attribute.Get()).Text());
        name.Replace(privatePrefix_.View(), kNormalPrivatePrefix);
        checks.Succeeds(attribute->put_nodeValue(Variant(CopyText(checks, name.AsWideString())).Get()));
    }
}

// The root then declares mk in place of the prefix that it came with.
void PrintSchemaXmlDocument::RenamePrivateDeclaration(const ComChecks& checks) {
    const Bstr oldName = Join(checks, W("xmlns:"), Bare(privatePrefix_.View()));
    const ComPtr<IXMLDOMNode> declaration = FindAttribute(checks, rootNode_.Get(), oldName.Get());
    if (!declaration) return;
    const Variant uri = GetValue(checks, declaration.Get());
    // The root may declare mk for the private namespace already, behind the prefix that was found first.
    if (!FindAttribute(checks, rootNode_.Get(), kNormalPrivateDeclaration.Get())) {
        const auto root = QueryFor<IXMLDOMElement>(checks, rootNode_.Get(), IID_IXMLDOMElement);
        try {
            AppendXMLAttribute(root.Get(), kNormalPrivateDeclaration.Get(), W(""), CXString(uri.Text()));
        } catch (const MorvaneComException& exception) {
            checks.Throw(exception.GetHresult());
        }
    }
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    checks.Require(Found(checks, rootNode_->get_attributes(attributes.Put()), attributes), E_FAIL);
    ComPtr<IXMLDOMNode> removed;
    checks.Succeeds(attributes->removeNamedItem(oldName.Get(), removed.Put()));
}
