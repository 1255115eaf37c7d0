// The DOM's functions in a build that has no libxml2: such a host has the system's DOM alone.
#include <domdocument.h>

HRESULT CreateDomDocument(IXMLDOMDocument2** document) { return document ? E_NOTIMPL : E_INVALIDARG; }

HRESULT LoadDomDocument(IXMLDOMDocument2*, const void*, std::size_t, std::string* error) {
    if (error) *error = "this build was made without libxml2 and reads no documents.";
    return E_NOTIMPL;
}

HRESULT SerialiseDomDocument(IXMLDOMDocument2*, std::string*) { return E_NOTIMPL; }
