// The COM object of a document, and the functions that get documents in and out of bytes.
#include "domattributes.h"
#include "domname.h"
#include "domparser.h"
#include "domserialise.h"
#include "domwrappers.h"
#include "domxpath.h"

#include <domdocument.h>
#include <widetext.h>

namespace dom {
namespace {

constexpr LONG kLoadingIsComplete = 4;

// New nodes of a document, without content; the type is a DOMNodeType.
HRESULT NewNode(DomTree& tree, LONG type, const std::string& name, std::string_view uri, OwnedNode* node) {
    xmlDoc* const document = tree.GetDocument();
    xmlElementType contentType = XML_TEXT_NODE;
    const bool isNamed = type == NODE_ELEMENT || type == NODE_ATTRIBUTE || type == NODE_PROCESSING_INSTRUCTION;
    if (isNamed && name.empty()) return E_FAIL;
    switch (type) {
        case NODE_ELEMENT: {
            const QName parts = SplitName(name);
            xmlNs* space = nullptr;
            if (!IsQName(name) || !NamespaceForName(tree, parts, uri, &space)) return E_INVALIDARG;
            *node = NewElement(document, space, std::string(parts.local));
            return S_OK;
        }
        case NODE_ATTRIBUTE:
            return NewAttributeNode(tree, name, uri, node);
        case NODE_TEXT:
            break;
        case NODE_CDATA_SECTION:
            contentType = XML_CDATA_SECTION_NODE;
            break;
        case NODE_COMMENT:
            contentType = XML_COMMENT_NODE;
            break;
        case NODE_PROCESSING_INSTRUCTION:
            if (!IsQName(name) || name.find(':') != std::string::npos) return E_INVALIDARG;
            contentType = XML_PI_NODE;
            break;
        default:
            return E_INVALIDARG;
    }
    *node = NewContentNode(document, contentType, name, std::string());
    return S_OK;
}

// The same, for whatever name it is asked for again.
HRESULT NewNode(DomTree& tree, LONG type, WideStringView name, WideStringView uri, OwnedNode* node) {
    xmlDoc* const document = tree.GetDocument();
    if (const KnownName* const known = tree.names.Find(type, name, uri)) {
        *node = type == NODE_ELEMENT ? NewElement(document, known->space, known->local)
                                     : NewAttribute(document, known->kind, known->space, known->local);
        return S_OK;
    }
    const HRESULT result = NewNode(tree, type, RawToUtf8(name), ContentToUtf8(uri), node);
    if (SUCCEEDED(result) && (type == NODE_ELEMENT || type == NODE_ATTRIBUTE))
        tree.names.Keep(
            {type, WideString(name), WideString(uri), (*node)->type, (*node)->ns, std::string(ViewOf((*node)->name))});
    return result;
}

class DocumentObject final : public NodeObject<IXMLDOMDocument2, IID_IXMLDOMDocument, IID_IXMLDOMDocument2> {
public:
    using NodeObject::NodeObject;

    // What was parsed takes the place of the content; null stands for an empty document. The properties stay.
    void Replace(std::shared_ptr<DomTree> content, const ParseFailure& failure) {
        if (!content) content = std::make_shared<DomTree>();
        if (!GetTree().settings.preserveWhiteSpace) StripWhiteSpace(*content);
        content->settings = GetTree().settings;
        content->settings.parseFailure = failure;
        Rebind(std::move(content));
    }

