// PrintTickets inside XPS and OpenXPS packages.
#pragma once

#include <string>
#include <string_view>

struct PackagePart {
    std::string name;  // "/Metadata/Job_PT.xml"
    std::string bytes;
};

// The ticket that stands first: the job's, a document's, a page's. Throws InputError when the bytes are no package that
// can be read, or one without a ticket.
PackagePart ReadTicketOfPackage(std::string_view bytes, const std::string& name);
