// Print Schema documents in files: read whole and checked, written whole or not at all.
#pragma once

#include <comptr.h>
#include <domdocument.h>
#include <systemdocument.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

// Makes the empty document that a file is read into: the system's own DOM or the project's.
using DocumentMaker = std::function<HRESULT(IXMLDOMDocument2** document)>;

// Throws InputError when the file cannot be read, is in another encoding than it says, holds a document type
// declaration or is not well-formed (the sentence names file, line and column), and OperationError when no document can
// be made.
ComPtr<IXMLDOMDocument2> ReadDocumentFile(const std::filesystem::path& file,
                                          const DocumentMaker& makeDocument = CreateSystemDocument);

// As ReadDocumentFile, of bytes that are at hand; the name is what messages call them.
ComPtr<IXMLDOMDocument2> ReadDocumentBytes(std::string_view bytes, const std::string& name,
                                           const DocumentMaker& makeDocument = CreateSystemDocument);

// UTF-8 with an XML declaration. Throws OperationError, with the file as it was.
void WriteDocumentFile(const std::filesystem::path& file, IXMLDOMDocument2* document);

// How the encoding that the XML declaration states and the bytes contradict each other; empty when they do not. Whether
// bytes without a contradiction are well-formed is the parser's to find out.
std::string FindEncodingFault(std::string_view bytes);

// Whether a document type declaration stands before the root element. The bytes may be UTF-16 or any encoding that
// keeps ASCII as it is; what only looks like a declaration, inside a comment or a processing instruction, is none.
bool HoldsDocumentType(std::string_view bytes);
