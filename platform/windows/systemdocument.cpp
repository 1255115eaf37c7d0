// The system's MSXML, probed for what wrapping a Print Schema document needs.
#include <bstr.h>
#include <comptr.h>
#include <domdocument.h>
#include <objbase.h>
#include <systemdocument.h>
#include <widetext.h>

#include <string_view>
#include <utility>

namespace {

bool Lists(IXMLDOMNamedNodeMap* map, WideStringView name) {
    map->reset();
    for (ComPtr<IXMLDOMNode> node; map->nextNode(node.Put()) == S_OK && node;) {
        Bstr nodeName;
        if (node->get_nodeName(nodeName.Put()) == S_OK && nodeName.View() == name) return true;
    }
    return false;
}

// Wine 8's maps neither list declarations nor find or remove them.
bool HandlesDeclarations(IXMLDOMDocument2* document) {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    if (document->loadXML(Bstr(W("<a xmlns:p='urn:p' b='c'/>")).Get(), &loaded) != S_OK || !loaded) return false;
    ComPtr<IXMLDOMElement> root;
    ComPtr<IXMLDOMNamedNodeMap> map;
    if (document->get_documentElement(root.Put()) != S_OK || !root) return false;
    if (root->get_attributes(map.Put()) != S_OK || !map) return false;
    const Bstr name(W("xmlns:p"));
    ComPtr<IXMLDOMNode> found, removed;
    return Lists(map.Get(), name.View()) && map->getNamedItem(name.Get(), found.Put()) == S_OK && found &&
           map->removeNamedItem(name.Get(), removed.Put()) == S_OK && !Lists(map.Get(), name.View());
}

// A new document of MSXML's program id, or null.
ComPtr<IXMLDOMDocument2> Create(const WCHAR* programId) {
    CLSID classId;
    ComPtr<IXMLDOMDocument2> document;
    if (FAILED(CLSIDFromProgID(programId, &classId)) ||
        FAILED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument2, document.PutVoid())))
        return nullptr;
    document->put_async(VARIANT_FALSE);
    document->put_validateOnParse(VARIANT_FALSE);
    document->put_resolveExternals(VARIANT_FALSE);
    return document;
}

ComPtr<IXMLDOMDocument2> CreateOwn() {
    ComPtr<IXMLDOMDocument2> document;
    return SUCCEEDED(CreateDomDocument(document.Put())) ? document : nullptr;
}

constexpr const WCHAR* kProgramIds[] = {W("Msxml2.DOMDocument.6.0"), W("Msxml2.DOMDocument.3.0")};

// The program id that answers and passes, or null.
const WCHAR* Probe() {
    for (const WCHAR* programId : kProgramIds) {
        const auto document = Create(programId);
        if (document && HandlesDeclarations(document.Get())) return programId;
    }
    return nullptr;
}

// For the thread's life; harmless when it is done already.
void ReadyCom() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }

HRESULT Hand(ComPtr<IXMLDOMDocument2> made, IXMLDOMDocument2** document) {
    if (!made) return E_FAIL;
    *document = made.Detach();
    return S_OK;
}

}  // namespace

HRESULT CreateSystemDocument(IXMLDOMDocument2** document) {
    if (!document) return E_INVALIDARG;
    ReadyCom();
    static const WCHAR* const programId = Probe();
    auto made = programId ? Create(programId) : CreateOwn();
    if (made) made->put_preserveWhiteSpace(VARIANT_TRUE);  // a document goes out as it came
    return Hand(std::move(made), document);
}

HRESULT CreateMsxmlDocument(IXMLDOMDocument2** document) {
    if (!document) return E_INVALIDARG;
    ReadyCom();
    for (const WCHAR* programId : kProgramIds)
        if (auto made = Create(programId)) return Hand(std::move(made), document);
    return E_NOTIMPL;
}
