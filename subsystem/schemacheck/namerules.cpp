// The rules of names: that they are there, are bound, and distinguish siblings.
#include "rules.h"

#include <facts/privateparameters.h>

#include <algorithm>
#include <array>

namespace {

using facts::kFallbackPrefix;
constexpr std::array<std::string_view, 3> kOwnParameters = {facts::kDriverDataParameter, facts::kJobTicketParameter,
                                                            facts::kPrivateCopiesParameter};
constexpr std::array<std::string_view, 3> kNameStarts = {"Job", "Document", "Page"};

bool NeedsName(SchemaKind kind) {
    return kind == SchemaKind::Feature || kind == SchemaKind::Property || kind == SchemaKind::ScoredProperty ||
           kind == SchemaKind::ParameterDef || kind == SchemaKind::ParameterInit || kind == SchemaKind::ParameterRef;
}

// A parameter of the component's that could not have another name: nothing in the document declares its namespace.
bool IsOwnUndeclared(const SchemaElement& element, const ExpandedName& name) {
    return (element.kind == SchemaKind::ParameterInit || element.kind == SchemaKind::ParameterDef) &&
           name.prefix == kFallbackPrefix && !name.isBound &&
           std::find(kOwnParameters.begin(), kOwnParameters.end(), name.local) != kOwnParameters.end();
}

// Scored properties as a text that is equal for options with the same ones, whatever their order and prefixes.
std::string ScoreKey(const SchemaElement& element) {
    std::vector<std::string> parts;
    for (const auto& child : element.children) {
        const std::string_view text = TrimXmlSpace(child->text);
        if (child->kind == SchemaKind::ScoredProperty) {
            parts.push_back("[" + child->GetName().GetKey() + "=" + ScoreKey(*child) + "]");
        } else if (child->kind == SchemaKind::ParameterRef) {
            parts.push_back("->" + child->GetName().GetKey());
        } else if (child->kind == SchemaKind::Value && element.kind == SchemaKind::ScoredProperty) {
            const std::string* const type = child->FindAttribute("type", facts::kXmlSchemaInstanceNamespace);
            const bool isName = type && child->Expand(*type).Is(facts::kXmlSchemaNamespace, "QName");
            parts.push_back(isName ? child->Expand(text).GetKey() : std::string(text));
        }
    }
    std::sort(parts.begin(), parts.end());
    std::string key;
    for (const std::string& part : parts) key += part;
    return key;
}

}  // namespace

void CheckName(SchemaCheck& check, const SchemaElement& element) {
    const bool isOption = element.kind == SchemaKind::Option;
    if (!isOption && !NeedsName(element.kind)) return;
    const std::string* const text = element.FindAttribute("name");
    if (!text) {
        if (!isOption) check.Break(element, SchemaRule::Names, "a " + element.local + " has no name");
        return;
    }
    const ExpandedName name = element.GetName();
    const auto fail = [&](const std::string& why) {
        check.Break(element, SchemaRule::Names, "the name '" + *text + "' of a " + element.local + " " + why);
    };
    if (!name.isQName) {
        fail("is not a qualified name");
    } else if (name.prefix.empty()) {
        fail("has no prefix");
    } else if (IsOwnUndeclared(element, name)) {
        if (check.fallbackNames++ == 0) check.firstFallbackName = &element;
    } else if (!name.isBound) {
        fail("has a prefix that is not declared");
    }
    const bool isInRoot = element.parent && !element.parent->parent;
    if (!isInRoot && element.kind != SchemaKind::ParameterRef) return;
    if (std::none_of(kNameStarts.begin(), kNameStarts.end(),
                     [&](std::string_view start) { return name.local.starts_with(start); })) {
        check.Break(element, SchemaRule::NameStart, element.Describe() + " does not begin with Job, Document or Page");
    }
}

void CheckChildNames(SchemaCheck& check, const SchemaElement& parent) {
    std::map<std::pair<SchemaKind, std::string>, const SchemaElement*> seen;
    for (const auto& child : parent.children) {
        if (!NeedsName(child->kind) || !child->FindAttribute("name")) continue;
        const auto [first, isNew] = seen.insert({{child->kind, child->GetName().GetKey()}, child.get()});
        if (isNew) continue;
        check.Break(*child, SchemaRule::Duplicates,
                    child->Describe() + " occurs twice in " + (parent.parent ? parent.Describe() : "the root") +
                        "; the first is on line " + std::to_string(first->second->line));
    }
}

void CheckOptionsDiffer(SchemaCheck& check, const SchemaElement& feature) {
    std::map<std::string, const SchemaElement*> seen;
    for (const auto& child : feature.children) {
        if (child->kind != SchemaKind::Option) continue;
        const std::string name = child->FindAttribute("name") ? child->GetName().GetKey() : std::string();
        const auto [first, isNew] = seen.insert({name + " " + ScoreKey(*child), child.get()});
        if (isNew) continue;
        check.Break(*child, SchemaRule::DistinctOptions,
                    child->Describe() + " of " + feature.Describe() +
                        " has the name and the scored properties of the one on line " +
                        std::to_string(first->second->line));
    }
}
