// The rules of structure: the root, where elements stand, what they hold.
#include "rules.h"

#include <algorithm>
#include <array>

namespace {

constexpr int kDeepest = 10;  // elements of one kind in one another

struct Place {
    SchemaKind kind;
    std::initializer_list<SchemaKind> parents;
    const char* where;
};
const std::array kPlaces = {
    Place{SchemaKind::Feature,
          {SchemaKind::PrintTicket, SchemaKind::PrintCapabilities, SchemaKind::Feature},
          "the root or in a Feature"},
    Place{SchemaKind::Option, {SchemaKind::Feature}, "a Feature"},
    Place{SchemaKind::ScoredProperty,
          {SchemaKind::Option, SchemaKind::ScoredProperty},
          "an Option or in a ScoredProperty"},
    Place{SchemaKind::Property,
          {SchemaKind::PrintTicket, SchemaKind::PrintCapabilities, SchemaKind::Feature, SchemaKind::Option,
           SchemaKind::ScoredProperty, SchemaKind::Property, SchemaKind::ParameterDef},
          "the root, a Feature, an Option, a property or a ParameterDef"},
    Place{SchemaKind::ParameterDef, {SchemaKind::PrintCapabilities}, "the root of a PrintCapabilities"},
    Place{SchemaKind::ParameterInit, {SchemaKind::PrintTicket}, "the root of a PrintTicket"},
    Place{SchemaKind::ParameterRef, {SchemaKind::ScoredProperty}, "a ScoredProperty"},
    Place{SchemaKind::Value,
          {SchemaKind::Property, SchemaKind::ScoredProperty, SchemaKind::ParameterInit},
          "a property or in a ParameterInit"},
};

bool Contains(std::initializer_list<SchemaKind> kinds, SchemaKind kind) {
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

std::size_t Count(const SchemaElement& element, std::initializer_list<SchemaKind> kinds) {
    return static_cast<std::size_t>(std::count_if(element.children.begin(), element.children.end(),
                                                  [&](const auto& child) { return Contains(kinds, child->kind); }));
}

int DepthInKind(const SchemaElement& element) {
    int depth = 0;
    for (const SchemaElement* at = &element; at; at = at->parent) depth += at->kind == element.kind;
    return depth;
}

bool IsUnicodeEncoding(std::string_view encoding) {
    std::string upper(encoding);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return upper.empty() || upper == "UTF-8" || upper == "UTF-16" || upper == "UTF-16LE" || upper == "UTF-16BE";
}

bool IsKnownAttribute(const SchemaElement& element, const SchemaAttribute& attribute) {
    if (attribute.uri == facts::kXmlSchemaInstanceNamespace)
        return attribute.local == "type" && element.kind == SchemaKind::Value;
    const std::string& name = attribute.local;
    return attribute.uri.empty() &&
           (name == "version" || name == "name" || name == "constrained" || name == "propagate");
}

// A colour feature that the printer offers no choice of is declared all the same.
bool MayBeEmpty(const SchemaCheck& check, const SchemaElement& feature) {
    return check.isOwn && !check.IsTicket() && feature.GetName().Is(facts::kKeywordsNamespace, "PageColorManagement");
}

}  // namespace

bool CheckRoot(SchemaCheck& check) {
    const SchemaElement& root = *check.document.root;
    if (!IsUnicodeEncoding(check.document.encoding)) {
        check.Break(root, SchemaRule::Document,
                    "the document is in the encoding " + check.document.encoding + "; it must be UTF-8 or UTF-16");
    }
    if (root.kind != SchemaKind::PrintTicket && root.kind != SchemaKind::PrintCapabilities) {
        check.Break(root, SchemaRule::Document,
                    "the root element '" + root.local +
                        "' is neither PrintTicket nor PrintCapabilities of the Print Schema framework's namespace");
        return false;
    }
    const std::string* const version = root.FindAttribute("version");
    if (!version) {
        check.Break(root, SchemaRule::Document, "the root has no version; it must be 1");
    } else if (TrimXmlSpace(*version) != "1") {
        check.Break(root, SchemaRule::Document, "the root's version is '" + *version + "'; it must be 1");
    }
    return true;
}

void CheckPlace(SchemaCheck& check, const SchemaElement& element) {
    const SchemaElement* const parent = element.parent;
    if (!parent) return;
    const bool inRoot = !parent->parent;
    if (element.kind == SchemaKind::Foreign) {
        check.Break(element, SchemaRule::RootContent,
                    "the element '" + element.local + "' is not of the Print Schema framework's namespace");
        return;
    }
    const auto place =
        std::find_if(kPlaces.begin(), kPlaces.end(), [&](const Place& known) { return known.kind == element.kind; });
    if (place == kPlaces.end()) {
        check.Break(element, inRoot ? SchemaRule::RootContent : SchemaRule::Structure,
                    "'" + element.local + "' is no element of the Print Schema that can stand here");
    } else if (parent->kind != SchemaKind::Foreign && !Contains(place->parents, parent->kind)) {
        check.Break(element, inRoot ? SchemaRule::RootContent : SchemaRule::Structure,
                    element.Describe() + " stands in " +
                        (inRoot ? "the root of a " + parent->local : parent->Describe()) + "; it can only stand in " +
                        place->where);
    }
    if (DepthInKind(element) == kDeepest + 1) {
        check.Break(element, SchemaRule::Structure,
                    element.Describe() + " is more than " + std::to_string(kDeepest) + " deep in its own kind");
    }
}

void CheckContent(SchemaCheck& check, const SchemaElement& element) {
    if (element.kind == SchemaKind::Foreign) return;
    if (element.kind != SchemaKind::Value && !TrimXmlSpace(element.text).empty()) {
        check.Break(element, SchemaRule::Content, element.Describe() + " holds text; only a Value may");
    }
    for (const SchemaAttribute& attribute : element.attributes) {
        if (IsKnownAttribute(element, attribute)) continue;
        check.Break(element, SchemaRule::Content,
                    element.Describe() + " has the attribute '" +
                        (attribute.prefix.empty() ? "" : attribute.prefix + ":") + attribute.local +
                        "', which the Print Schema does not have there");
    }
}

void CheckHolding(SchemaCheck& check, const SchemaElement& element) {
    const auto fail = [&](const char* demand) {
        check.Break(element, SchemaRule::Structure, element.Describe() + " " + demand);
    };
    switch (element.kind) {
        case SchemaKind::Feature:
            if (Count(element, {SchemaKind::Option, SchemaKind::Feature}) > 0) break;
            if (MayBeEmpty(check, element)) {
                check.Note(element, SchemaRule::Structure,
                           element.Describe() + " holds no Option: the component declares it even without a choice");
            } else {
                fail("holds neither an Option nor a Feature");
            }
            break;
        case SchemaKind::ScoredProperty:
            if (Count(element, {SchemaKind::Value, SchemaKind::ParameterRef}) != 1)
                fail("does not hold exactly one Value or one ParameterRef");
            break;
        case SchemaKind::Property:
            if (Count(element, {SchemaKind::Value, SchemaKind::Property}) == 0)
                fail("holds neither a Value nor a Property");
            break;
        case SchemaKind::ParameterInit:
            if (Count(element, {SchemaKind::Value}) != 1) fail("does not hold exactly one Value");
            break;
        case SchemaKind::ParameterRef:
            // Other text is reported as such.
            if (!element.children.empty() || (!element.text.empty() && TrimXmlSpace(element.text).empty()))
                fail("is not empty");
            break;
        default:
            break;
    }
}
