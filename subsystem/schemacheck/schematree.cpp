// SchemaElement: what the rules ask of an element.
#include "schematree.h"

#include <algorithm>
#include <bit>
#include <span>

namespace {

struct CharacterRange {
    char32_t first, last;
};
// XML 1.0, fifth edition: what a name may start with, and what it may hold beside that. The colon is the prefix's.
constexpr CharacterRange kNameStarts[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr CharacterRange kFurtherInNames[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};

bool IsAmong(std::span<const CharacterRange> ranges, char32_t character) {
    return std::any_of(ranges.begin(), ranges.end(), [character](const CharacterRange& range) {
        return character >= range.first && character <= range.last;
    });
}

// Of well-formed UTF-8, as the parser gives it.
char32_t TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const int ones = std::countl_one(lead);  // the sequence's bytes; none for a single one
    char32_t character = lead & (0xFFu >> (ones + 1));
    text.remove_prefix(1);
    for (int further = 1; further < ones && !text.empty(); ++further) {
        character = character << 6 | (static_cast<unsigned char>(text.front()) & 0x3Fu);
        text.remove_prefix(1);
    }
    return character;
}

bool IsName(std::string_view text) {
    if (text.empty() || !IsAmong(kNameStarts, TakeCharacter(text))) return false;
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        if (!IsAmong(kNameStarts, character) && !IsAmong(kFurtherInNames, character)) return false;
    }
    return true;
}

}  // namespace

std::string_view TrimXmlSpace(std::string_view text) {
    constexpr std::string_view kSpace = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

const std::string* SchemaElement::FindAttribute(std::string_view name, std::string_view uri) const {
    for (const SchemaAttribute& attribute : attributes)
        if (attribute.local == name && attribute.uri == uri) return &attribute.value;
    return nullptr;
}

ExpandedName SchemaElement::Expand(std::string_view qualifiedName) const {
    ExpandedName name;
    const std::size_t colon = qualifiedName.find(':');
    if (colon != std::string_view::npos) name.prefix = qualifiedName.substr(0, colon);
    name.local = colon == std::string_view::npos ? qualifiedName : qualifiedName.substr(colon + 1);
    name.isQName = IsName(name.local) && (colon == std::string_view::npos || IsName(name.prefix));
    name.isBound = name.prefix.empty();
    for (const SchemaElement* element = this; element; element = element->parent) {
        const auto found = element->declarations.find(name.prefix);
        if (found == element->declarations.end()) continue;
        name.uri = found->second;
        name.isBound = true;
        break;
    }
    return name;
}

ExpandedName SchemaElement::GetName() const {
    const std::string* const name = FindAttribute("name");
    return name ? Expand(*name) : ExpandedName();
}

const SchemaElement* SchemaElement::FindChild(SchemaKind wanted) const {
    const auto found =
        std::find_if(children.begin(), children.end(), [wanted](const auto& child) { return child->kind == wanted; });
    return found == children.end() ? nullptr : found->get();
}

const SchemaElement* SchemaElement::FindProperty(std::string_view uri, std::string_view name) const {
    const auto found = std::find_if(children.begin(), children.end(), [&](const auto& child) {
        return child->kind == SchemaKind::Property && child->GetName().Is(uri, name);
    });
    return found == children.end() ? nullptr : found->get();
}

std::string SchemaElement::Describe() const {
    const std::string* const name = FindAttribute("name");
    return "the " + local + (name ? " '" + *name + "'" : "");
}
