// The failing document: one proxy class a DOM interface, all over one base that counts the calls.
#include "failingdom.h"

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

// A method that goes through the plan, one that hands out an object behind a proxy at that, and one that there is not.
// Objects that are no elements, lists or maps of their own are handed out as they are.
#define PASSES(name, parameters, arguments)                                 \
    HRESULT STDMETHODCALLTYPE name parameters override {                    \
        return this->Forward([&] { return this->inner_->name arguments; }); \
    }
#define HANDS(name, parameters, result, arguments)                                         \
    HRESULT STDMETHODCALLTYPE name parameters override {                                   \
        return this->Hand(result, [&](auto out) { return this->inner_->name arguments; }); \
    }
#define SEARCHES(name, parameters)                                                          \
    HRESULT STDMETHODCALLTYPE name parameters override {                                    \
        ++this->plan_->searches;                                                            \
        return this->Hand(found, [&](auto out) { return this->inner_->name(query, out); }); \
    }
#define REFUSES(name, parameters) \
    HRESULT STDMETHODCALLTYPE name parameters override { return E_NOTIMPL; }

// It would take a macro's argument of parameters for a product.
// clang-format off
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
        if (IsEqualIID(iid, IID_IXMLDOMElement)) return HandOther<IXMLDOMElement>(iid, object);
        if (IsEqualIID(iid, IID_IXMLDOMNode)) return HandOther<IXMLDOMNode>(iid, object);
        return Forward([&] { return inner_->QueryInterface(iid, object); });  // an attribute, which is asked nothing
    }
    REFUSES(GetTypeInfoCount, (UINT*));
    REFUSES(GetTypeInfo, (UINT, LCID, ITypeInfo**));
    REFUSES(GetIDsOfNames, (REFIID, LPWSTR*, UINT, LCID, DISPID*));
    REFUSES(Invoke, (DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*));

protected:
    template <class Call>
    HRESULT Forward(Call call) {
        return plan_->Fails() ? plan_->Fail() : call();
    }
    // Hands out what the real DOM gives, behind a proxy of its own.
    template <class Out, class Call>
    HRESULT Hand(Out** object, Call call) {
        if (plan_->Fails()) return plan_->Fail();
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
        return Hand(reinterpret_cast<Other**>(object),
                    [&](Other** out) { return inner_->QueryInterface(iid, reinterpret_cast<void**>(out)); });
    }

    ULONG references_ = 0;
};

template <class Interface, const IID& kInterface>
class NodeProxy : public Proxy<Interface, kInterface> {
public:
    using Proxy<Interface, kInterface>::Proxy;

    PASSES(get_nodeName, (BSTR* a), (a));
    PASSES(get_nodeValue, (VARIANT* a), (a));
    HRESULT STDMETHODCALLTYPE put_nodeValue(VARIANT a) override {
        if (a.vt == VT_BSTR && a.bstrVal) this->plan_->texts += a.bstrVal;
        return this->Forward([&] { return this->inner_->put_nodeValue(a); });
    }
    PASSES(get_nodeType, (DOMNodeType* a), (a));
    HANDS(get_parentNode, (IXMLDOMNode** a), a, (out));
    HANDS(get_childNodes, (IXMLDOMNodeList** a), a, (out));
    HANDS(get_firstChild, (IXMLDOMNode** a), a, (out));
    HANDS(get_lastChild, (IXMLDOMNode** a), a, (out));
    HANDS(get_previousSibling, (IXMLDOMNode** a), a, (out));
    HANDS(get_nextSibling, (IXMLDOMNode** a), a, (out));
    HANDS(get_attributes, (IXMLDOMNamedNodeMap** a), a, (out));
    HANDS(insertBefore, (IXMLDOMNode* a, VARIANT b, IXMLDOMNode** c), c, (Inner(a).Get(), InnerReference(b).Get(), out));
    HANDS(replaceChild, (IXMLDOMNode* a, IXMLDOMNode* b, IXMLDOMNode** c), c, (Inner(a).Get(), Inner(b).Get(), out));
    HANDS(removeChild, (IXMLDOMNode* a, IXMLDOMNode** b), b, (Inner(a).Get(), out));
    HANDS(appendChild, (IXMLDOMNode* a, IXMLDOMNode** b), b, (Inner(a).Get(), out));
    PASSES(hasChildNodes, (VARIANT_BOOL* a), (a));
    PASSES(get_ownerDocument, (IXMLDOMDocument** a), (a));
    HANDS(cloneNode, (VARIANT_BOOL a, IXMLDOMNode** b), b, (a, out));
    PASSES(get_nodeTypeString, (BSTR* a), (a));
    PASSES(get_text, (BSTR* a), (a));
    HRESULT STDMETHODCALLTYPE put_text(BSTR a) override {
        if (a) this->plan_->texts += a;
        return this->Forward([&] { return this->inner_->put_text(a); });
    }
    PASSES(get_specified, (VARIANT_BOOL* a), (a));
    HANDS(get_definition, (IXMLDOMNode** a), a, (out));
    PASSES(get_nodeTypedValue, (VARIANT* a), (a));
    PASSES(put_nodeTypedValue, (VARIANT a), (a));
    PASSES(get_dataType, (VARIANT* a), (a));
    PASSES(put_dataType, (BSTR a), (a));
    PASSES(get_xml, (BSTR* a), (a));
    PASSES(transformNode, (IXMLDOMNode* a, BSTR* b), (Inner(a).Get(), b));
    SEARCHES(selectNodes, (BSTR query, IXMLDOMNodeList** found));
    SEARCHES(selectSingleNode, (BSTR query, IXMLDOMNode** found));
    PASSES(get_parsed, (VARIANT_BOOL* a), (a));
    PASSES(get_namespaceURI, (BSTR* a), (a));
    PASSES(get_prefix, (BSTR* a), (a));
    PASSES(get_baseName, (BSTR* a), (a));
    PASSES(transformNodeToObject, (IXMLDOMNode* a, VARIANT b), (Inner(a).Get(), b));
};

