// The COM objects of elements and attributes.
#include "domattributes.h"
#include "domname.h"
#include "domwrappers.h"

namespace dom {
namespace {

class AttributeObject final : public NodeObject<IXMLDOMAttribute, IID_IXMLDOMAttribute> {
public:
    using NodeObject::NodeObject;

    HRESULT STDMETHODCALLTYPE get_name(BSTR* name) override { return get_nodeName(name); }
    HRESULT STDMETHODCALLTYPE get_value(VARIANT* value) override { return get_nodeValue(value); }
    HRESULT STDMETHODCALLTYPE put_value(VARIANT value) override { return put_nodeValue(value); }
};

class ElementObject final : public NodeObject<IXMLDOMElement, IID_IXMLDOMElement> {
public:
    using NodeObject::NodeObject;

    HRESULT STDMETHODCALLTYPE get_tagName(BSTR* name) override { return get_nodeName(name); }
    HRESULT STDMETHODCALLTYPE getAttribute(BSTR name, VARIANT* value) override {
        return Guarded([&] {
            const xmlAttr* const found = Find(name);
            return found ? ReturnText(AttributeText(found), value) : ReturnNothing(value);
        });
    }
    HRESULT STDMETHODCALLTYPE setAttribute(BSTR name, VARIANT value) override {
        return Guarded([&] {
            std::string text;
            return ContentOf(value, &text) ? PutAttributeText(*this, RawToUtf8(ViewOf(name)), text) : E_INVALIDARG;
        });
    }
    HRESULT STDMETHODCALLTYPE removeAttribute(BSTR name) override {
        return Guarded([&] { return TakeOffAttribute(*this, Find(name), nullptr); });
    }
    HRESULT STDMETHODCALLTYPE getAttributeNode(BSTR name, IXMLDOMAttribute** attribute) override {
        return Guarded([&] {
            xmlAttr* const found = Find(name);
            return ReturnNode(found ? AsNode(found) : nullptr, attribute);
        });
    }
    HRESULT STDMETHODCALLTYPE setAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** replaced) override {
        return Guarded([&] {
            ComPtr<IXMLDOMNode> old;
            return Return(PutAttribute(*this, NodeCore::Of(attribute), old.Put()), &old, replaced);
        });
    }
    HRESULT STDMETHODCALLTYPE removeAttributeNode(IXMLDOMAttribute* attribute, IXMLDOMAttribute** taken) override {
        return Guarded([&] {
            const NodeCore* const core = NodeCore::Of(attribute);
            if (!core || !IsAttribute(core->GetNode()) || core->GetNode()->parent != GetNode()) return E_INVALIDARG;
            ComPtr<IXMLDOMNode> old;
            return Return(TakeOffAttribute(*this, AsAttribute(core->GetNode()), old.Put()), &old, taken);
        });
    }
    HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR, IXMLDOMNodeList**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE normalize() override { return E_NOTIMPL; }

private:
    static HRESULT Return(HRESULT result, ComPtr<IXMLDOMNode>* node, IXMLDOMAttribute** out) {
        if (SUCCEEDED(result) && out) *out = static_cast<IXMLDOMAttribute*>(node->Detach());
        return result;
    }
    xmlAttr* Find(BSTR name) const { return FindAttribute(GetTree(), GetNode(), RawToUtf8(ViewOf(name))); }
};

}  // namespace

IXMLDOMNode* NewElementObject(const std::shared_ptr<DomTree>& tree, xmlNode* node) {
    return new ElementObject(tree, node);
}

IXMLDOMNode* NewAttributeObject(const std::shared_ptr<DomTree>& tree, xmlNode* node) {
    return new AttributeObject(tree, node);
}

}  // namespace dom
