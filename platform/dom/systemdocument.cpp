// Natively the project's DOM is the only one.
#include <domdocument.h>
#include <systemdocument.h>

HRESULT CreateSystemDocument(IXMLDOMDocument2** document) { return CreateDomDocument(document); }

HRESULT CreateMsxmlDocument(IXMLDOMDocument2**) { return E_NOTIMPL; }
