// TicketReader: what a PrintTicket selects by Print Schema keywords.
#include "ticketreader.h"

#include <bstr.h>
#include <printsubsystem/printschema.h>

#include <limits>

#include "hosttext.h"

namespace {

std::optional<WideString> GetAttribute(IXMLDOMNode* node, WideStringView name) {
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    if (node->get_attributes(attributes.Put()) != S_OK || !attributes) return std::nullopt;
    ComPtr<IXMLDOMNode> attribute;
    if (attributes->getNamedItem(Bstr(name).Get(), attribute.Put()) != S_OK || !attribute) return std::nullopt;
    Bstr text;
    if (FAILED(attribute->get_text(text.Put()))) return std::nullopt;
    return WideString(text.View());
}

// The URI that the prefix stands for at the node; nothing when it is not declared.
std::optional<WideString> ResolvePrefix(IXMLDOMNode* node, const WideString& prefix) {
    const WideString declaration = W("xmlns:") + prefix;
    for (ComPtr<IXMLDOMNode> scope = ComPtr<IXMLDOMNode>::Share(node); scope;) {
        if (std::optional<WideString> uri = GetAttribute(scope.Get(), declaration)) return uri;
        ComPtr<IXMLDOMNode> parent;
        if (scope->get_parentNode(parent.Put()) != S_OK) break;
        scope = parent;
    }
    return std::nullopt;
}

std::optional<LONG> ParseLong(WideStringView text) {
    const std::size_t first = text.find_first_not_of(W(" \t\r\n"));
    if (first == WideStringView::npos) return std::nullopt;
    const WideStringView digits = text.substr(first, text.find_last_not_of(W(" \t\r\n")) - first + 1);
    if (digits.find_first_not_of(W("-0123456789")) != WideStringView::npos) return std::nullopt;
    const std::optional<std::int64_t> number = ParseNumber(ToUtf8(digits));
    if (!number || *number < std::numeric_limits<LONG>::min() || *number > std::numeric_limits<LONG>::max())
        return std::nullopt;
    return static_cast<LONG>(*number);
}

}  // namespace

TicketReader::TicketReader(IXMLDOMDocument2* ticket) {
    ticket->setProperty(Bstr(W("SelectionLanguage")).Get(), Variant(WideStringView(W("XPath"))).Get());
    if (ticket->get_documentElement(root_.Put()) != S_OK) root_.Reset();
}

TicketReader::Nodes TicketReader::GetChildren(IXMLDOMNode* parent, WideStringView element) const {
    const WideString query =
        W("*[local-name()='") + WideString(element) + W("' and namespace-uri()='") + kFrameworkNamespace + W("']");
    Nodes nodes;
    ComPtr<IXMLDOMNodeList> list;
    if (FAILED(parent->selectNodes(Bstr(query).Get(), list.Put())) || !list) return nodes;
    for (;;) {
        ComPtr<IXMLDOMNode> node;
        if (list->nextNode(node.Put()) != S_OK || !node) return nodes;
        nodes.push_back(std::move(node));
    }
}

WideString TicketReader::GetKeyword(IXMLDOMNode* node) const {
    const WideString name = GetAttribute(node, W("name")).value_or(WideString());
    const std::size_t colon = name.find(W(':'));
    if (colon == WideString::npos || ResolvePrefix(node, name.substr(0, colon)) != WideString(kKeywordsNamespace))
        return WideString();
    return name.substr(colon + 1);
}

ComPtr<IXMLDOMNode> TicketReader::FindChild(IXMLDOMNode* parent, WideStringView element, WideStringView keyword) const {
    for (const ComPtr<IXMLDOMNode>& child : GetChildren(parent, element))
        if (GetKeyword(child.Get()) == keyword) return child;
    return nullptr;
}

ComPtr<IXMLDOMNode> TicketReader::FindOption(WideStringView feature) const {
    if (!root_) return nullptr;
    const ComPtr<IXMLDOMNode> node = FindChild(root_.Get(), W("Feature"), feature);
    if (!node) return nullptr;
    const Nodes options = GetChildren(node.Get(), W("Option"));
    return options.empty() ? nullptr : options.front();
}

WideString TicketReader::FindOptionKeyword(WideStringView feature) const {
    const ComPtr<IXMLDOMNode> option = FindOption(feature);
    return option ? GetKeyword(option.Get()) : WideString();
}

std::optional<LONG> TicketReader::GetValue(IXMLDOMNode* parent) const {
    const Nodes values = GetChildren(parent, W("Value"));
    Bstr text;
    if (values.empty() || FAILED(values.front()->get_text(text.Put()))) return std::nullopt;
    return ParseLong(text.View());
}

std::optional<LONG> TicketReader::GetScoredInteger(IXMLDOMNode* option, WideStringView keyword) const {
    const ComPtr<IXMLDOMNode> property = FindChild(option, W("ScoredProperty"), keyword);
    if (!property) return std::nullopt;
    if (const std::optional<LONG> value = GetValue(property.Get())) return value;
    const Nodes references = GetChildren(property.Get(), W("ParameterRef"));
    return references.empty() ? std::nullopt : FindParameter(GetKeyword(references.front().Get()));
}

std::optional<LONG> TicketReader::FindParameter(WideStringView keyword) const {
    if (!root_ || keyword.empty()) return std::nullopt;
    const ComPtr<IXMLDOMNode> parameter = FindChild(root_.Get(), W("ParameterInit"), keyword);
    return parameter ? GetValue(parameter.Get()) : std::nullopt;
}
