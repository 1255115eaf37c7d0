// The project's own DOM: making documents, and getting them in and out of bytes.
#pragma once

#include <msxml2.h>

#include <cstddef>
#include <string>

// Gives a new, empty document of the project's own DOM; the caller owns the reference. Until it is set to preserve
// white space, texts of nothing else are dropped as it is loaded, and get_text trims. E_INVALIDARG for a null pointer,
// E_NOTIMPL in a build that has no DOM of its own.
HRESULT CreateDomDocument(IXMLDOMDocument2** document);

// Replaces the document's content by what the bytes hold; white space stays if the document preserves it. The bytes may
// be in any encoding that XML lets one detect (UTF-8 and UTF-16 with or without a byte order mark, or what the XML
// declaration names). A document type declaration is refused. The document may be another party's: it is then given the
// text through loadXML. On failure E_FAIL, the content is gone, and *error (may be null) is one plain sentence with
// line and column.
HRESULT LoadDomDocument(IXMLDOMDocument2* document, const void* bytes, std::size_t length, std::string* error);

// The document as UTF-8 with an XML declaration that says so. The document may be another party's. E_FAIL when it
// cannot be read; *utf8 is then left alone.
HRESULT SerialiseDomDocument(IXMLDOMDocument2* document, std::string* utf8);
