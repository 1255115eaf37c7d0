// Attributes and declarations, and the map that shows both in the order in which they were written.
#include "domattributes.h"

#include "domname.h"
#include "domplace.h"
#include "domwrappers.h"

namespace dom {
namespace {

// The attribute that would be the same one: by its whole name, or by its expanded name under another prefix.
xmlAttr* FindSame(DomTree& tree, const xmlNode* element, const xmlNode* attribute) {
    if (xmlAttr* const found = FindAttribute(tree, element, WholeName(attribute))) return found;
    const auto hasPrefix = [](const xmlNode* node) { return node->ns && node->ns->prefix; };
    if (!hasPrefix(attribute)) return nullptr;
    for (xmlAttr* other = element->properties; other; other = other->next) {
        if (hasPrefix(AsNode(other)) && ViewOf(other->name) == ViewOf(attribute->name) &&
            NamespaceOf(AsNode(other)) == NamespaceOf(attribute)) {
            return other;
        }
    }
    return nullptr;
}

xmlAttr* FindExpanded(const xmlNode* element, std::string_view localName, std::string_view uri) {
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        if (NamespaceOf(AsNode(attribute)) == uri && SplitName(ViewOf(attribute->name)).local == localName) {
            return attribute;
        }
    }
    return nullptr;
}

class AttributeMap final : public DomObject<IXMLDOMNamedNodeMap, IID_IXMLDOMNamedNodeMap> {
public:
    explicit AttributeMap(const NodeCore& element)
        : element_(element), holder_(ComPtr<IXMLDOMNode>::Share(element.Face())) {}

    HRESULT STDMETHODCALLTYPE getNamedItem(BSTR name, IXMLDOMNode** item) override {
        return Guarded(
            [&] { return Return(FindAttribute(element_.Tree(), element_.Node(), RawToUtf8(ViewOf(name))), item); });
    }
    HRESULT STDMETHODCALLTYPE setNamedItem(IXMLDOMNode* newItem, IXMLDOMNode** item) override {
        return Guarded([&] {
            ComPtr<IXMLDOMNode> replaced;
            const HRESULT result = PutAttribute(element_, NodeCore::Of(newItem), replaced.Put());
            if (SUCCEEDED(result) && item) *item = ComPtr<IXMLDOMNode>::Share(newItem).Detach();
            return result;
        });
    }
    HRESULT STDMETHODCALLTYPE removeNamedItem(BSTR name, IXMLDOMNode** item) override {
        return Guarded([&] {
            if (!name) return E_INVALIDARG;
            xmlAttr* const found = FindAttribute(element_.Tree(), element_.Node(), RawToUtf8(ViewOf(name)));
            return TakeOffAttribute(element_, found, item);
        });
    }
    HRESULT STDMETHODCALLTYPE get_item(LONG index, IXMLDOMNode** item) override {
        return Guarded([&] { return element_.ReturnNode(At(index), item); });
    }
    HRESULT STDMETHODCALLTYPE get_length(LONG* length) override {
        if (!length) return E_INVALIDARG;
        *length = place_.Length(element_.Tree(), First());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getQualifiedItem(BSTR baseName, BSTR uri, IXMLDOMNode** item) override {
        return Guarded([&] {
            return Return(FindExpanded(element_.Node(), RawToUtf8(ViewOf(baseName)), RawToUtf8(ViewOf(uri))), item);
        });
    }
    HRESULT STDMETHODCALLTYPE removeQualifiedItem(BSTR baseName, BSTR uri, IXMLDOMNode** item) override {
        return Guarded([&] {
            xmlAttr* const found = FindExpanded(element_.Node(), RawToUtf8(ViewOf(baseName)), RawToUtf8(ViewOf(uri)));
            return TakeOffAttribute(element_, found, item);
        });
    }
    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** item) override {
        return Guarded([&] {
            const HRESULT result = element_.ReturnNode(At(next_), item);
            if (result == S_OK) ++next_;
            return result;
        });
    }
    HRESULT STDMETHODCALLTYPE reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown**) override { return E_NOTIMPL; }

private:
    HRESULT Return(xmlAttr* attribute, IXMLDOMNode** item) const {
        return element_.ReturnNode(attribute ? AsNode(attribute) : nullptr, item);
    }
    xmlNode* First() const { return AsNode(element_.Node()->properties); }
    xmlNode* At(LONG index) { return place_.At(element_.Tree(), First(), index); }

