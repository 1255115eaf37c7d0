// The failing document: one proxy class a DOM interface, all over one base that counts the calls.
#include "support/failingdom.h"

#include <bstr.h>

namespace {

// Asked of a proxy, gives the object that it stands for.
constexpr IID kInnerObject = {0x5c0f2a11, 0x3b7e, 0x4d0a, {0x9a, 0x41, 0x60, 0x1c, 0x57, 0x8e, 0x22, 0x90}};

template <class Interface>
ComPtr<Interface> MakeProxy(Interface* object, DomCallPlan* plan);

// A node as the real DOM knows it, whether it came through a proxy or not.
template <class Interface>
ComPtr<Interface> Inner(Interface* node) {
    ComPtr<Interface> inner;
    if (node && FAILED(node->QueryInterface(kInnerObject, inner.PutVoid()))) return ComPtr<Interface>::Share(node);
    return inner;
}

Variant InnerReference(VARIANT reference) {
    if (reference.vt != VT_DISPATCH || !reference.pdispVal) return Variant(static_cast<IDispatch*>(nullptr));
    return Variant(Inner(static_cast<IXMLDOMNode*>(reference.pdispVal)).Get());
}

template <class Interface, const IID& kInterface>
class Proxy : public Interface {
public:
    Proxy(ComPtr<Interface> inner, DomCallPlan* plan) : inner_(std::move(inner)), plan_(plan) {}
    virtual ~Proxy() = default;

    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (IsEqualIID(iid, kInnerObject)) {
            *object = inner_.Get();
            inner_->AddRef();
            return S_OK;
        }
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, kInterface)) {
            *object = static_cast<Interface*>(this);
            AddRef();
            return S_OK;
        }
        if (plan_->Fails()) return plan_->failure;
        if (IsEqualIID(iid, IID_IXMLDOMElement)) return HandOther<IXMLDOMElement>(iid, object);
        if (IsEqualIID(iid, IID_IXMLDOMAttribute)) return HandOther<IXMLDOMAttribute>(iid, object);
        if (IsEqualIID(iid, IID_IXMLDOMNode)) return HandOther<IXMLDOMNode>(iid, object);
        return E_NOINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPWSTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

protected:
    template <class Call>
    HRESULT Forward(Call call) {
        return plan_->Fails() ? plan_->failure : call();
    }
    // Hands out what the real DOM gives, behind a proxy of its own.
    template <class Out, class Call>
    HRESULT Hand(Out** object, Call call) {
        if (plan_->Fails()) return plan_->failure;
        if (!object) return call(static_cast<Out**>(nullptr));
        ComPtr<Out> inner;
        const HRESULT hr = call(inner.Put());
        if (SUCCEEDED(hr)) *object = inner ? MakeProxy(inner.Get(), plan_).Detach() : nullptr;
        return hr;
    }

    ComPtr<Interface> inner_;
    DomCallPlan* plan_;

private:
    template <class Other>
    HRESULT HandOther(REFIID iid, void** object) {
        const ComPtr<Other> other = inner_.template As<Other>(iid);
        if (!other) return E_NOINTERFACE;
        *object = MakeProxy(other.Get(), plan_).Detach();
        return S_OK;
    }

    ULONG references_ = 0;
};

template <class Interface, const IID& kInterface>
class NodeProxy : public Proxy<Interface, kInterface> {
public:
    using Proxy<Interface, kInterface>::Proxy;
    using Proxy<Interface, kInterface>::inner_;
    using Proxy<Interface, kInterface>::Forward;
    using Proxy<Interface, kInterface>::Hand;

