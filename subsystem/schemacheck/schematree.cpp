// SchemaElement: what the rules ask of an element.
#include "schematree.h"

#include <algorithm>

namespace {

bool IsNameByte(unsigned char c, bool first) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80) return true;
    return !first && ((c >= '0' && c <= '9') || c == '-' || c == '.');
}

// Characters beyond ASCII are all taken for letters.
bool IsName(std::string_view text) {
    if (text.empty()) return false;
    for (std::size_t at = 0; at < text.size(); ++at)
        if (!IsNameByte(static_cast<unsigned char>(text[at]), at == 0)) return false;
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

ExpandedName SchemaElement::Name() const {
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
        return child->kind == SchemaKind::Property && child->Name().Is(uri, name);
    });
    return found == children.end() ? nullptr : found->get();
}

std::string SchemaElement::Describe() const {
    const std::string* const name = FindAttribute("name");
    return "the " + local + (name ? " '" + *name + "'" : "");
}