using PlainNodeProxy = NodeProxy<IXMLDOMNode, IID_IXMLDOMNode>;

class ElementProxy final : public NodeProxy<IXMLDOMElement, IID_IXMLDOMElement> {
public:
    using NodeProxy::NodeProxy;
    PASSES(get_tagName, (BSTR* a), (a));
    PASSES(getAttribute, (BSTR a, VARIANT* b), (a, b));
    PASSES(setAttribute, (BSTR a, VARIANT b), (a, b));
    PASSES(removeAttribute, (BSTR a), (a));
    PASSES(getAttributeNode, (BSTR a, IXMLDOMAttribute** b), (a, b));
    PASSES(setAttributeNode, (IXMLDOMAttribute* a, IXMLDOMAttribute** b), (a, b));
    PASSES(removeAttributeNode, (IXMLDOMAttribute* a, IXMLDOMAttribute** b), (a, b));
    HANDS(getElementsByTagName, (BSTR a, IXMLDOMNodeList** b), b, (a, out));
    PASSES(normalize, (), ());
};

class DocumentProxy final : public NodeProxy<IXMLDOMDocument2, IID_IXMLDOMDocument2> {
public:
    using NodeProxy::NodeProxy;
    PASSES(get_doctype, (IXMLDOMDocumentType** a), (a));
    PASSES(get_implementation, (IXMLDOMImplementation** a), (a));
    HANDS(get_documentElement, (IXMLDOMElement** a), a, (out));
    PASSES(putref_documentElement, (IXMLDOMElement* a), (Inner(a).Get()));
    HANDS(createElement, (BSTR a, IXMLDOMElement** b), b, (a, out));
    PASSES(createDocumentFragment, (IXMLDOMDocumentFragment** a), (a));
    PASSES(createTextNode, (BSTR a, IXMLDOMText** b), (a, b));
    PASSES(createComment, (BSTR a, IXMLDOMComment** b), (a, b));
    PASSES(createCDATASection, (BSTR a, IXMLDOMCDATASection** b), (a, b));
    PASSES(createProcessingInstruction, (BSTR a, BSTR b, IXMLDOMProcessingInstruction** c), (a, b, c));
    PASSES(createAttribute, (BSTR a, IXMLDOMAttribute** b), (a, b));
    PASSES(createEntityReference, (BSTR a, IXMLDOMEntityReference** b), (a, b));
    HANDS(getElementsByTagName, (BSTR a, IXMLDOMNodeList** b), b, (a, out));
    HANDS(createNode, (VARIANT a, BSTR b, BSTR c, IXMLDOMNode** d), d, (a, b, c, out));
    HANDS(nodeFromID, (BSTR a, IXMLDOMNode** b), b, (a, out));
    PASSES(load, (VARIANT a, VARIANT_BOOL* b), (a, b));
    PASSES(get_readyState, (LONG* a), (a));
    PASSES(get_parseError, (IXMLDOMParseError** a), (a));
    PASSES(get_url, (BSTR* a), (a));
    PASSES(get_async, (VARIANT_BOOL* a), (a));
    PASSES(put_async, (VARIANT_BOOL a), (a));
    PASSES(abort, (), ());
    PASSES(loadXML, (BSTR a, VARIANT_BOOL* b), (a, b));
    PASSES(save, (VARIANT a), (a));
    PASSES(get_validateOnParse, (VARIANT_BOOL* a), (a));
    PASSES(put_validateOnParse, (VARIANT_BOOL a), (a));
    PASSES(get_resolveExternals, (VARIANT_BOOL* a), (a));
    PASSES(put_resolveExternals, (VARIANT_BOOL a), (a));
    PASSES(get_preserveWhiteSpace, (VARIANT_BOOL* a), (a));
    PASSES(put_preserveWhiteSpace, (VARIANT_BOOL a), (a));
    REFUSES(put_onreadystatechange, (VARIANT));
    REFUSES(put_ondataavailable, (VARIANT));
    REFUSES(put_ontransformnode, (VARIANT));
    PASSES(get_namespaces, (IXMLDOMSchemaCollection** a), (a));
    PASSES(get_schemas, (VARIANT* a), (a));
    PASSES(putref_schemas, (VARIANT a), (a));
    PASSES(validate, (IXMLDOMParseError** a), (a));
    PASSES(setProperty, (BSTR a, VARIANT b), (a, b));
    PASSES(getProperty, (BSTR a, VARIANT* b), (a, b));
};

