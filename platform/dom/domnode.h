// NodeCore: a node's wrapper without its COM face, and what IXMLDOMNode does; NodeObject: the COM object around it.
#pragma once

#include "domobject.h"
#include "domtree.h"

#include <comptr.h>

#include <memory>
#include <string>

namespace dom {

// Asks an object for its NodeCore (as void*); only objects of this DOM answer. {6D0D5A1E-7C4B-4E0B-9A53-52F1C0A3D7E4}
inline constexpr IID kNodeCoreIid = {0x6D0D5A1E, 0x7C4B, 0x4E0B, {0x9A, 0x53, 0x52, 0xF1, 0xC0, 0xA3, 0xD7, 0xE4}};

// The text of an attribute is kept in a node, too, but that one is never shown.
inline xmlNode* FirstChildOf(const xmlNode* node) { return IsAttribute(node) ? nullptr : node->children; }

// The methods are those of IXMLDOMNode, by their names without get_. They may throw std::bad_alloc. A null out pointer
// is E_INVALIDARG; out pointers are only written on success and on S_FALSE, which means that there is none. Insertions
// and removals, whose out pointer may be null, set it to null when they fail.
class NodeCore {
public:
    NodeCore(std::shared_ptr<DomTree> tree, xmlNode* node, IXMLDOMNode* face) noexcept;
    NodeCore(const NodeCore&) = delete;
    NodeCore& operator=(const NodeCore&) = delete;

    DomTree& GetTree() const noexcept { return *tree_; }
    const std::shared_ptr<DomTree>& GetSharedTree() const noexcept { return tree_; }
    xmlNode* GetNode() const noexcept { return node_; }
    IXMLDOMNode* GetFace() const noexcept { return face_; }
    void MoveTo(const std::shared_ptr<DomTree>& tree) noexcept { tree_ = tree; }

    // What the caller of a COM method handed in, which it holds; null for null and for objects of other makers.
    static NodeCore* Of(IUnknown* object) noexcept;

    HRESULT NodeName(BSTR* name) const;
    HRESULT NodeValue(VARIANT* value) const;
    HRESULT PutNodeValue(const VARIANT& value);
    HRESULT NodeType(DOMNodeType* type) const;
    HRESULT NodeTypeString(BSTR* type) const;
    HRESULT ParentNode(IXMLDOMNode** parent) const;
    HRESULT ChildNodes(IXMLDOMNodeList** children) const;
    HRESULT FirstChild(IXMLDOMNode** child) const { return ReturnNode(FirstChildOf(node_), child); }
    HRESULT LastChild(IXMLDOMNode** child) const {
        return ReturnNode(IsAttribute(node_) ? nullptr : node_->last, child);
    }
    HRESULT PreviousSibling(IXMLDOMNode** sibling) const;
    HRESULT NextSibling(IXMLDOMNode** sibling) const;
    HRESULT Attributes(IXMLDOMNamedNodeMap** attributes) const;
    HRESULT OwnerDocument(IXMLDOMDocument** document) const;
    HRESULT HasChildNodes(VARIANT_BOOL* hasChild) const;

    HRESULT InsertBefore(IXMLDOMNode* newChild, const VARIANT& reference, IXMLDOMNode** outNewChild);
    HRESULT ReplaceChild(IXMLDOMNode* newChild, IXMLDOMNode* oldChild, IXMLDOMNode** outOldChild);
    HRESULT RemoveChild(IXMLDOMNode* child, IXMLDOMNode** outOldChild);
    HRESULT AppendChild(IXMLDOMNode* newChild, IXMLDOMNode** outNewChild);
    HRESULT CloneNode(VARIANT_BOOL deep, IXMLDOMNode** clone) const;

    // The text without its outer white space, unless white space is kept here (see TextOf).
    HRESULT Text(BSTR* text) const;
    HRESULT PutText(BSTR text);
    HRESULT NodeTypedValue(VARIANT* value) const;
    HRESULT PutNodeTypedValue(const VARIANT& value);
    HRESULT Xml(BSTR* xml) const;

    HRESULT SelectNodes(BSTR query, IXMLDOMNodeList** list) const;
    HRESULT SelectSingleNode(BSTR query, IXMLDOMNode** node) const;

    HRESULT NamespaceUri(BSTR* uri) const;
    HRESULT Prefix(BSTR* prefix) const;
    HRESULT BaseName(BSTR* name) const;

    // The wrapper of a node of this tree; S_FALSE and null for null.
    template <class Interface>
    HRESULT ReturnNode(xmlNode* node, Interface** out) const {
        if (!out) return E_INVALIDARG;
        *out = node ? static_cast<Interface*>(Wrap(tree_, node).Detach()) : nullptr;
        return node ? S_OK : S_FALSE;
    }
    // The one wrapper of the node, made if there is none. Its interface is the one of the node's type, so that the
    // result can be cast down to it.
    static ComPtr<IXMLDOMNode> Wrap(const std::shared_ptr<DomTree>& tree, xmlNode* node);
    // The same for a node that was just made: it becomes an orphan of the tree.
    static ComPtr<IXMLDOMNode> WrapNew(const std::shared_ptr<DomTree>& tree, OwnedNode node);

