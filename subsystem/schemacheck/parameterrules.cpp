// The rules of parameters: whole definitions, and references to what is there.
#include "rules.h"

#include <facts/privateparameters.h>

#include <charconv>
#include <limits>
#include <optional>

namespace {

std::optional<std::string> GetText(const SchemaElement& definition, std::string_view property) {
    const SchemaElement* const found = definition.FindProperty(facts::kFrameworkNamespace, property);
    const SchemaElement* const value = found ? found->FindChild(SchemaKind::Value) : nullptr;
    if (!value) return std::nullopt;
    return value->text;
}

// Not a number for what is absent or, against the rule of values, is none: it is in no order with any number.
double ToNumber(const std::optional<std::string>& text) {
    std::string_view number = text ? TrimXmlSpace(*text) : std::string_view();
    if (number.starts_with('+')) number.remove_prefix(1);
    double result = 0;
    if (!IsDecimal(number) || std::from_chars(number.data(), number.data() + number.size(), result).ec != std::errc())
        return std::numeric_limits<double>::quiet_NaN();
    return result;
}

// In characters: the bytes that start one.
double CountCharacters(std::string_view text) {
    double count = 0;
    for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return count;
}

void CheckBounds(SchemaCheck& check, const SchemaElement& definition, double least, double value, double most,
                 const char* what) {
    if (least > most || least > value || value > most) {
        check.Break(definition, SchemaRule::Definitions,
                    what + std::string(" of ") + definition.Describe() + " is not between its minimum and its maximum");
    }
}

}  // namespace

void CollectParameters(SchemaCheck& check) {
    const SchemaKind kind = check.IsTicket() ? SchemaKind::ParameterInit : SchemaKind::ParameterDef;
    for (const auto& child : check.document.root->children) {
        if (child->kind != kind) continue;
        const ExpandedName name = child->GetName();
        check.parameters.insert(name.GetKey());
        if (name.local == facts::kDriverDataParameter) check.isOwn = true;
    }
}

void CheckDefinition(SchemaCheck& check, const SchemaElement& definition) {
    std::vector<const char*> demanded = {"DataType", "DefaultValue", "Mandatory", "UnitType"};
    const SchemaElement* const typeProperty = definition.FindProperty(facts::kFrameworkNamespace, "DataType");
    const SchemaElement* const typeValue = typeProperty ? typeProperty->FindChild(SchemaKind::Value) : nullptr;
    const ExpandedName type = typeValue ? typeValue->Expand(TrimXmlSpace(typeValue->text)) : ExpandedName();
    const bool isText = type.Is(facts::kXmlSchemaNamespace, "string");
    const bool isNumber =
        type.Is(facts::kXmlSchemaNamespace, "integer") || type.Is(facts::kXmlSchemaNamespace, "decimal");
    if (isText) {
        demanded.insert(demanded.end(), {"MaxLength", "MinLength"});
    } else if (isNumber) {
        demanded.insert(demanded.end(), {"MaxValue", "MinValue", "Multiple"});
    } else if (typeValue) {
        check.Break(
            *typeValue, SchemaRule::Definitions,
            "the DataType of " + definition.Describe() + " is neither integer, decimal nor string of XML Schema");
    }
    std::string missing;
    for (const char* name : demanded)
        if (!definition.FindProperty(facts::kFrameworkNamespace, name))
            missing += (missing.empty() ? "psf:" : ", psf:") + std::string(name);
    if (!missing.empty()) check.Break(definition, SchemaRule::Definitions, definition.Describe() + " lacks " + missing);

    const std::optional<std::string> value = GetText(definition, "DefaultValue");
    if (isText) {
        const double length = value ? CountCharacters(TrimXmlSpace(*value)) : std::numeric_limits<double>::quiet_NaN();
        CheckBounds(check, definition, ToNumber(GetText(definition, "MinLength")), length,
                    ToNumber(GetText(definition, "MaxLength")), "the length of the default");
    } else if (isNumber) {
        CheckBounds(check, definition, ToNumber(GetText(definition, "MinValue")), ToNumber(value),
                    ToNumber(GetText(definition, "MaxValue")), "the default");
    }
}

void CheckReference(SchemaCheck& check, const SchemaElement& reference) {
    if (!reference.FindAttribute("name") || check.parameters.count(reference.GetName().GetKey()) != 0) return;
    check.Break(reference, SchemaRule::References,
                reference.Describe() + " names a parameter that the document has no " +
                    (check.IsTicket() ? "ParameterInit" : "ParameterDef") + " of");
}