class ListProxy final : public Proxy<IXMLDOMNodeList, IID_IXMLDOMNodeList> {
public:
    using Proxy::Proxy;
    HANDS(get_item, (LONG a, IXMLDOMNode** b), b, (a, out));
    PASSES(get_length, (LONG* a), (a));
    HANDS(nextNode, (IXMLDOMNode** a), a, (out));
    PASSES(reset, (), ());
    REFUSES(get__newEnum, (IUnknown**));
};

class MapProxy final : public Proxy<IXMLDOMNamedNodeMap, IID_IXMLDOMNamedNodeMap> {
public:
    using Proxy::Proxy;
    HANDS(getNamedItem, (BSTR a, IXMLDOMNode** b), b, (a, out));
    HANDS(setNamedItem, (IXMLDOMNode* a, IXMLDOMNode** b), b, (Inner(a).Get(), out));
    HANDS(removeNamedItem, (BSTR a, IXMLDOMNode** b), b, (a, out));
    HANDS(get_item, (LONG a, IXMLDOMNode** b), b, (a, out));
    PASSES(get_length, (LONG* a), (a));
    HANDS(getQualifiedItem, (BSTR a, BSTR b, IXMLDOMNode** c), c, (a, b, out));
    HANDS(removeQualifiedItem, (BSTR a, BSTR b, IXMLDOMNode** c), c, (a, b, out));
    HANDS(nextNode, (IXMLDOMNode** a), a, (out));
    PASSES(reset, (), ());
    REFUSES(get__newEnum, (IUnknown**));
};

// clang-format on
#undef PASSES
#undef HANDS
#undef REFUSES

// The class that stands for each interface; never called.
struct ProxyClass {
    static PlainNodeProxy Of(IXMLDOMNode*);
    static ElementProxy Of(IXMLDOMElement*);
    static DocumentProxy Of(IXMLDOMDocument2*);
    static ListProxy Of(IXMLDOMNodeList*);
    static MapProxy Of(IXMLDOMNamedNodeMap*);
};

template <class Interface>
ComPtr<Interface> MakeProxy(Interface* object, DomCallPlan* plan) {
    return ComPtr<Interface>::Share(new decltype(ProxyClass::Of(object))(ComPtr<Interface>::Share(object), plan));
}

}  // namespace

ComPtr<IXMLDOMDocument2> MakeFailingDocument(IXMLDOMDocument2* document, DomCallPlan* plan) {
    return MakeProxy(document, plan);
}