    const NodeCore& element_;
    ComPtr<IXMLDOMNode> holder_;  // keeps element_
    SiblingPlace place_;
    LONG next_ = 0;
};

}  // namespace

IXMLDOMNamedNodeMap* NewAttributeMap(const NodeCore& element) { return new AttributeMap(element); }

xmlAttr* FindAttribute(DomTree& tree, const xmlNode* element, std::string_view wholeName) {
    return tree.attributes.Find(tree.Changes(), element, wholeName);
}

HRESULT PutAttribute(const NodeCore& element, NodeCore* attribute, IXMLDOMNode** replaced) {
    if (!attribute || !IsAttribute(attribute->Node())) return E_INVALIDARG;
    xmlNode* const owner = element.Node();
    xmlNode* const node = attribute->Node();
    if (node->parent) return E_FAIL;
    DomTree& tree = element.Tree();
    xmlAttr* const same = FindSame(tree, owner, node);
    const bool fits = IsDeclaration(AsAttribute(node))
                          ? CanDeclare(owner, same, AsAttribute(node), AttributeText(AsAttribute(node)))
                          : !node->ns || !node->ns->prefix ||
                                !ContradictsPrefix(owner, same, ViewOf(node->ns->prefix), NamespaceOf(node));
    if (!fits) return E_FAIL;
    ComPtr<IXMLDOMNode> old;
    if (same) old = NodeCore::Wrap(element.SharedTree(), AsNode(same));
    if (&attribute->Tree() != &tree) tree.TakeOver(attribute->Tree(), node);
    xmlNode* const before = same ? AsNode(same)->next : nullptr;
    if (same) tree.Detach(AsNode(same));
    tree.Attach(owner, before, node);
    if (replaced) *replaced = old.Detach();
    return S_OK;
}

HRESULT PutAttributeText(const NodeCore& element, const std::string& wholeName, const std::string& text) {
    if (!IsQName(wholeName)) return wholeName.empty() ? E_FAIL : E_INVALIDARG;
    ComPtr<IXMLDOMNode> holder;
    if (xmlAttr* const found = FindAttribute(element.Tree(), element.Node(), wholeName)) {
        holder = NodeCore::Wrap(element.SharedTree(), AsNode(found));
        return NodeCore::Of(holder.Get())->PutContent(text);
    }
    const std::string_view prefix = SplitName(wholeName).prefix;
    const bool isDeclaration = IsDeclarationName(wholeName);
    const std::string uri(prefix.empty() || isDeclaration ? std::string_view()
                                                          : BoundNamespace(element.Node(), prefix));
    if (!prefix.empty() && !isDeclaration && uri.empty()) return E_FAIL;
    OwnedNode attribute;
    if (const HRESULT result = NewAttributeNode(element.Tree(), wholeName, uri, &attribute); FAILED(result))
        return result;
    holder = NodeCore::WrapNew(element.SharedTree(), std::move(attribute));
    NodeCore* const core = NodeCore::Of(holder.Get());
    if (const HRESULT result = core->PutContent(text); FAILED(result)) return result;
    return PutAttribute(element, core, nullptr);
}

HRESULT TakeOffAttribute(const NodeCore& element, xmlAttr* attribute, IXMLDOMNode** taken) {
    if (!attribute) {
        if (taken) *taken = nullptr;
        return S_FALSE;
    }
    ComPtr<IXMLDOMNode> holder = NodeCore::Wrap(element.SharedTree(), AsNode(attribute));
    element.Tree().Detach(AsNode(attribute));
    if (taken) *taken = holder.Detach();
    return S_OK;
}

HRESULT NewAttributeNode(DomTree& tree, const std::string& wholeName, std::string_view uri, OwnedNode* attribute) {
    if (!IsQName(wholeName)) return wholeName.empty() ? E_FAIL : E_INVALIDARG;
    if (IsDeclarationName(wholeName)) {
        // Callers name no namespace or the one that declarations are in.
        if (!uri.empty() && uri != kXmlnsNamespace) return E_INVALIDARG;
        *attribute = NewAttribute(tree.Document(), kDeclarationType, nullptr, wholeName);
        return S_OK;
    }
    const QName name = SplitName(wholeName);
    xmlNs* space = nullptr;
    if (!NamespaceForName(tree, name, uri, &space)) return E_INVALIDARG;
    *attribute = NewAttribute(tree.Document(), XML_ATTRIBUTE_NODE, space, std::string(name.local));
    return S_OK;
}

}  // namespace dom
