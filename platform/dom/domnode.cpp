// What every node answers about itself: names, values, texts, relatives.
#include "domnode.h"

#include "domattributes.h"
#include "domname.h"
#include "domserialise.h"
#include "domwrappers.h"
#include "domxpath.h"

#include <algorithm>
#include <vector>

namespace dom {

NodeCore::NodeCore(std::shared_ptr<DomTree> tree, xmlNode* node, IXMLDOMNode* face) noexcept
    : tree_(std::move(tree)), node_(node), face_(face) {
    node_->_private = this;
    tree_->WrapperMade(node_);
}

NodeCore::~NodeCore() {
    node_->_private = nullptr;
    tree_->WrapperGone(node_);
}

void NodeCore::Rebind(std::shared_ptr<DomTree> tree) noexcept {
    node_->_private = nullptr;
    node_ = AsNode(tree->GetDocument());
    node_->_private = this;
    tree_ = std::move(tree);
}

NodeCore* NodeCore::Of(IUnknown* object) noexcept {
    void* core = nullptr;
    if (!object || FAILED(object->QueryInterface(kNodeCoreIid, &core)) || !core) return nullptr;
    NodeCore* const found = static_cast<NodeCore*>(core);
    found->face_->Release();  // the caller's reference holds it
    return found;
}

ComPtr<IXMLDOMNode> NodeCore::Wrap(const std::shared_ptr<DomTree>& tree, xmlNode* node) {
    if (node->_private) return ComPtr<IXMLDOMNode>::Share(static_cast<NodeCore*>(node->_private)->face_);
    auto* const make = node->type == XML_ELEMENT_NODE    ? NewElementObject
                       : node->type == XML_DOCUMENT_NODE ? NewDocumentObject
                       : IsAttribute(node)               ? NewAttributeObject
                                                         : NewContentObject;
    return ComPtr<IXMLDOMNode>::Adopt(make(tree, node));
}

ComPtr<IXMLDOMNode> NodeCore::WrapNew(const std::shared_ptr<DomTree>& tree, OwnedNode node) {
    ComPtr<IXMLDOMNode> wrapper = Wrap(tree, node.get());
    static_cast<void>(node.release());  // the wrapper counts in it now
    return wrapper;
}

namespace {

struct TypeName {
    DOMNodeType type;
    const char* typeName;
    const char* nodeName;  // null: the node has a name of its own
};

TypeName TypeOf(const xmlNode* node) {
    switch (node->type) {
        case XML_ELEMENT_NODE:
            return {NODE_ELEMENT, "element", nullptr};
        case XML_TEXT_NODE:
            return {NODE_TEXT, "text", "#text"};
        case XML_CDATA_SECTION_NODE:
            return {NODE_CDATA_SECTION, "cdatasection", "#cdata-section"};
        case XML_COMMENT_NODE:
            return {NODE_COMMENT, "comment", "#comment"};
        case XML_PI_NODE:
            return {NODE_PROCESSING_INSTRUCTION, "processinginstruction", nullptr};
        case XML_DOCUMENT_NODE:
            return {NODE_DOCUMENT, "document", "#document"};
        default:
            return {NODE_ATTRIBUTE, "attribute", nullptr};
    }
}

bool IsParent(const xmlNode* node) { return node->type == XML_ELEMENT_NODE || node->type == XML_DOCUMENT_NODE; }

// Whether white space stands as it is at the node: by the document's property or the nearest xml:space.
bool KeepsWhiteSpace(DomTree& tree, const xmlNode* node) {
    if (tree.settings.preserveWhiteSpace) return true;
    for (; node; node = node->parent) {
        if (node->type != XML_ELEMENT_NODE) continue;
        if (const xmlAttr* const space = FindAttribute(tree, node, "xml:space"))
            return AttributeText(space) == "preserve";
    }
    return false;
}

constexpr std::string_view kWhiteSpace = " \t\r\n";

// The text that a node shows: of an element all text and CDATA below it, put together. Outer white space is trimmed,
// except what comes from a CDATA section; attributes, comments and processing instructions show what they hold.
std::string TextOf(DomTree& tree, xmlNode* node) {
    if (IsAttribute(node)) return std::string(AttributeText(AsAttribute(node)));
    if (!IsParent(node) && node->type != XML_TEXT_NODE) return std::string(ViewOf(node->content));
    std::string text;
    std::size_t fixedFrom = std::string::npos;  // what lies between is not trimmed
    std::size_t fixedTo = 0;
    const auto append = [&](const xmlNode* part) {
        if (part->type != XML_TEXT_NODE && part->type != XML_CDATA_SECTION_NODE) return;
        const std::size_t start = text.size();
        text += ViewOf(part->content);
        if (part->type == XML_TEXT_NODE) return;
        if (fixedFrom == std::string::npos) fixedFrom = start;
        fixedTo = text.size();
    };
    WalkSubtree(node, append, [](xmlNode*) {});
    if (KeepsWhiteSpace(tree, node)) return text;
    const std::size_t last = text.find_last_not_of(kWhiteSpace);
    text.resize(std::max(last == std::string::npos ? 0 : last + 1, fixedTo));
    text.erase(0, std::min({text.find_first_not_of(kWhiteSpace), fixedFrom, text.size()}));
    return text;
}

}  // namespace

HRESULT NodeCore::NodeName(BSTR* name) const {
    const TypeName type = TypeOf(node_);
    return ReturnText(type.nodeName ? std::string(type.nodeName) : WholeName(node_), name);
}

HRESULT NodeCore::NodeValue(VARIANT* value) const {
    if (IsParent(node_)) return ReturnNothing(value);
    return ReturnText(IsAttribute(node_) ? AttributeText(AsAttribute(node_)) : ViewOf(node_->content), value);
}

HRESULT NodeCore::PutNodeValue(const VARIANT& value) {
    std::string content;
    if (!ContentOf(value, &content)) return E_INVALIDARG;
    return IsParent(node_) ? E_FAIL : PutContent(content);
}

HRESULT NodeCore::NodeType(DOMNodeType* type) const {
    if (!type) return E_INVALIDARG;
    *type = TypeOf(node_).type;
    return S_OK;
}

HRESULT NodeCore::NodeTypeString(BSTR* type) const { return ReturnText(TypeOf(node_).typeName, type); }

HRESULT NodeCore::ParentNode(IXMLDOMNode** parent) const {
    return ReturnNode(IsAttribute(node_) ? nullptr : node_->parent, parent);
}

HRESULT NodeCore::PreviousSibling(IXMLDOMNode** sibling) const {
    return ReturnNode(IsAttribute(node_) ? nullptr : node_->prev, sibling);
}

HRESULT NodeCore::NextSibling(IXMLDOMNode** sibling) const {
    return ReturnNode(IsAttribute(node_) ? nullptr : node_->next, sibling);
}

HRESULT NodeCore::ChildNodes(IXMLDOMNodeList** children) const {
    if (!children) return E_INVALIDARG;
    *children = NewChildList(*this);
    return S_OK;
}

HRESULT NodeCore::HasChildNodes(VARIANT_BOOL* hasChild) const {
    if (!hasChild) return E_INVALIDARG;
    *hasChild = FirstChildOf(node_) ? VARIANT_TRUE : VARIANT_FALSE;
    return *hasChild == VARIANT_TRUE ? S_OK : S_FALSE;
}

HRESULT NodeCore::Attributes(IXMLDOMNamedNodeMap** attributes) const {
    if (!attributes) return E_INVALIDARG;
    *attributes = node_->type == XML_ELEMENT_NODE ? NewAttributeMap(*this) : nullptr;
    return *attributes ? S_OK : S_FALSE;
}

HRESULT NodeCore::OwnerDocument(IXMLDOMDocument** document) const {
    return ReturnNode(node_->type == XML_DOCUMENT_NODE ? nullptr : AsNode(tree_->GetDocument()), document);
}

HRESULT NodeCore::Text(BSTR* text) const { return ReturnText(TextOf(*tree_, node_), text); }

HRESULT NodeCore::PutText(BSTR text) { return PutContent(ContentToUtf8(ViewOf(text))); }

HRESULT NodeCore::NodeTypedValue(VARIANT* value) const {
    if (node_->type == XML_DOCUMENT_NODE) return ReturnNothing(value);
    return ReturnText(TextOf(*tree_, node_), value);
}

HRESULT NodeCore::PutNodeTypedValue(const VARIANT& value) {
    std::string content;
    return ContentOf(value, &content) ? PutContent(content) : E_INVALIDARG;
}

HRESULT NodeCore::Xml(BSTR* xml) const {
    if (!xml) return E_INVALIDARG;
    return ReturnText(SerialiseNode(node_), xml);
}

HRESULT NodeCore::SelectNodes(BSTR query, IXMLDOMNodeList** list) const {
    std::vector<xmlNode*> found;
    if (!list) return E_INVALIDARG;
    if (const HRESULT result = Select(*tree_, node_, query, kEveryNode, &found); FAILED(result)) return result;
    std::vector<ComPtr<IXMLDOMNode>> nodes;
    nodes.reserve(found.size());
    for (xmlNode* const node : found) nodes.push_back(Wrap(tree_, node));
    *list = NewSnapshotList(std::move(nodes));
    return S_OK;
}

HRESULT NodeCore::SelectSingleNode(BSTR query, IXMLDOMNode** node) const {
    std::vector<xmlNode*> found;
    if (!node) return E_INVALIDARG;
    if (const HRESULT result = Select(*tree_, node_, query, 1, &found); FAILED(result)) return result;
    return ReturnNode(found.empty() ? nullptr : found.front(), node);
}

HRESULT NodeCore::NamespaceUri(BSTR* uri) const {
    const std::string_view text = NamespaceOf(node_);
    return text.empty() ? ReturnNothing(uri) : ReturnText(text, uri);
}

HRESULT NodeCore::Prefix(BSTR* prefix) const {
    if (TypeOf(node_).nodeName || node_->type == XML_PI_NODE) return ReturnNothing(prefix);
    const std::string name = WholeName(node_);
    const std::string_view text = SplitName(name).prefix;
    return text.empty() ? ReturnNothing(prefix) : ReturnText(text, prefix);
}

HRESULT NodeCore::BaseName(BSTR* name) const {
    if (TypeOf(node_).nodeName) return ReturnNothing(name);
    const std::string whole = WholeName(node_);
    return ReturnText(SplitName(whole).local, name);
}

}  // namespace dom
