// TicketReader: what a PrintTicket selects by Print Schema keywords, whatever prefixes it uses.
#pragma once

#include <comptr.h>
#include <msxml2.h>
#include <mvutil/cxstring.h>

#include <optional>
#include <vector>

class TicketReader {
public:
    // The document is kept and read by XPath from now on.
    explicit TicketReader(IXMLDOMDocument2* ticket);

    // The selected option of the root feature of that keyword; null when the ticket has none.
    ComPtr<IXMLDOMNode> FindOption(WideStringView feature) const;
    // The keyword that names an option; empty when it has no name or one of another namespace.
    WideString GetKeyword(IXMLDOMNode* node) const;
    // The selected option's keyword; empty as above, and when the ticket has no such feature.
    WideString FindOptionKeyword(WideStringView feature) const;
    // The whole number of a scored property, given directly or by the parameter that it refers to.
    std::optional<LONG> GetScoredInteger(IXMLDOMNode* option, WideStringView keyword) const;
    // The whole number of the root parameter of that keyword.
    std::optional<LONG> FindParameter(WideStringView keyword) const;

private:
    using Nodes = std::vector<ComPtr<IXMLDOMNode>>;
    Nodes GetChildren(IXMLDOMNode* parent, WideStringView element) const;
    ComPtr<IXMLDOMNode> FindChild(IXMLDOMNode* parent, WideStringView element, WideStringView keyword) const;
    std::optional<LONG> GetValue(IXMLDOMNode* parent) const;

    ComPtr<IXMLDOMElement> root_;  // null when the document is empty
};
