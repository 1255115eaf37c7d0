// The elements of a document that is read. Each check gives its reason to refuse, or an empty text.
#include "dombuilder.h"

#include "domname.h"

#include <libxml/SAX2.h>

#include <algorithm>
#include <new>
#include <set>
#include <utility>

namespace dom {

DomBuilder::DomBuilder(DomTree& tree) : tree_(tree) { scope_.Declare("xml", tree.Namespace("xml", kXmlNamespace)); }

void DomBuilder::Fail(const std::string& reason, int line, int column) {
    if (!failure.reason.empty()) return;
    failure = {reason, line, column};
    std::replace(failure.reason.begin(), failure.reason.end(), '\n', ' ');
    failure.reason.resize(failure.reason.find_last_not_of(" .") + 1);
    if (failure.reason.empty()) failure.reason = "the document is not well-formed";
}

void DomBuilder::FailHere(xmlParserCtxt* parser, const std::string& reason) {
    Fail(reason, parser->input ? parser->input->line : 0, parser->input ? parser->input->col : 0);
    xmlStopParser(parser);
}

std::string DomBuilder::CheckNames(const std::vector<ReadAttribute>& attributes) {
    names_.clear();
    for (const ReadAttribute& attribute : attributes) names_.push_back(attribute.name);
    std::sort(names_.begin(), names_.end());
    const auto twice = std::adjacent_find(names_.begin(), names_.end());
    return twice == names_.end() ? "" : "the attribute '" + std::string(ViewOf(*twice)) + "' is redefined";
}

std::string DomBuilder::Declare(const std::vector<ReadAttribute>& attributes) {
    for (const ReadAttribute& attribute : attributes) {
        const std::string_view name = ViewOf(attribute.name);
        const std::string_view uri = ViewOf(attribute.value.get());
        if (!IsDeclarationName(name)) continue;
        const std::string_view prefix = DeclaredPrefix(name);
        if (!IsQName(std::string(name)) || !IsDeclarable(prefix, uri))
            return "the namespace declaration '" + std::string(name) + "' is not allowed";
        scope_.Declare(prefix, tree_.Namespace(prefix, uri));
    }
    return "";
}

std::string DomBuilder::Resolve(std::string_view name, bool isElement, QName* parts, xmlNs** space) const {
    if (!IsQName(std::string(name))) return "'" + std::string(name) + "' is not a qualified name";
    *parts = SplitName(name);
    *space = nullptr;
    if (parts->prefix.empty() && !isElement) return "";
    if (xmlNs* const* const declared = scope_.Find(parts->prefix)) {
        *space = *declared;
    } else if (!parts->prefix.empty()) {
        return "the prefix '" + std::string(parts->prefix) + "' is not declared";
    }
    return "";
}

std::string DomBuilder::AddAttributes(xmlNode* element, const std::vector<ReadAttribute>& attributes) const {
    std::set<std::pair<std::string_view, std::string_view>> seen;  // expanded names of those with a prefix
    AttributeAppender appender(element);
    for (const ReadAttribute& read : attributes) {
        const std::string_view name = ViewOf(read.name);
        const bool isDeclaration = IsDeclarationName(name);
        QName parts{{}, name};
        xmlNs* space = nullptr;
        if (!isDeclaration) {
            if (std::string reason = Resolve(name, false, &parts, &space); !reason.empty()) return reason;
        }
        if (space && !seen.insert({ViewOf(space->href), parts.local}).second)
            return "the attribute '" + std::string(name) + "' occurs twice under different prefixes";
        const xmlElementType type = isDeclaration ? kDeclarationType : XML_ATTRIBUTE_NODE;
        OwnedNode attribute = NewAttribute(element->doc, type, space, std::string(parts.local));
        if (*read.value) LinkLast(attribute.get(), NewText(element->doc, ViewOf(read.value.get())));
        appender.Append(std::move(attribute));
    }
    return "";
}

void DomBuilder::StartElement(xmlParserCtxt* parser, const xmlChar* name,
                              const std::vector<ReadAttribute>& attributes) {
    scope_.OpenElement();
    QName parts;
    xmlNs* space = nullptr;
    std::string reason = CheckNames(attributes);
    if (reason.empty()) reason = Declare(attributes);
    if (reason.empty()) reason = Resolve(ViewOf(name), true, &parts, &space);
    if (reason.empty()) {
        // Without a prefix and without attributes libxml2's own handler makes the node, links it and keeps its stack.
        const xmlNode* const parent = parser->node;
        xmlSAX2StartElement(parser, XmlChars(std::string(parts.local).c_str()), nullptr);
        if (!failure.reason.empty()) return;  // too deep
        if (parser->node == parent || !parser->node) throw std::bad_alloc();
        parser->node->ns = space;
        reason = AddAttributes(parser->node, attributes);
    }
    if (!reason.empty()) FailHere(parser, reason);
}

void DomBuilder::EndElement(xmlParserCtxt* parser, const xmlChar* name) {
    scope_.CloseElement();
    xmlSAX2EndElement(parser, name);
}

}  // namespace dom
