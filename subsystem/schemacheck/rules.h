// The rules of Print Schema documents, by subject: each function looks at one element.
#pragma once

#include "schemacheck.h"
#include "schematree.h"

#include <set>

// One document's check: what is known of the whole, and what was found.
class SchemaCheck {
public:
    explicit SchemaCheck(const SchemaDocument& checked) : document(checked) {}

    bool IsTicket() const { return document.root->kind == SchemaKind::PrintTicket; }
    void Break(const SchemaElement& element, SchemaRule rule, std::string sentence) {
        findings.push_back({element.line, rule, false, std::move(sentence)});
    }
    void Note(const SchemaElement& element, SchemaRule rule, std::string sentence) {
        findings.push_back({element.line, rule, true, std::move(sentence)});
    }

    const SchemaDocument& document;
    std::vector<SchemaFinding> findings;
    std::set<std::string> parameters;  // keys of the names that the root's parameters define or set
    bool isOwn = false;                // the driver's component has written to the document
    const SchemaElement* firstFallbackName =
        nullptr;                    // first parameter of the component's under the prefix ns0000 that nothing declares
    std::size_t fallbackNames = 0;  // how many there are
};

// ---- structure: Document, RootContent, Content, Structure
// False when the root is none of a Print Schema document: the other rules then say nothing.
bool CheckRoot(SchemaCheck& check);
void CheckPlace(SchemaCheck& check, const SchemaElement& element);
void CheckContent(SchemaCheck& check, const SchemaElement& element);
void CheckHolding(SchemaCheck& check, const SchemaElement& element);

// ---- names: Names, Duplicates, NameStart, DistinctOptions
void CheckName(SchemaCheck& check, const SchemaElement& element);
void CheckChildNames(SchemaCheck& check, const SchemaElement& parent);
void CheckOptionsDiffer(SchemaCheck& check, const SchemaElement& feature);

// ---- values: Values, Choices, Sizes
void CheckValue(SchemaCheck& check, const SchemaElement& value);
void CheckChoices(SchemaCheck& check, const SchemaElement& element);
void CheckSize(SchemaCheck& check, const SchemaElement& element);
bool IsInteger(std::string_view text);
bool IsDecimal(std::string_view text);

// ---- parameters: Definitions, References
void CollectParameters(SchemaCheck& check);
void CheckDefinition(SchemaCheck& check, const SchemaElement& definition);
void CheckReference(SchemaCheck& check, const SchemaElement& reference);
