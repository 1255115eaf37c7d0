// What Print Schema documents say.
#include "meaning.h"

#include <subsystem/schemacheck/schematree.h>

#include <algorithm>
#include <set>
#include <sstream>

namespace {

constexpr std::string_view kInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";

std::string Indent(const std::string& text) {
    std::string indented;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) indented += "  " + line + "\n";
    return indented;
}

std::string DescribeAttributes(const SchemaElement& element) {
    std::set<std::string> texts;
    for (const SchemaAttribute& attribute : element.attributes) {
        const bool isName = attribute.uri.empty() ? attribute.local == "name" || attribute.local == "constrained"
                                                  : attribute.uri == kInstanceNamespace && attribute.local == "type";
        texts.insert(" " + attribute.uri + "|" + attribute.local + "=" +
                     (isName ? element.Expand(attribute.value).GetKey() : attribute.value));
    }
    std::string text;
    for (const std::string& attribute : texts) text += attribute;
    return text;
}

// The text of a Value that is a name is the name.
std::string DescribeText(const SchemaElement& element) {
    const std::string text(TrimXmlSpace(element.text));
    const std::string* const type = element.FindAttribute("type", kInstanceNamespace);
    return type && element.Expand(*type).local == "QName" ? element.Expand(text).GetKey() : text;
}

std::string DescribeElement(const SchemaElement& element) {
    const ExpandedName name =
        element.Expand(element.prefix.empty() ? element.local : element.prefix + ":" + element.local);
    std::string text = name.GetKey() + DescribeAttributes(element);
    if (const std::string own = DescribeText(element); !own.empty()) text += " " + own;
    std::vector<std::string> children;
    for (const auto& child : element.children) children.push_back(DescribeElement(*child));
    std::sort(children.begin(), children.end());
    text += "\n";
    for (const std::string& child : children) text += Indent(child);
    return text;
}

void AddOffers(const SchemaElement& element, const std::string& place, std::set<std::string>& offers) {
    for (const auto& child : element.children) {
        if (child->kind == SchemaKind::Property || child->kind == SchemaKind::Value) continue;
        std::string text = place + " / " + child->local + " " + child->GetName().GetKey();
        // Options without names differ by what they score.
        if (child->kind == SchemaKind::ScoredProperty)
            if (const SchemaElement* const value = child->FindChild(SchemaKind::Value))
                text += " " + DescribeText(*value);
        offers.insert(text);
        AddOffers(*child, text, offers);
    }
}

std::string Join(const std::set<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

}  // namespace

std::string DescribeMeaning(std::string_view document) { return DescribeElement(*ReadSchemaDocument(document).root); }

std::vector<std::string> ListMeanings(std::string_view document) {
    std::vector<std::string> meanings;
    const SchemaDocument read = ReadSchemaDocument(document);
    for (const auto& child : read.root->children) meanings.push_back(DescribeElement(*child));
    return meanings;
}

std::string DescribeOffers(std::string_view capabilities) {
    std::set<std::string> offers;
    AddOffers(*ReadSchemaDocument(capabilities).root, "", offers);
    return Join(offers);
}

std::vector<std::string> ListRootNamespaces(std::string_view document) {
    std::vector<std::string> namespaces;
    const SchemaDocument read = ReadSchemaDocument(document);
    for (const auto& [prefix, uri] : read.root->declarations) namespaces.push_back(uri);
    return namespaces;
}

std::string FindDifference(const std::string& before, const std::string& after) {
    const auto split = [](const std::string& text) {
        std::multiset<std::string> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) lines.insert(line);
        return lines;
    };
    const std::multiset<std::string> old = split(before), now = split(after);
    constexpr std::size_t kMostCharacters = 300;
    for (const std::string& line : old)
        if (now.count(line) < old.count(line)) return "'" + line.substr(0, kMostCharacters) + "' is gone";
    for (const std::string& line : now)
        if (old.count(line) < now.count(line)) return "'" + line.substr(0, kMostCharacters) + "' has come";
    return {};
}
