// Attributes and declarations, and the map that shows both in the order in which they were written.
#include "domattributes.h"

#include "domname.h"
#include "domplace.h"
#include "domsequence.h"
#include "domwrappers.h"

namespace dom {
namespace {

// The attribute that would be the same one: by its whole name, or by its expanded name under another prefix.
xmlAttr* FindSame(DomTree& tree, const xmlNode* element, const xmlNode* attribute) {
    if (!element->properties) return nullptr;
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

class AttributeMap final : public DomSequence<IXMLDOMNamedNodeMap, IID_IXMLDOMNamedNodeMap, AttributeMap> {
public:
    static constexpr bool kItemMovesOn = false;

    explicit AttributeMap(const NodeCore& element)
        : element_(element), holder_(ComPtr<IXMLDOMNode>::Share(element.GetFace())) {}

    HRESULT STDMETHODCALLTYPE getNamedItem(BSTR name, IXMLDOMNode** item) override {
        return Guarded([&] {
            return Return(FindAttribute(element_.GetTree(), element_.GetNode(), RawToUtf8(ViewOf(name))), item);
        });
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
            xmlAttr* const found = FindAttribute(element_.GetTree(), element_.GetNode(), RawToUtf8(ViewOf(name)));
            return TakeOffAttribute(element_, found, item);
        });
    }
    HRESULT STDMETHODCALLTYPE getQualifiedItem(BSTR baseName, BSTR uri, IXMLDOMNode** item) override {
        return Guarded([&] {
            return Return(FindExpanded(element_.GetNode(), RawToUtf8(ViewOf(baseName)), RawToUtf8(ViewOf(uri))), item);
        });
    }
    HRESULT STDMETHODCALLTYPE removeQualifiedItem(BSTR baseName, BSTR uri, IXMLDOMNode** item) override {
        return Guarded([&] {
            xmlAttr* const found =
                FindExpanded(element_.GetNode(), RawToUtf8(ViewOf(baseName)), RawToUtf8(ViewOf(uri)));
            return TakeOffAttribute(element_, found, item);
        });
    }
    HRESULT At(LONG index, IXMLDOMNode** item) {
        return element_.ReturnNode(place_.At(element_.GetTree(), First(), index), item);
    }
    LONG Length() { return place_.Length(element_.GetTree(), First()); }

private:
    HRESULT Return(xmlAttr* attribute, IXMLDOMNode** item) const {
        return element_.ReturnNode(attribute ? AsNode(attribute) : nullptr, item);
    }
    xmlNode* First() const { return AsNode(element_.GetNode()->properties); }

    const NodeCore& element_;
    ComPtr<IXMLDOMNode> holder_;  // keeps element_
    SiblingPlace place_;
};

}  // namespace

IXMLDOMNamedNodeMap* NewAttributeMap(const NodeCore& element) { return new AttributeMap(element); }

xmlAttr* FindAttribute(DomTree& tree, const xmlNode* element, std::string_view wholeName) {
    return tree.attributes.Find(tree.GetChanges(), element, wholeName);
}

HRESULT PutAttribute(const NodeCore& element, NodeCore* attribute, IXMLDOMNode** replaced) {
    if (!attribute || !IsAttribute(attribute->GetNode())) return E_INVALIDARG;
    xmlNode* const owner = element.GetNode();
    xmlNode* const node = attribute->GetNode();
    if (node->parent) return E_FAIL;
    DomTree& tree = element.GetTree();
    xmlAttr* const same = FindSame(tree, owner, node);
    const bool fits = IsDeclaration(AsAttribute(node))
                          ? CanDeclare(owner, same, AsAttribute(node), AttributeText(AsAttribute(node)))
                          : !node->ns || !node->ns->prefix ||
                                !ContradictsPrefix(owner, same, ViewOf(node->ns->prefix), NamespaceOf(node));
    if (!fits) return E_FAIL;
    ComPtr<IXMLDOMNode> old;
    if (same) old = NodeCore::Wrap(element.GetSharedTree(), AsNode(same));
    if (&attribute->GetTree() != &tree) tree.TakeOver(attribute->GetTree(), node);
    xmlNode* const before = same ? AsNode(same)->next : nullptr;
    if (same) tree.Detach(AsNode(same));
    tree.Attach(owner, before, node);
    if (replaced) *replaced = old.Detach();
    return S_OK;
}

HRESULT PutAttributeText(const NodeCore& element, const std::string& wholeName, const std::string& text) {
    if (!IsQName(wholeName)) return wholeName.empty() ? E_FAIL : E_INVALIDARG;
    ComPtr<IXMLDOMNode> holder;
    if (xmlAttr* const found = FindAttribute(element.GetTree(), element.GetNode(), wholeName)) {
        holder = NodeCore::Wrap(element.GetSharedTree(), AsNode(found));
        return NodeCore::Of(holder.Get())->PutContent(text);
    }
    const std::string_view prefix = SplitName(wholeName).prefix;
    const bool isDeclaration = IsDeclarationName(wholeName);
    const std::string uri(prefix.empty() || isDeclaration ? std::string_view()
                                                          : BoundNamespace(element.GetNode(), prefix));
    if (!prefix.empty() && !isDeclaration && uri.empty()) return E_FAIL;
    OwnedNode attribute;
    if (const HRESULT result = NewAttributeNode(element.GetTree(), wholeName, uri, &attribute); FAILED(result))
        return result;
    holder = NodeCore::WrapNew(element.GetSharedTree(), std::move(attribute));
    NodeCore* const core = NodeCore::Of(holder.Get());
    if (const HRESULT result = core->PutContent(text); FAILED(result)) return result;
    return PutAttribute(element, core, nullptr);
}

HRESULT TakeOffAttribute(const NodeCore& element, xmlAttr* attribute, IXMLDOMNode** taken) {
    if (!attribute) {
        if (taken) *taken = nullptr;
        return S_FALSE;
    }
    ComPtr<IXMLDOMNode> holder = NodeCore::Wrap(element.GetSharedTree(), AsNode(attribute));
    element.GetTree().Detach(AsNode(attribute));
    if (taken) *taken = holder.Detach();
    return S_OK;
}

HRESULT NewAttributeNode(DomTree& tree, const std::string& wholeName, std::string_view uri, OwnedNode* attribute) {
    if (!IsQName(wholeName)) return wholeName.empty() ? E_FAIL : E_INVALIDARG;
    if (IsDeclarationName(wholeName)) {
        // Callers name no namespace or the one that declarations are in.
        if (!uri.empty() && uri != kXmlnsNamespace) return E_INVALIDARG;
        *attribute = NewAttribute(tree.GetDocument(), kDeclarationType, nullptr, wholeName);
        return S_OK;
    }
    const QName name = SplitName(wholeName);
    xmlNs* space = nullptr;
    if (!NamespaceForName(tree, name, uri, &space)) return E_INVALIDARG;
    *attribute = NewAttribute(tree.GetDocument(), XML_ATTRIBUTE_NODE, space, std::string(name.local));
    return S_OK;
}

}  // namespace dom
