// The job ticket that the component puts into a PrintTicket.
#include "jobticket.h"

#include <bstr.h>
#include <comptr.h>

#include "hosttext.h"

namespace {

constexpr const WCHAR* kValueQuery =
    W("/*/*[local-name()='ParameterInit' and substring-after(@name,':')='JobMorvaneMvjtJobTicket']"
      "/*[local-name()='Value']");

}  // namespace

std::optional<std::string> ReadJobTicket(IXMLDOMDocument2* ticket) {
    ticket->setProperty(Bstr(W("SelectionLanguage")).Get(), Variant(WideStringView(W("XPath"))).Get());
    ComPtr<IXMLDOMNode> value;
    if (ticket->selectSingleNode(Bstr(kValueQuery).Get(), value.Put()) != S_OK || !value) return std::nullopt;
    // The texts' own values: the text of an element has no white space at its ends.
    WideString text;
    ComPtr<IXMLDOMNode> node;
    for (HRESULT hr = value->get_firstChild(node.Put()); hr == S_OK && node;) {
        Variant part;
        if (node->get_nodeValue(part.Put()) == S_OK) text += part.Text();
        ComPtr<IXMLDOMNode> next;
        hr = node->get_nextSibling(next.Put());
        node = next;
    }
    return ToUtf8(text);
}
