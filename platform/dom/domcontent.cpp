// The COM objects of texts, CDATA sections, comments and processing instructions.
#include "domwrappers.h"

namespace dom {
namespace {

// What IXMLDOMCharacterData adds; positions inside the data are nobody's need.
template <class Interface, const IID&... Faces>
class CharacterDataObject : public NodeObject<Interface, Faces...> {
public:
    using NodeObject<Interface, Faces...>::NodeObject;

    HRESULT STDMETHODCALLTYPE get_data(BSTR* data) override {
        return Guarded([&] { return ReturnText(ViewOf(this->GetNode()->content), data); });
    }
    HRESULT STDMETHODCALLTYPE put_data(BSTR data) override {
        return Guarded([&] { return this->PutText(data); });
    }
    HRESULT STDMETHODCALLTYPE get_length(LONG* length) override {
        return Guarded([&] {
            if (!length) return E_INVALIDARG;
            *length = static_cast<LONG>(ToBstr(ViewOf(this->GetNode()->content)).View().size());
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE substringData(LONG, LONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE appendData(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE insertData(LONG, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE deleteData(LONG, LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE replaceData(LONG, LONG, BSTR) override { return E_NOTIMPL; }
};

class TextObject final : public CharacterDataObject<IXMLDOMText, IID_IXMLDOMText, IID_IXMLDOMCharacterData> {
public:
    using CharacterDataObject::CharacterDataObject;
    HRESULT STDMETHODCALLTYPE splitText(LONG, IXMLDOMText**) override { return E_NOTIMPL; }
};

class CDataObject final : public CharacterDataObject<IXMLDOMCDATASection, IID_IXMLDOMCDATASection, IID_IXMLDOMText,
                                                     IID_IXMLDOMCharacterData> {
public:
    using CharacterDataObject::CharacterDataObject;
    HRESULT STDMETHODCALLTYPE splitText(LONG, IXMLDOMText**) override { return E_NOTIMPL; }
};

class CommentObject final : public CharacterDataObject<IXMLDOMComment, IID_IXMLDOMComment, IID_IXMLDOMCharacterData> {
public:
    using CharacterDataObject::CharacterDataObject;
};

class InstructionObject final : public NodeObject<IXMLDOMProcessingInstruction, IID_IXMLDOMProcessingInstruction> {
public:
    using NodeObject::NodeObject;

    HRESULT STDMETHODCALLTYPE get_target(BSTR* target) override { return get_nodeName(target); }
    HRESULT STDMETHODCALLTYPE get_data(BSTR* data) override { return get_text(data); }
    HRESULT STDMETHODCALLTYPE put_data(BSTR data) override { return put_text(data); }
};

}  // namespace

IXMLDOMNode* NewContentObject(const std::shared_ptr<DomTree>& tree, xmlNode* node) {
    switch (node->type) {
        case XML_CDATA_SECTION_NODE:
            return new CDataObject(tree, node);
        case XML_COMMENT_NODE:
            return new CommentObject(tree, node);
        case XML_PI_NODE:
            return new InstructionObject(tree, node);
        default:
            return new TextObject(tree, node);
    }
}

}  // namespace dom
