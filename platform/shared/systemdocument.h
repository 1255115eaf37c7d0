// The document that a host hands to the component: the system's own DOM where it can do what the component asks of it.
#pragma once

#include <msxml2.h>

// On Windows asks for MSXML 6.0, else 3.0, and takes it when its attribute maps list namespace declarations, find them
// by name and remove them; what answers is remembered for the process. Else, and natively, a document of the project's
// own DOM. White space is preserved, as the print system's own documents do. The caller owns the reference. Readies COM
// for the calling thread where that is needed.
HRESULT CreateSystemDocument(IXMLDOMDocument2** document);

// A document of the system's MSXML, probed or not; E_NOTIMPL where there is none. For comparing the two.
HRESULT CreateMsxmlDocument(IXMLDOMDocument2** document);