    // Replaces what an element or an attribute holds, or a content node's text. E_FAIL where there is none to replace
    // and where the node's kind cannot hold the text.
    HRESULT PutContent(std::string_view content);

protected:
    ~NodeCore();
    // For a document whose content is replaced by another tree.
    void Rebind(std::shared_ptr<DomTree> tree) noexcept;

private:
    HRESULT CheckInsertion(const NodeCore& child, const xmlNode* replaced) const;
    HRESULT Insert(IXMLDOMNode* newChild, xmlNode* before, const xmlNode* replaced);

    std::shared_ptr<DomTree> tree_;
    xmlNode* node_;
    IXMLDOMNode* const face_;
};

// The COM object of a node: Interface is IXMLDOMNode or derived from it.
template <class Interface, const IID&... Faces>
class NodeObject : public DomObject<Interface, IID_IXMLDOMNode, Faces...>, public NodeCore {
public:
    NodeObject(std::shared_ptr<DomTree> tree, xmlNode* node) noexcept : NodeCore(std::move(tree), node, this) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object || !IsEqualIID(iid, kNodeCoreIid)) {
            return DomObject<Interface, IID_IXMLDOMNode, Faces...>::QueryInterface(iid, object);
        }
        *object = static_cast<NodeCore*>(this);
        this->AddRef();
        return S_OK;
    }

// Each method of the interface runs the core's method of the same purpose behind the exception wall.
#define MV_FORWARD(method, core, parameters, arguments)           \
    HRESULT STDMETHODCALLTYPE method parameters override {        \
        return Guarded([&] { return NodeCore::core arguments; }); \
    }
    MV_FORWARD(get_nodeName, NodeName, (BSTR * name), (name))
    MV_FORWARD(get_nodeValue, NodeValue, (VARIANT * value), (value))
    MV_FORWARD(put_nodeValue, PutNodeValue, (VARIANT value), (value))
    MV_FORWARD(get_nodeType, NodeType, (DOMNodeType * type), (type))
    MV_FORWARD(get_parentNode, ParentNode, (IXMLDOMNode * *parent), (parent))
    MV_FORWARD(get_childNodes, ChildNodes, (IXMLDOMNodeList * *children), (children))
    MV_FORWARD(get_firstChild, FirstChild, (IXMLDOMNode * *child), (child))
    MV_FORWARD(get_lastChild, LastChild, (IXMLDOMNode * *child), (child))
    MV_FORWARD(get_previousSibling, PreviousSibling, (IXMLDOMNode * *sibling), (sibling))
    MV_FORWARD(get_nextSibling, NextSibling, (IXMLDOMNode * *sibling), (sibling))
    MV_FORWARD(get_attributes, Attributes, (IXMLDOMNamedNodeMap * *attributes), (attributes))
    MV_FORWARD(insertBefore, InsertBefore, (IXMLDOMNode * child, VARIANT reference, IXMLDOMNode** outChild),
               (child, reference, outChild))
    MV_FORWARD(replaceChild, ReplaceChild, (IXMLDOMNode * child, IXMLDOMNode* oldChild, IXMLDOMNode** outOldChild),
               (child, oldChild, outOldChild))
    MV_FORWARD(removeChild, RemoveChild, (IXMLDOMNode * child, IXMLDOMNode** outChild), (child, outChild))
    MV_FORWARD(appendChild, AppendChild, (IXMLDOMNode * child, IXMLDOMNode** outChild), (child, outChild))
    MV_FORWARD(hasChildNodes, HasChildNodes, (VARIANT_BOOL * hasChild), (hasChild))
    MV_FORWARD(get_ownerDocument, OwnerDocument, (IXMLDOMDocument * *document), (document))
    MV_FORWARD(cloneNode, CloneNode, (VARIANT_BOOL deep, IXMLDOMNode** clone), (deep, clone))
    MV_FORWARD(get_nodeTypeString, NodeTypeString, (BSTR * type), (type))
    MV_FORWARD(get_text, Text, (BSTR * text), (text))
    MV_FORWARD(put_text, PutText, (BSTR text), (text))
    MV_FORWARD(get_nodeTypedValue, NodeTypedValue, (VARIANT * value), (value))
    MV_FORWARD(put_nodeTypedValue, PutNodeTypedValue, (VARIANT value), (value))
    MV_FORWARD(get_xml, Xml, (BSTR * xml), (xml))
    MV_FORWARD(selectNodes, SelectNodes, (BSTR query, IXMLDOMNodeList** list), (query, list))
    MV_FORWARD(selectSingleNode, SelectSingleNode, (BSTR query, IXMLDOMNode** node), (query, node))
    MV_FORWARD(get_namespaceURI, NamespaceUri, (BSTR * uri), (uri))
    MV_FORWARD(get_prefix, Prefix, (BSTR * prefix), (prefix))
    MV_FORWARD(get_baseName, BaseName, (BSTR * name), (name))
#undef MV_FORWARD

    // Schemas, data types and style sheets are not part of this DOM.
    HRESULT STDMETHODCALLTYPE get_specified(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_definition(IXMLDOMNode**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dataType(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_dataType(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE transformNode(IXMLDOMNode*, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_parsed(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE transformNodeToObject(IXMLDOMNode*, VARIANT) override { return E_NOTIMPL; }
};

}  // namespace dom