    HRESULT STDMETHODCALLTYPE get_nodeName(BSTR* a) override {
        return Forward([&] { return inner_->get_nodeName(a); });
    }
    HRESULT STDMETHODCALLTYPE get_nodeValue(VARIANT* a) override {
        return Forward([&] { return inner_->get_nodeValue(a); });
    }
    HRESULT STDMETHODCALLTYPE put_nodeValue(VARIANT a) override {
        return Forward([&] { return inner_->put_nodeValue(a); });
    }
    HRESULT STDMETHODCALLTYPE get_nodeType(DOMNodeType* a) override {
        return Forward([&] { return inner_->get_nodeType(a); });
    }
    HRESULT STDMETHODCALLTYPE get_parentNode(IXMLDOMNode** a) override {
        return Hand(a, [&](auto out) { return inner_->get_parentNode(out); });
    }
    HRESULT STDMETHODCALLTYPE get_childNodes(IXMLDOMNodeList** a) override {
        return Hand(a, [&](auto out) { return inner_->get_childNodes(out); });
    }
    HRESULT STDMETHODCALLTYPE get_firstChild(IXMLDOMNode** a) override {
        return Hand(a, [&](auto out) { return inner_->get_firstChild(out); });
    }
    HRESULT STDMETHODCALLTYPE get_lastChild(IXMLDOMNode** a) override {
        return Hand(a, [&](auto out) { return inner_->get_lastChild(out); });
    }
    HRESULT STDMETHODCALLTYPE get_previousSibling(IXMLDOMNode** a) override {
        return Hand(a, [&](auto out) { return inner_->get_previousSibling(out); });
    }
    HRESULT STDMETHODCALLTYPE get_nextSibling(IXMLDOMNode** a) override {
        return Hand(a, [&](auto out) { return inner_->get_nextSibling(out); });
    }
    HRESULT STDMETHODCALLTYPE get_attributes(IXMLDOMNamedNodeMap** a) override {
        return Hand(a, [&](auto out) { return inner_->get_attributes(out); });
    }
    HRESULT STDMETHODCALLTYPE insertBefore(IXMLDOMNode* a, VARIANT b, IXMLDOMNode** c) override {
        return Hand(c, [&](auto out) { return inner_->insertBefore(Inner(a).Get(), InnerReference(b).Get(), out); });
    }
    HRESULT STDMETHODCALLTYPE replaceChild(IXMLDOMNode* a, IXMLDOMNode* b, IXMLDOMNode** c) override {
        return Hand(c, [&](auto out) { return inner_->replaceChild(Inner(a).Get(), Inner(b).Get(), out); });
    }
    HRESULT STDMETHODCALLTYPE removeChild(IXMLDOMNode* a, IXMLDOMNode** b) override {
        return Hand(b, [&](auto out) { return inner_->removeChild(Inner(a).Get(), out); });
    }
    HRESULT STDMETHODCALLTYPE appendChild(IXMLDOMNode* a, IXMLDOMNode** b) override {
        return Hand(b, [&](auto out) { return inner_->appendChild(Inner(a).Get(), out); });
    }
    HRESULT STDMETHODCALLTYPE hasChildNodes(VARIANT_BOOL* a) override {
        return Forward([&] { return inner_->hasChildNodes(a); });
    }
    HRESULT STDMETHODCALLTYPE get_ownerDocument(IXMLDOMDocument**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE cloneNode(VARIANT_BOOL, IXMLDOMNode**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_nodeTypeString(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_text(BSTR* a) override {
        return Forward([&] { return inner_->get_text(a); });
    }
    HRESULT STDMETHODCALLTYPE put_text(BSTR a) override {
        return Forward([&] { return inner_->put_text(a); });
    }
    HRESULT STDMETHODCALLTYPE get_specified(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_definition(IXMLDOMNode**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_nodeTypedValue(VARIANT* a) override {
        return Forward([&] { return inner_->get_nodeTypedValue(a); });
    }
    HRESULT STDMETHODCALLTYPE put_nodeTypedValue(VARIANT a) override {
        return Forward([&] { return inner_->put_nodeTypedValue(a); });
    }
    HRESULT STDMETHODCALLTYPE get_dataType(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_dataType(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_xml(BSTR* a) override {
        return Forward([&] { return inner_->get_xml(a); });
    }
    HRESULT STDMETHODCALLTYPE transformNode(IXMLDOMNode*, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE selectNodes(BSTR a, IXMLDOMNodeList** b) override {
        return Hand(b, [&](auto out) { return inner_->selectNodes(a, out); });
    }
    HRESULT STDMETHODCALLTYPE selectSingleNode(BSTR a, IXMLDOMNode** b) override {
        return Hand(b, [&](auto out) { return inner_->selectSingleNode(a, out); });
    }
    HRESULT STDMETHODCALLTYPE get_parsed(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_namespaceURI(BSTR* a) override {
        return Forward([&] { return inner_->get_namespaceURI(a); });
    }
    HRESULT STDMETHODCALLTYPE get_prefix(BSTR* a) override {
        return Forward([&] { return inner_->get_prefix(a); });
    }
    HRESULT STDMETHODCALLTYPE get_baseName(BSTR* a) override {
        return Forward([&] { return inner_->get_baseName(a); });
    }
    HRESULT STDMETHODCALLTYPE transformNodeToObject(IXMLDOMNode*, VARIANT) override { return E_NOTIMPL; }
};

using PlainNodeProxy = NodeProxy<IXMLDOMNode, IID_IXMLDOMNode>;

class ElementProxy final : public NodeProxy<IXMLDOMElement, IID_IXMLDOMElement> {
public:
    using NodeProxy::NodeProxy;
    HRESULT STDMETHODCALLTYPE get_tagName(BSTR* a) override {
        return Forward([&] { return inner_->get_tagName(a); });
    }
    HRESULT STDMETHODCALLTYPE getAttribute(BSTR a, VARIANT* b) override {
        return Forward([&] { return inner_->getAttribute(a, b); });
    }
    HRESULT STDMETHODCALLTYPE setAttribute(BSTR a, VARIANT b) override {
        return Forward([&] { return inner_->setAttribute(a, b); });
    }
    HRESULT STDMETHODCALLTYPE removeAttribute(BSTR a) override {
        return Forward([&] { return inner_->removeAttribute(a); });
    }
    HRESULT STDMETHODCALLTYPE getAttributeNode(BSTR a, IXMLDOMAttribute** b) override {
        return Hand(b, [&](auto out) { return inner_->getAttributeNode(a, out); });
    }
    HRESULT STDMETHODCALLTYPE setAttributeNode(IXMLDOMAttribute* a, IXMLDOMAttribute** b) override {
        return Hand(b, [&](auto out) { return inner_->setAttributeNode(Inner(a).Get(), out); });
    }
    HRESULT STDMETHODCALLTYPE removeAttributeNode(IXMLDOMAttribute*, IXMLDOMAttribute**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR, IXMLDOMNodeList**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE normalize() override { return E_NOTIMPL; }
};

class AttributeProxy final : public NodeProxy<IXMLDOMAttribute, IID_IXMLDOMAttribute> {
public:
    using NodeProxy::NodeProxy;
    HRESULT STDMETHODCALLTYPE get_name(BSTR* a) override {
        return Forward([&] { return inner_->get_name(a); });
    }
    HRESULT STDMETHODCALLTYPE get_value(VARIANT* a) override {
        return Forward([&] { return inner_->get_value(a); });
    }
    HRESULT STDMETHODCALLTYPE put_value(VARIANT a) override {
        return Forward([&] { return inner_->put_value(a); });
    }
};

class DocumentProxy final : public NodeProxy<IXMLDOMDocument2, IID_IXMLDOMDocument2> {
public:
    using NodeProxy::NodeProxy;
    HRESULT STDMETHODCALLTYPE get_doctype(IXMLDOMDocumentType**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_implementation(IXMLDOMImplementation**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** a) override {
        return Hand(a, [&](auto out) { return inner_->get_documentElement(out); });
    }
    HRESULT STDMETHODCALLTYPE putref_documentElement(IXMLDOMElement*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE createElement(BSTR a, IXMLDOMElement** b) override {
        return Hand(b, [&](auto out) { return inner_->createElement(a, out); });
    }
    HRESULT STDMETHODCALLTYPE createDocumentFragment(IXMLDOMDocumentFragment**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE createTextNode(BSTR, IXMLDOMText**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE createComment(BSTR, IXMLDOMComment**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE createCDATASection(BSTR, IXMLDOMCDATASection**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE createProcessingInstruction(BSTR, BSTR, IXMLDOMProcessingInstruction**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE createAttribute(BSTR a, IXMLDOMAttribute** b) override {
        return Hand(b, [&](auto out) { return inner_->createAttribute(a, out); });
    }
    HRESULT STDMETHODCALLTYPE createEntityReference(BSTR, IXMLDOMEntityReference**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR, IXMLDOMNodeList**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE createNode(VARIANT a, BSTR b, BSTR c, IXMLDOMNode** d) override {
        return Hand(d, [&](auto out) { return inner_->createNode(a, b, c, out); });
    }
    HRESULT STDMETHODCALLTYPE nodeFromID(BSTR, IXMLDOMNode**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE load(VARIANT, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_readyState(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_url(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE abort() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE loadXML(BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE save(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_validateOnParse(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_resolveExternals(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_preserveWhiteSpace(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_preserveWhiteSpace(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_onreadystatechange(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ondataavailable(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ontransformnode(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_namespaces(IXMLDOMSchemaCollection**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_schemas(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE putref_schemas(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE validate(IXMLDOMParseError**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE setProperty(BSTR a, VARIANT b) override {
        return Forward([&] { return inner_->setProperty(a, b); });
    }
    HRESULT STDMETHODCALLTYPE getProperty(BSTR a, VARIANT* b) override {
        return Forward([&] { return inner_->getProperty(a, b); });
    }
};

class ListProxy final : public Proxy<IXMLDOMNodeList, IID_IXMLDOMNodeList> {
public:
    using Proxy::Proxy;
    HRESULT STDMETHODCALLTYPE get_item(LONG a, IXMLDOMNode** b) override {
        return Hand(b, [&](auto out) { return inner_->get_item(a, out); });
    }
    HRESULT STDMETHODCALLTYPE get_length(LONG* a) override {
        return Forward([&] { return inner_->get_length(a); });
    }
    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** a) override {
        return Hand(a, [&](auto out) { return inner_->nextNode(out); });
    }
    HRESULT STDMETHODCALLTYPE reset() override {
        return Forward([&] { return inner_->reset(); });
    }
    HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown**) override { return E_NOTIMPL; }
};

class MapProxy final : public Proxy<IXMLDOMNamedNodeMap, IID_IXMLDOMNamedNodeMap> {
public:
    using Proxy::Proxy;
    HRESULT STDMETHODCALLTYPE getNamedItem(BSTR a, IXMLDOMNode** b) override {
        return Hand(b, [&](auto out) { return inner_->getNamedItem(a, out); });
    }
    HRESULT STDMETHODCALLTYPE setNamedItem(IXMLDOMNode*, IXMLDOMNode**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE removeNamedItem(BSTR a, IXMLDOMNode** b) override {
        return Hand(b, [&](auto out) { return inner_->removeNamedItem(a, out); });
    }
    HRESULT STDMETHODCALLTYPE get_item(LONG a, IXMLDOMNode** b) override {
        return Hand(b, [&](auto out) { return inner_->get_item(a, out); });
    }
    HRESULT STDMETHODCALLTYPE get_length(LONG* a) override {
        return Forward([&] { return inner_->get_length(a); });
    }
    HRESULT STDMETHODCALLTYPE getQualifiedItem(BSTR a, BSTR b, IXMLDOMNode** c) override {
        return Hand(c, [&](auto out) { return inner_->getQualifiedItem(a, b, out); });
    }
    HRESULT STDMETHODCALLTYPE removeQualifiedItem(BSTR a, BSTR b, IXMLDOMNode** c) override {
        return Hand(c, [&](auto out) { return inner_->removeQualifiedItem(a, b, out); });
    }
    HRESULT STDMETHODCALLTYPE nextNode(IXMLDOMNode** a) override {
        return Hand(a, [&](auto out) { return inner_->nextNode(out); });
    }
    HRESULT STDMETHODCALLTYPE reset() override {
        return Forward([&] { return inner_->reset(); });
    }
    HRESULT STDMETHODCALLTYPE get__newEnum(IUnknown**) override { return E_NOTIMPL; }
};

template <class Interface>
struct ProxyClass;
template <>
struct ProxyClass<IXMLDOMNode> {
    using Type = PlainNodeProxy;
};
template <>
struct ProxyClass<IXMLDOMElement> {
    using Type = ElementProxy;
};
template <>
struct ProxyClass<IXMLDOMAttribute> {
    using Type = AttributeProxy;
};
template <>
struct ProxyClass<IXMLDOMDocument2> {
    using Type = DocumentProxy;
};
template <>
struct ProxyClass<IXMLDOMNodeList> {
    using Type = ListProxy;
};
template <>
struct ProxyClass<IXMLDOMNamedNodeMap> {
    using Type = MapProxy;
};

template <class Interface>
ComPtr<Interface> MakeProxy(Interface* object, DomCallPlan* plan) {
    return ComPtr<Interface>::Share(new typename ProxyClass<Interface>::Type(ComPtr<Interface>::Share(object), plan));
}

}  // namespace

ComPtr<IXMLDOMDocument2> MakeFailingDocument(IXMLDOMDocument2* document, DomCallPlan* plan) {
    return MakeProxy(document, plan);
}