    HRESULT STDMETHODCALLTYPE get_documentElement(IXMLDOMElement** element) override {
        return Guarded([&] { return ReturnNode(Root(), element); });
    }
    HRESULT STDMETHODCALLTYPE putref_documentElement(IXMLDOMElement* element) override {
        return Guarded([&] {
            if (!Root()) return AppendChild(element, nullptr);
            return ReplaceChild(element, Wrap(GetSharedTree(), Root()).Get(), nullptr);
        });
    }
    HRESULT STDMETHODCALLTYPE loadXML(BSTR text, VARIANT_BOOL* isSuccessful) override {
        return Guarded([&] {
            ParseFailure failure;
            const std::string utf8 = RawToUtf8(ViewOf(text));
            std::shared_ptr<DomTree> content = ParseDocument(utf8.data(), utf8.size(), kEncodingIsUtf8, &failure);
            const bool isWellFormed = content != nullptr;
            Replace(std::move(content), failure);
            if (isSuccessful) *isSuccessful = isWellFormed ? VARIANT_TRUE : VARIANT_FALSE;
            return isWellFormed ? S_OK : S_FALSE;
        });
    }
    HRESULT STDMETHODCALLTYPE get_parseError(IXMLDOMParseError** error) override {
        return Guarded([&] {
            if (!error) return E_INVALIDARG;
            *error = NewParseError(GetTree().settings.parseFailure);
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE createElement(BSTR name, IXMLDOMElement** element) override {
        return Create(NODE_ELEMENT, name, nullptr, nullptr, element);
    }
    HRESULT STDMETHODCALLTYPE createTextNode(BSTR data, IXMLDOMText** text) override {
        return Create(NODE_TEXT, nullptr, nullptr, data, text);
    }
    HRESULT STDMETHODCALLTYPE createComment(BSTR data, IXMLDOMComment** comment) override {
        return Create(NODE_COMMENT, nullptr, nullptr, data, comment);
    }
    HRESULT STDMETHODCALLTYPE createCDATASection(BSTR data, IXMLDOMCDATASection** section) override {
        return Create(NODE_CDATA_SECTION, nullptr, nullptr, data, section);
    }
    HRESULT STDMETHODCALLTYPE createProcessingInstruction(BSTR target, BSTR data,
                                                          IXMLDOMProcessingInstruction** instruction) override {
        return Create(NODE_PROCESSING_INSTRUCTION, target, nullptr, data, instruction);
    }
    HRESULT STDMETHODCALLTYPE createAttribute(BSTR name, IXMLDOMAttribute** attribute) override {
        return Create(NODE_ATTRIBUTE, name, nullptr, nullptr, attribute);
    }
    HRESULT STDMETHODCALLTYPE createNode(VARIANT type, BSTR name, BSTR namespaceUri, IXMLDOMNode** node) override {
        switch (type.vt) {
            case VT_I2:
                return Create(type.iVal, name, namespaceUri, nullptr, node);
            case VT_I4:
                return Create(type.lVal, name, namespaceUri, nullptr, node);
            case VT_UI4:
                return Create(static_cast<LONG>(type.ulVal), name, namespaceUri, nullptr, node);
            default:
                return E_INVALIDARG;
        }
    }

    HRESULT STDMETHODCALLTYPE setProperty(BSTR name, VARIANT value) override {
        return Guarded([&] {
            if (value.vt != VT_BSTR) return E_FAIL;
            // XPath is the only language that is spoken here; it is also in force before it is chosen.
            if (ViewOf(name) == W("SelectionLanguage")) return ViewOf(value.bstrVal) == W("XPath") ? S_OK : E_FAIL;
            if (ViewOf(name) != W("SelectionNamespaces")) return E_FAIL;
            return SetSelectionNamespaces(GetTree(), RawToUtf8(ViewOf(value.bstrVal)));
        });
    }
    HRESULT STDMETHODCALLTYPE getProperty(BSTR name, VARIANT* value) override {
        return Guarded([&] {
            if (ViewOf(name) == W("SelectionLanguage")) return ReturnText("XPath", value);
            if (ViewOf(name) != W("SelectionNamespaces")) return E_FAIL;
            return ReturnText(GetTree().settings.selectionNamespaces, value);
        });
    }

    HRESULT STDMETHODCALLTYPE get_readyState(LONG* state) override {
        if (!state) return E_INVALIDARG;
        *state = kLoadingIsComplete;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_async(VARIANT_BOOL* on) override { return Get(GetTree().settings.async, on); }
    HRESULT STDMETHODCALLTYPE put_async(VARIANT_BOOL on) override { return Put(on, &GetTree().settings.async); }
    HRESULT STDMETHODCALLTYPE get_validateOnParse(VARIANT_BOOL* on) override {
        return Get(GetTree().settings.validateOnParse, on);
    }
    HRESULT STDMETHODCALLTYPE put_validateOnParse(VARIANT_BOOL on) override {
        return Put(on, &GetTree().settings.validateOnParse);
    }
    HRESULT STDMETHODCALLTYPE get_resolveExternals(VARIANT_BOOL* on) override {
        return Get(GetTree().settings.resolveExternals, on);
    }
    HRESULT STDMETHODCALLTYPE put_resolveExternals(VARIANT_BOOL on) override {
        return Put(on, &GetTree().settings.resolveExternals);
    }
    HRESULT STDMETHODCALLTYPE get_preserveWhiteSpace(VARIANT_BOOL* on) override {
        return Get(GetTree().settings.preserveWhiteSpace, on);
    }
    HRESULT STDMETHODCALLTYPE put_preserveWhiteSpace(VARIANT_BOOL on) override {
        return Put(on, &GetTree().settings.preserveWhiteSpace);
    }
    HRESULT STDMETHODCALLTYPE abort() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_url(BSTR* url) override { return ReturnNothing(url); }

    // Files are the host's business; document types, schemas, fragments and events are not part of this DOM.
    HRESULT STDMETHODCALLTYPE load(VARIANT, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE save(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_doctype(IXMLDOMDocumentType**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_implementation(IXMLDOMImplementation**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE createDocumentFragment(IXMLDOMDocumentFragment**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE createEntityReference(BSTR, IXMLDOMEntityReference**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE getElementsByTagName(BSTR, IXMLDOMNodeList**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE nodeFromID(BSTR, IXMLDOMNode**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_onreadystatechange(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ondataavailable(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ontransformnode(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_namespaces(IXMLDOMSchemaCollection**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_schemas(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE putref_schemas(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE validate(IXMLDOMParseError**) override { return E_NOTIMPL; }

private:
    xmlNode* Root() const { return xmlDocGetRootElement(GetTree().GetDocument()); }

    template <class Interface>
    HRESULT Create(LONG type, BSTR name, BSTR namespaceUri, BSTR content, Interface** out) {
        return Guarded([&] {
            if (!out) return E_INVALIDARG;
            OwnedNode node;
            HRESULT result = NewNode(GetTree(), type, ViewOf(name), ViewOf(namespaceUri), &node);
            if (FAILED(result)) return result;
            ComPtr<IXMLDOMNode> wrapper = WrapNew(GetSharedTree(), std::move(node));
            if (content) result = Of(wrapper.Get())->PutContent(ContentToUtf8(ViewOf(content)));
            if (SUCCEEDED(result)) *out = static_cast<Interface*>(wrapper.Detach());
            return result;
        });
    }
    static HRESULT Get(bool setting, VARIANT_BOOL* on) {
        if (!on) return E_INVALIDARG;
        *on = setting ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    static HRESULT Put(VARIANT_BOOL on, bool* setting) {
        *setting = on != VARIANT_FALSE;
        return S_OK;
    }
};

DocumentObject* OwnDocument(IXMLDOMDocument2* document) {
    NodeCore* const core = NodeCore::Of(document);
    return core && core->GetNode()->type == XML_DOCUMENT_NODE ? static_cast<DocumentObject*>(core) : nullptr;
}

// Hands the content to another party's document as the text that it understands.
HRESULT LoadOther(IXMLDOMDocument2* document, DomTree& content, std::string* error) {
    const Bstr text = ToBstr(SerialiseNode(AsNode(content.GetDocument())));
    VARIANT_BOOL isSuccessful = VARIANT_FALSE;
    HRESULT result = document->put_async(VARIANT_FALSE);
    if (SUCCEEDED(result)) result = document->loadXML(text.Get(), &isSuccessful);
    if (SUCCEEDED(result) && isSuccessful != VARIANT_FALSE) return S_OK;
    if (error) *error = "the system's XML document does not accept the text.";
    return E_FAIL;
}

}  // namespace

IXMLDOMNode* NewDocumentObject(const std::shared_ptr<DomTree>& tree, xmlNode* node) {
    return new DocumentObject(tree, node);
}

}  // namespace dom

HRESULT CreateDomDocument(IXMLDOMDocument2** document) {
    return dom::Guarded([&] {
        if (!document) return E_INVALIDARG;
        const auto tree = std::make_shared<dom::DomTree>();
        *document = new dom::DocumentObject(tree, dom::AsNode(tree->GetDocument()));
        return S_OK;
    });
}

HRESULT LoadDomDocument(IXMLDOMDocument2* document, const void* bytes, std::size_t length, std::string* error) {
    return dom::Guarded([&] {
        if (!document) return E_INVALIDARG;
        dom::ParseFailure failure;
        std::shared_ptr<dom::DomTree> content = dom::ParseDocument(bytes, length, dom::kDetectEncoding, &failure);
        if (!content && error) *error = dom::Describe(failure);
        const HRESULT result = content ? S_OK : E_FAIL;
        if (dom::DocumentObject* const own = dom::OwnDocument(document)) {
            own->Replace(std::move(content), failure);
            return result;
        }
        return content ? dom::LoadOther(document, *content, error) : result;
    });
}

HRESULT SerialiseDomDocument(IXMLDOMDocument2* document, std::string* utf8) {
    return dom::Guarded([&] {
        if (!document || !utf8) return E_INVALIDARG;
        std::shared_ptr<dom::DomTree> content;
        if (const dom::DocumentObject* const own = dom::OwnDocument(document)) {
            content = own->GetSharedTree();
        } else {
            Bstr text;
            if (FAILED(document->get_xml(text.Put()))) return E_FAIL;
            dom::ParseFailure failure;
            const std::string raw = dom::RawToUtf8(text.View());
            content = dom::ParseDocument(raw.data(), raw.size(), dom::kEncodingIsUtf8, &failure);
        }
        if (!content || !xmlDocGetRootElement(content->GetDocument())) return E_FAIL;
        *utf8 = dom::SerialiseDocument(content->GetDocument());
        return S_OK;
    });
}
