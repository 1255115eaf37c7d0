// DomTree: a libxml2 document with everything that hangs on it, and the rules of who frees which node.
//
// The COM object of a node (its wrapper) is made when somebody asks for it; xmlNode::_private then points to it.
// Wrappers share the ownership of the tree. A node outside the document (new, or removed) belongs to an orphan: a
// subtree of its own, whose root counts the wrappers in it (in libxml2's psvi member, which only schemas use) and which
// is freed with the last of them.
//
// Namespaces differ from libxml2's own habit. A declaration is an attribute in the element's list, in the order in
// which it was written, with the whole name ("xmlns:psf") and the type kDeclarationType, over which XPath and libxml2's
// searches pass without a match. The xmlNs records of elements and attributes belong to the tree, not to the
// declarations: so a name keeps its namespace whatever happens to a declaration. xmlNode::nsDef is only used for a
// moment while text is written.
#pragma once

#include "domattributefinder.h"
#include "domknownnames.h"
#include "domtext.h"

#include <libxml/tree.h>
#include <widetext.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace dom {

class NodeCore;
class Selector;

inline constexpr xmlElementType kDeclarationType = XML_ATTRIBUTE_DECL;
inline constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";
inline constexpr std::string_view kXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

inline xmlNode* AsNode(xmlAttr* attribute) { return reinterpret_cast<xmlNode*>(attribute); }
inline xmlNode* AsNode(xmlDoc* document) { return reinterpret_cast<xmlNode*>(document); }
inline xmlAttr* AsAttribute(xmlNode* node) { return reinterpret_cast<xmlAttr*>(node); }
inline bool IsDeclaration(const xmlAttr* attribute) { return attribute->type == kDeclarationType; }
inline bool IsAttribute(const xmlNode* node) {
    return node->type == XML_ATTRIBUTE_NODE || node->type == kDeclarationType;
}

struct NodeDeleter {
    void operator()(xmlNode* node) const noexcept;
};
// A node that is linked nowhere and belongs to no tree's orphans.
using OwnedNode = std::unique_ptr<xmlNode, NodeDeleter>;

// Visits a subtree in document order, attributes aside: enter on the way in, leave on the way out. A loop, for a tree
// that is built by calls may be of any depth.
template <class Enter, class Leave>
void WalkSubtree(xmlNode* top, Enter enter, Leave leave) {
    for (xmlNode* node = top;; node = node->next) {
        for (enter(node); node->children; enter(node)) node = node->children;
        for (;; node = node->parent) {
            leave(node);
            if (node == top) return;
            if (node->next) break;
        }
    }
}

// Visits every node of a subtree, attributes and the texts in them included.
template <class Visit>
void ForEachNode(xmlNode* top, Visit visit) {
    const auto enter = [&visit](xmlNode* node) {
        visit(node);
        if (node->type != XML_ELEMENT_NODE) return;
        for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
            visit(AsNode(attribute));
            for (xmlNode* text = attribute->children; text; text = text->next) visit(text);
        }
    };
    WalkSubtree(top, enter, [](xmlNode*) {});
}

// Why and where a text was refused; an empty reason stands for no failure. Line and column count from 1, 0 is unknown.
struct ParseFailure {
    std::string reason;
    int line = 0;
    int column = 0;
};

// What the document's properties were set to.
struct Settings {
    bool preserveWhiteSpace = false;
    bool async = true;
    bool validateOnParse = true;
    bool resolveExternals = false;
    std::string selectionNamespaces;
    ParseFailure parseFailure;
};

// Always made as a shared object.
class DomTree final : public std::enable_shared_from_this<DomTree> {
public:
    DomTree();  // an empty document
    DomTree(const DomTree&) = delete;
    DomTree& operator=(const DomTree&) = delete;
    ~DomTree();

    xmlDoc* GetDocument() const noexcept { return document_; }
    // For the parser: takes over a document whose names use this tree's namespaces. Nothing may hold a node yet.
    void TakeDocument(xmlDoc* document) noexcept;
    // Changes whenever nodes are linked or unlinked, to a number that no other tree of the process ever has; so
    // positions in lists can be remembered.
    std::uint64_t GetChanges() const noexcept { return changes_; }
    void NoteChange() noexcept;
    // The tree's one record of the pair; null for an empty URI. An empty prefix stands for none.
    xmlNs* Namespace(std::string_view prefix, std::string_view uri);

    // Unlinks the node from its parent, if it has one; it becomes an orphan. Somebody holds a part of it.
    void Detach(xmlNode* node) noexcept;
    // Detaches the node and frees it if nobody holds a part of it.
    void Discard(xmlNode* node) noexcept;
    // Links an orphan of this tree under the parent, in front of a child (an attribute: of an attribute) or at the end.
    void Attach(xmlNode* parent, xmlNode* before, xmlNode* orphan) noexcept;
    // Links a node that was just made, and that nobody holds, at the end.
    void AttachNew(xmlNode* parent, OwnedNode node) noexcept;
    // Makes an orphan of another tree one of this tree, wrappers and namespaces included.
    void TakeOver(DomTree& other, xmlNode* orphan);

    void WrapperMade(xmlNode* node) noexcept;
    // Frees the node's orphan when this was the last wrapper in it.
    void WrapperGone(xmlNode* node) noexcept;

    Settings settings;
    std::unique_ptr<Selector> selector;  // made by the first query
    AttributeFinder attributes;
    KnownNames names;

private:
    void FreeAll() noexcept;
    void SetEncoding() noexcept;

    xmlDoc* document_;
    std::uint64_t changes_ = static_cast<std::uint64_t>(-1);  // the last of its block of numbers
    // By prefix and URI; found without copying either.
    struct NamespaceOrder {
        using is_transparent = void;
        template <class A, class B>
        bool operator()(const A& a, const B& b) const noexcept {
            using Views = std::pair<std::string_view, std::string_view>;
            return Views(a.first, a.second) < Views(b.first, b.second);
        }
    };
    std::map<std::pair<std::string, std::string>, xmlNs, NamespaceOrder> namespaces_;
};

// Links at the end of the parent's children, with no bookkeeping; for trees that nobody holds yet.
xmlNode* LinkLast(xmlNode* parent, OwnedNode node) noexcept;

// The same for the attributes of one element, which know no last one.
class AttributeAppender {
public:
    explicit AttributeAppender(xmlNode* element) noexcept : element_(element) {}
    void Append(OwnedNode attribute) noexcept;

private:
    xmlNode* element_;
    xmlNode* last_ = nullptr;
};

// ---- making nodes; std::bad_alloc for lack of memory
OwnedNode NewElement(xmlDoc* document, xmlNs* space, const std::string& localName);
// A declaration has the whole name and no namespace.
OwnedNode NewAttribute(xmlDoc* document, xmlElementType type, xmlNs* space, const std::string& name);
OwnedNode NewText(xmlDoc* document, std::string_view text);
// A text, CDATA section or comment; a processing instruction, whose target is the name.
OwnedNode NewContentNode(xmlDoc* document, xmlElementType type, const std::string& name, const std::string& content);
// A copy in the tree given; attributes are always copied, children if deep.
OwnedNode CopyNode(DomTree& into, xmlNode* original, bool deep);

}  // namespace dom
