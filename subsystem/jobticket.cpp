// The job ticket that the component puts into a PrintTicket.
#include "jobticket.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/privateparameters.h>

#include "hosttext.h"

namespace {

// The value of the ticket's parameter, whatever the prefixes.
WideString MakeValueQuery() {
    return WideString(W("/*/*[local-name()='ParameterInit' and substring-after(@name,':')='")) +
           kWide<facts::kJobTicketParameter>.text + W("']/*[local-name()='Value']");
}

}  // namespace

std::optional<std::string> ReadJobTicket(IXMLDOMDocument2* ticket) {
    ticket->setProperty(Bstr(W("SelectionLanguage")).Get(), Variant(WideStringView(W("XPath"))).Get());
    ComPtr<IXMLDOMNode> value;
    if (ticket->selectSingleNode(Bstr(MakeValueQuery()).Get(), value.Put()) != S_OK || !value) return std::nullopt;
    Bstr text;
    if (FAILED(value->get_text(text.Put()))) return std::nullopt;
    return ToUtf8(text.View());
}
