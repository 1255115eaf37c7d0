// The job ticket that the component puts into a PrintTicket.
#pragma once

#include <msxml2.h>

#include <optional>
#include <string>

// The text of the ticket's private job ticket parameter, as UTF-8 and exact; nothing when the ticket has none.
std::optional<std::string> ReadJobTicket(IXMLDOMDocument2* ticket);
