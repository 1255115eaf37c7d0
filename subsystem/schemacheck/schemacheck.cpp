// CheckSchemaDocument: every rule at every element.
#include "schemacheck.h"

#include <algorithm>
#include <iterator>

#include "rules.h"

namespace {

// No deeper than the parser allows, which is 256 elements.
void CheckElement(SchemaCheck& check, const SchemaElement& element) {
    CheckPlace(check, element);
    CheckContent(check, element);
    CheckHolding(check, element);
    CheckName(check, element);
    CheckChildNames(check, element);
    CheckChoices(check, element);
    CheckSize(check, element);
    if (element.kind == SchemaKind::Feature) CheckOptionsDiffer(check, element);
    if (element.kind == SchemaKind::Value) CheckValue(check, element);
    if (element.kind == SchemaKind::ParameterRef) CheckReference(check, element);
    if (element.kind == SchemaKind::ParameterDef && !check.IsTicket()) CheckDefinition(check, element);
    for (const auto& child : element.children) CheckElement(check, *child);
}

}  // namespace

const char* NameRule(SchemaRule rule) {
    constexpr const char* kNames[] = {"Document",   "RootContent",     "Content", "Names",   "Duplicates",
                                      "NameStart",  "Structure",       "Values",  "Choices", "Definitions",
                                      "References", "DistinctOptions", "Sizes"};
    static_assert(std::size(kNames) == static_cast<std::size_t>(SchemaRule::Sizes) + 1, "each rule has a name");
    return kNames[static_cast<std::size_t>(rule)];
}

std::vector<SchemaFinding> CheckSchemaDocument(std::string_view bytes) {
    const SchemaDocument document = ReadSchemaDocument(bytes);
    SchemaCheck check(document);
    if (CheckRoot(check)) {
        CollectParameters(check);
        CheckElement(check, *document.root);
    }
    if (check.firstFallbackName) {
        check.Note(*check.firstFallbackName, SchemaRule::Names,
                   std::to_string(check.fallbackNames) +
                       (check.fallbackNames == 1 ? " parameter has" : " parameters have, from here on,") +
                       " the prefix ns0000, which is not declared: the component falls back to it where a document "
                       "does not declare the private namespace");
    }
    std::stable_sort(check.findings.begin(), check.findings.end(),
                     [](const SchemaFinding& a, const SchemaFinding& b) { return a.line < b.line; });
    return std::move(check.findings);
}
