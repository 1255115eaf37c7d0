// Natively the project's DOM is the only one.
#include <domdocument.h>
#include <systemdocument.h>

HRESULT CreateSystemDocument(IXMLDOMDocument2** document) {
    const HRESULT result = CreateDomDocument(document);
    return SUCCEEDED(result) ? (*document)->put_preserveWhiteSpace(VARIANT_TRUE) : result;
}

HRESULT CreateMsxmlDocument(IXMLDOMDocument2**) { return E_NOTIMPL; }
