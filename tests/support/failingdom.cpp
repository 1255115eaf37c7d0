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

// A method that goes through the plan, one that hands out an object at that, and one that the component never calls.
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
        this->plan_->texts += a.bstrVal;
        return this->Forward([&] { return this->inner_->put_nodeValue(a); });
    }
    PASSES(get_nodeType, (DOMNodeType* a), (a));
    HANDS(get_parentNode, (IXMLDOMNode** a), a, (out));
    REFUSES(get_childNodes, (IXMLDOMNodeList**));
    HANDS(get_firstChild, (IXMLDOMNode** a), a, (out));
    REFUSES(get_lastChild, (IXMLDOMNode**));
    REFUSES(get_previousSibling, (IXMLDOMNode**));
    HANDS(get_nextSibling, (IXMLDOMNode** a), a, (out));
    HANDS(get_attributes, (IXMLDOMNamedNodeMap** a), a, (out));
    HANDS(insertBefore, (IXMLDOMNode* a, VARIANT b, IXMLDOMNode** c), c, (Inner(a).Get(), InnerReference(b).Get(), out));
    REFUSES(replaceChild, (IXMLDOMNode*, IXMLDOMNode*, IXMLDOMNode**));
    HANDS(removeChild, (IXMLDOMNode* a, IXMLDOMNode** b), b, (Inner(a).Get(), out));
    HANDS(appendChild, (IXMLDOMNode* a, IXMLDOMNode** b), b, (Inner(a).Get(), out));
    REFUSES(hasChildNodes, (VARIANT_BOOL*));
    REFUSES(get_ownerDocument, (IXMLDOMDocument**));
    REFUSES(cloneNode, (VARIANT_BOOL, IXMLDOMNode**));
    REFUSES(get_nodeTypeString, (BSTR*));
    PASSES(get_text, (BSTR* a), (a));
    HRESULT STDMETHODCALLTYPE put_text(BSTR a) override {
        this->plan_->texts += a;
        return this->Forward([&] { return this->inner_->put_text(a); });
    }
    REFUSES(get_specified, (VARIANT_BOOL*));
    REFUSES(get_definition, (IXMLDOMNode**));
    PASSES(get_nodeTypedValue, (VARIANT* a), (a));
    REFUSES(put_nodeTypedValue, (VARIANT));
    REFUSES(get_dataType, (VARIANT*));
    REFUSES(put_dataType, (BSTR));
    REFUSES(get_xml, (BSTR*));
    REFUSES(transformNode, (IXMLDOMNode*, BSTR*));
    SEARCHES(selectNodes, (BSTR query, IXMLDOMNodeList** found));
    SEARCHES(selectSingleNode, (BSTR query, IXMLDOMNode** found));
    REFUSES(get_parsed, (VARIANT_BOOL*));
    REFUSES(get_namespaceURI, (BSTR*));
    REFUSES(get_prefix, (BSTR*));
    REFUSES(get_baseName, (BSTR*));
    REFUSES(transformNodeToObject, (IXMLDOMNode*, VARIANT));
};

using PlainNodeProxy = NodeProxy<IXMLDOMNode, IID_IXMLDOMNode>;

class ElementProxy final : public NodeProxy<IXMLDOMElement, IID_IXMLDOMElement> {
public:
    using NodeProxy::NodeProxy;
    REFUSES(get_tagName, (BSTR*));
    REFUSES(getAttribute, (BSTR, VARIANT*));
    REFUSES(setAttribute, (BSTR, VARIANT));
    REFUSES(removeAttribute, (BSTR));
    REFUSES(getAttributeNode, (BSTR, IXMLDOMAttribute**));
    PASSES(setAttributeNode, (IXMLDOMAttribute* a, IXMLDOMAttribute** b), (a, b));
    REFUSES(removeAttributeNode, (IXMLDOMAttribute*, IXMLDOMAttribute**));
    REFUSES(getElementsByTagName, (BSTR, IXMLDOMNodeList**));
    REFUSES(normalize, ());
};

class DocumentProxy final : public NodeProxy<IXMLDOMDocument2, IID_IXMLDOMDocument2> {
public:
    using NodeProxy::NodeProxy;
    REFUSES(get_doctype, (IXMLDOMDocumentType**));
    REFUSES(get_implementation, (IXMLDOMImplementation**));
    REFUSES(get_documentElement, (IXMLDOMElement**));
    REFUSES(putref_documentElement, (IXMLDOMElement*));
    REFUSES(createElement, (BSTR, IXMLDOMElement**));
    REFUSES(createDocumentFragment, (IXMLDOMDocumentFragment**));
    REFUSES(createTextNode, (BSTR, IXMLDOMText**));
    REFUSES(createComment, (BSTR, IXMLDOMComment**));
    REFUSES(createCDATASection, (BSTR, IXMLDOMCDATASection**));
    REFUSES(createProcessingInstruction, (BSTR, BSTR, IXMLDOMProcessingInstruction**));
    REFUSES(createAttribute, (BSTR, IXMLDOMAttribute**));
    REFUSES(createEntityReference, (BSTR, IXMLDOMEntityReference**));
    REFUSES(getElementsByTagName, (BSTR, IXMLDOMNodeList**));
    HANDS(createNode, (VARIANT a, BSTR b, BSTR c, IXMLDOMNode** d), d, (a, b, c, out));
    REFUSES(nodeFromID, (BSTR, IXMLDOMNode**));
    REFUSES(load, (VARIANT, VARIANT_BOOL*));
    REFUSES(get_readyState, (LONG*));
    REFUSES(get_parseError, (IXMLDOMParseError**));
    REFUSES(get_url, (BSTR*));
    REFUSES(get_async, (VARIANT_BOOL*));
    REFUSES(put_async, (VARIANT_BOOL));
    REFUSES(abort, ());
    REFUSES(loadXML, (BSTR, VARIANT_BOOL*));
    REFUSES(save, (VARIANT));
    REFUSES(get_validateOnParse, (VARIANT_BOOL*));
    REFUSES(put_validateOnParse, (VARIANT_BOOL));
    REFUSES(get_resolveExternals, (VARIANT_BOOL*));
    REFUSES(put_resolveExternals, (VARIANT_BOOL));
    REFUSES(get_preserveWhiteSpace, (VARIANT_BOOL*));
    REFUSES(put_preserveWhiteSpace, (VARIANT_BOOL));
    REFUSES(put_onreadystatechange, (VARIANT));
    REFUSES(put_ondataavailable, (VARIANT));
    REFUSES(put_ontransformnode, (VARIANT));
    REFUSES(get_namespaces, (IXMLDOMSchemaCollection**));
    REFUSES(get_schemas, (VARIANT*));
    REFUSES(putref_schemas, (VARIANT));
    REFUSES(validate, (IXMLDOMParseError**));
    PASSES(setProperty, (BSTR a, VARIANT b), (a, b));
    REFUSES(getProperty, (BSTR, VARIANT*));
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
    REFUSES(setNamedItem, (IXMLDOMNode*, IXMLDOMNode**));
    HANDS(removeNamedItem, (BSTR a, IXMLDOMNode** b), b, (a, out));
    HANDS(get_item, (LONG a, IXMLDOMNode** b), b, (a, out));
    PASSES(get_length, (LONG* a), (a));
    REFUSES(getQualifiedItem, (BSTR, BSTR, IXMLDOMNode**));
    REFUSES(removeQualifiedItem, (BSTR, BSTR, IXMLDOMNode**));
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
