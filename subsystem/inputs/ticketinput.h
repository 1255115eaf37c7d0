// PrintTickets as support engineers get them: alone, or inside an XPS package.
#pragma once

#include <comptr.h>
#include <msxml2.h>

#include <filesystem>
#include <string>
#include <string_view>

// Throws InputError, which says what the file is, when it holds no PrintTicket. Of a package with several tickets the
// job's is read, else the first document's, else the first page's.
ComPtr<IXMLDOMDocument2> ReadTicketInput(const std::filesystem::path& file);
// As ReadTicketInput, of bytes that are at hand; the name is what messages call them.
ComPtr<IXMLDOMDocument2> ReadTicketBytes(std::string_view bytes, const std::string& name);
