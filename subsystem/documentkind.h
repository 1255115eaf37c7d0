// What kind of document an XML document is, by the namespace and the local name of its root.
#pragma once

#include <msxml2.h>
#include <mvutil/cxstring.h>

#include <string>

inline constexpr WideStringView kTicketRoot = W("PrintTicket");
inline constexpr WideStringView kCapabilitiesRoot = W("PrintCapabilities");

// Whether the root is that element of the Print Schema framework.
bool HasRoot(IXMLDOMDocument2* document, WideStringView rootName);

// "an XML document whose root is PrintCapabilities"; the namespace is stated when it is not the Print Schema
// framework's.
std::string DescribeRoot(IXMLDOMDocument2* document);

// Throws InputError, which states the root that is wanted and the one found, unless HasRoot. The source is what
// messages call the document.
void RequireRoot(IXMLDOMDocument2* document, WideStringView rootName, const std::string& source);
