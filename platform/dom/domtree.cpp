// Ownership of nodes: the document, orphans, wrappers and the tree's namespace records.
#include "domtree.h"

#include "domnode.h"
#include "domxpath.h"

#include <libxml/parser.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <new>

namespace dom {
namespace {

template <class Node>
Node* Made(Node* node) {
    if (!node) throw std::bad_alloc();
    return node;
}

OwnedNode Owned(xmlNode* node) { return OwnedNode(Made(node)); }

// libxml2's tables are made once, before the first document on any thread.
void InitialiseLibrary() {
    static const bool done = (xmlInitParser(), true);
    static_cast<void>(done);
}

xmlNode* RootOf(xmlNode* node) {
    while (node->parent) node = node->parent;
    return node;
}

// How many wrappers an orphan's root counts. It is of no meaning in a node that is not such a root.
std::uintptr_t WrapperCount(const xmlNode* root) noexcept {
    return reinterpret_cast<std::uintptr_t>(IsAttribute(root) ? reinterpret_cast<const xmlAttr*>(root)->psvi
                                                              : root->psvi);
}

void SetWrapperCount(xmlNode* root, std::uintptr_t count) noexcept {
    void*& member = IsAttribute(root) ? AsAttribute(root)->psvi : root->psvi;
    member = reinterpret_cast<void*>(count);  // NOLINT(performance-no-int-to-ptr): a number is kept there
}

// The document counts nothing: it lives as long as its tree.
bool IsOrphan(const xmlNode* root) noexcept { return root->type != XML_DOCUMENT_NODE; }

std::uintptr_t WrappersIn(xmlNode* top) {
    std::uintptr_t count = 0;
    ForEachNode(top, [&count](const xmlNode* node) { count += node->_private ? 1 : 0; });
    return count;
}

// libxml2's own linking functions merge neighbouring texts and free the one that was handed in; these do not. The list
// is that of the children or, for an attribute, of the attributes, which knows no last one.
struct Siblings {
    Siblings(xmlNode* parent, bool attributes)
        : first(attributes ? reinterpret_cast<xmlNode**>(&parent->properties) : &parent->children),
          last(attributes ? nullptr : &parent->last) {}
    xmlNode* Last() const {
        if (last) return *last;
        xmlNode* node = *first;
        while (node && node->next) node = node->next;
        return node;
    }
    xmlNode** first;
    xmlNode** last;
};

void Link(xmlNode* parent, xmlNode* before, xmlNode* node) noexcept {
    const Siblings siblings(parent, IsAttribute(node));
    node->parent = parent;
    node->next = before;
    node->prev = before ? before->prev : siblings.Last();
    (node->prev ? node->prev->next : *siblings.first) = node;
    if (before) {
        before->prev = node;
    } else if (siblings.last) {
        *siblings.last = node;
    }
}

void Unlink(xmlNode* node) noexcept {
    const Siblings siblings(node->parent, IsAttribute(node));
    (node->prev ? node->prev->next : *siblings.first) = node->next;
    if (node->next) {
        node->next->prev = node->prev;
    } else if (siblings.last) {
        *siblings.last = node->prev;
    }
    node->parent = node->next = node->prev = nullptr;
}

}  // namespace

void NodeDeleter::operator()(xmlNode* node) const noexcept {
    if (IsAttribute(node)) {
        xmlFreeProp(AsAttribute(node));
    } else {
        xmlFreeNode(node);
    }
}

DomTree::DomTree() : document_((InitialiseLibrary(), Made(xmlNewDoc(XmlChars("1.0"))))) {
    document_->standalone = -1;  // no XML declaration was seen
    SetEncoding();
    NoteChange();
}

void DomTree::NoteChange() noexcept {
    // A tree takes its numbers a block at a time, so that threads do not wait for each other at every change.
    constexpr std::uint64_t kBlock = 1 << 20;
    static std::atomic<std::uint64_t> blocks = 0;
    if (++changes_ % kBlock == 0) changes_ = ++blocks * kBlock;
}

DomTree::~DomTree() { FreeAll(); }

void DomTree::FreeAll() noexcept {
    selector.reset();
    xmlFreeDoc(document_);
}

void DomTree::TakeDocument(xmlDoc* document) noexcept {
    FreeAll();
    document_ = document;
    NoteChange();
    SetEncoding();
}

// Whatever a document was read from, it is written as UTF-8; without this, attributes would come out as references.
void DomTree::SetEncoding() noexcept {
    xmlFree(const_cast<xmlChar*>(document_->encoding));
    document_->encoding = xmlStrdup(XmlChars("UTF-8"));
}

xmlNs* DomTree::Namespace(std::string_view prefix, std::string_view uri) {
    if (uri.empty()) return nullptr;
    if (const auto known = namespaces_.find(std::make_pair(prefix, uri)); known != namespaces_.end())
        return &known->second;
    const auto entry = namespaces_.try_emplace({std::string(prefix), std::string(uri)}).first;
    xmlNs& record = entry->second;
    record = xmlNs();
    record.type = XML_LOCAL_NAMESPACE;
    record.href = XmlChars(entry->first.second.c_str());
    record.prefix = prefix.empty() ? nullptr : XmlChars(entry->first.first.c_str());
    return &record;
}

void DomTree::Detach(xmlNode* node) noexcept {
    if (!node->parent) return;
    xmlNode* const root = RootOf(node);
    const std::uintptr_t wrappers = WrappersIn(node);
    SetWrapperCount(node, wrappers);
    Unlink(node);
    NoteChange();
    if (!IsOrphan(root)) return;
    SetWrapperCount(root, WrapperCount(root) - wrappers);
    if (WrapperCount(root) == 0) NodeDeleter()(root);
}

void DomTree::Discard(xmlNode* node) noexcept {
    Detach(node);
    if (WrapperCount(node) == 0) NodeDeleter()(node);
}

void DomTree::Attach(xmlNode* parent, xmlNode* before, xmlNode* orphan) noexcept {
    Link(parent, before, orphan);
    NoteChange();
    xmlNode* const root = RootOf(parent);
    if (IsOrphan(root)) SetWrapperCount(root, WrapperCount(root) + WrapperCount(orphan));
}

void DomTree::AttachNew(xmlNode* parent, OwnedNode node) noexcept {
    LinkLast(parent, std::move(node));
    NoteChange();
}

void DomTree::TakeOver(DomTree& other, xmlNode* orphan) {
    // The wrappers that move may be all that holds the other tree, whose namespaces are read to the end.
    const std::shared_ptr<DomTree> holder = other.shared_from_this();
    const std::shared_ptr<DomTree> self = shared_from_this();
    // What can fail comes first, so that the node never stands between two trees.
    ForEachNode(orphan, [this](const xmlNode* node) {
        if ((node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE) && node->ns) {
            Namespace(ViewOf(node->ns->prefix), ViewOf(node->ns->href));
        }
    });
    ForEachNode(orphan, [this, &self](xmlNode* node) {
        node->doc = document_;
        if ((node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE) && node->ns) {
            node->ns = Namespace(ViewOf(node->ns->prefix), ViewOf(node->ns->href));
        }
        if (node->_private) static_cast<NodeCore*>(node->_private)->MoveTo(self);
    });
}

void DomTree::WrapperMade(xmlNode* node) noexcept {
    xmlNode* const root = RootOf(node);
    if (IsOrphan(root)) SetWrapperCount(root, WrapperCount(root) + 1);
}

void DomTree::WrapperGone(xmlNode* node) noexcept {
    xmlNode* const root = RootOf(node);
    if (!IsOrphan(root)) return;
    SetWrapperCount(root, WrapperCount(root) - 1);
    if (WrapperCount(root) == 0) NodeDeleter()(root);
}

xmlNode* LinkLast(xmlNode* parent, OwnedNode node) noexcept {
    Link(parent, nullptr, node.get());
    return node.release();
}

void AttributeAppender::Append(OwnedNode attribute) noexcept {
    xmlNode* const node = attribute.release();
    node->parent = element_;
    node->prev = last_;
    if (last_) {
        last_->next = node;
    } else {
        element_->properties = AsAttribute(node);
    }
    last_ = node;
}

OwnedNode NewElement(xmlDoc* document, xmlNs* space, const std::string& localName) {
    return Owned(xmlNewDocNode(document, space, XmlChars(localName.c_str()), nullptr));
}

OwnedNode NewAttribute(xmlDoc* document, xmlElementType type, xmlNs* space, const std::string& name) {
    OwnedNode attribute = Owned(AsNode(xmlNewDocProp(document, XmlChars(name.c_str()), nullptr)));
    attribute->type = type;
    attribute->ns = space;
    return attribute;
}

OwnedNode NewText(xmlDoc* document, std::string_view text) {
    OwnedNode node = Owned(xmlNewDocText(document, nullptr));
    // A short text lies in members that a text has no other use for, where libxml2's own parser puts such texts.
    constexpr std::size_t kRoom = offsetof(xmlNode, psvi) - offsetof(xmlNode, properties);
    if (text.size() < kRoom) {
        char* const room = reinterpret_cast<char*>(node.get()) + offsetof(xmlNode, properties);
        std::memcpy(room, text.data(), text.size());
        room[text.size()] = '\0';
        node->content = reinterpret_cast<xmlChar*>(room);
    } else {
        node->content = Made(xmlStrndup(XmlChars(text.data()), static_cast<int>(text.size())));
    }
    return node;
}

OwnedNode NewContentNode(xmlDoc* document, xmlElementType type, const std::string& name, const std::string& content) {
    const xmlChar* const text = XmlChars(content.c_str());
    switch (type) {
        case XML_CDATA_SECTION_NODE:
            return Owned(xmlNewCDataBlock(document, text, static_cast<int>(content.size())));
        case XML_COMMENT_NODE:
            return Owned(xmlNewDocComment(document, text));
        case XML_PI_NODE:
            return Owned(xmlNewDocPI(document, XmlChars(name.c_str()), text));
        default:
            return NewText(document, content);
    }
}

namespace {

std::string Text(const xmlChar* text) { return std::string(ViewOf(text)); }

xmlNs* NamespaceIn(DomTree& tree, const xmlNs* space) {
    return space ? tree.Namespace(ViewOf(space->prefix), ViewOf(space->href)) : nullptr;
}

// The node with its attributes, or the attribute with its text.
OwnedNode CopyAlone(DomTree& into, xmlNode* original) {
    xmlDoc* const document = into.GetDocument();
    OwnedNode copy;
    if (IsAttribute(original)) {
        copy = NewAttribute(document, original->type, NamespaceIn(into, original->ns), Text(original->name));
        for (xmlNode* text = original->children; text; text = text->next) {
            LinkLast(copy.get(), CopyAlone(into, text));
        }
    } else if (original->type == XML_ELEMENT_NODE) {
        copy = NewElement(document, NamespaceIn(into, original->ns), Text(original->name));
        AttributeAppender appender(copy.get());
        for (xmlAttr* attribute = original->properties; attribute; attribute = attribute->next) {
            appender.Append(CopyAlone(into, AsNode(attribute)));
        }
    } else {
        copy = NewContentNode(document, original->type, Text(original->name), Text(original->content));
    }
    return copy;
}

}  // namespace

OwnedNode CopyNode(DomTree& into, xmlNode* original, bool deep) {
    into.NoteChange();  // the copies' attributes are linked
    OwnedNode top = CopyAlone(into, original);
    if (!deep || IsAttribute(original)) return top;
    xmlNode* parent = nullptr;  // the copy under which the node that is entered goes
    const auto enter = [&](xmlNode* node) {
        parent = node == original ? top.get() : LinkLast(parent, CopyAlone(into, node));
    };
    WalkSubtree(original, enter, [&parent](xmlNode*) { parent = parent->parent; });
    return top;
}

}  // namespace dom
