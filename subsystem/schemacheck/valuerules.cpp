// The rules of values: types and their texts, the values that words must have, sizes.
#include "rules.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 4> kConstraints = {"None", "PrintTicketSettings", "AdminSettings",
                                                          "DeviceSettings"};
// Features that the component declares without saying how many options can be selected.
constexpr std::array<std::string_view, 2> kWithoutSelectionType = {"PageColorManagement", "PageICMRenderingIntent"};
constexpr std::array<std::string_view, 12> kSizes = {
    "MediaSizeWidth",
    "MediaSizeHeight",
    "PSWidth",
    "PSHeight",
    "ImageableSizeWidth",
    "ImageableSizeHeight",
    "ExtentWidth",
    "ExtentHeight",
    "PageMediaSizeMediaSizeWidth",
    "PageMediaSizeMediaSizeHeight",
    "PageMediaSizePSWidth",
    "PageMediaSizePSHeight",
};

template <std::size_t Count>
bool IsKeyword(const ExpandedName& name, const std::array<std::string_view, Count>& keywords) {
    return name.isBound && name.uri == facts::kKeywordsNamespace &&
           std::find(keywords.begin(), keywords.end(), name.local) != keywords.end();
}

bool IsDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string_view WithoutSign(std::string_view text) {
    if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
    return text;
}

void CheckQNameText(SchemaCheck& check, const SchemaElement& value, std::string_view text) {
    const ExpandedName name = value.Expand(text);
    if (!name.isQName) {
        check.Break(value, SchemaRule::Values, "the value '" + std::string(text) + "' is not a qualified name");
    } else if (!name.isBound) {
        check.Break(value, SchemaRule::Values,
                    "the value '" + std::string(text) + "' has a prefix that is not declared");
    }
}

}  // namespace

bool IsInteger(std::string_view text) { return IsDigits(WithoutSign(text)); }

bool IsDecimal(std::string_view text) {
    std::string digits(WithoutSign(text));
    if (const std::size_t point = digits.find('.'); point != std::string::npos) digits.erase(point, 1);
    return IsDigits(digits);
}

void CheckValue(SchemaCheck& check, const SchemaElement& value) {
    if (!value.children.empty())
        check.Break(value, SchemaRule::Values, "a Value holds elements; it may only hold text");
    // Readers exist that take a Value's first piece of text for the whole.
    if (value.holdsRemark)
        check.Break(value, SchemaRule::Values,
                    "a Value holds a comment or a processing instruction; it may only hold text");
    const std::string* const typeText = value.FindAttribute("type", facts::kXmlSchemaInstanceNamespace);
    if (!typeText) {
        check.Break(value, SchemaRule::Values, "a Value has no xsi:type");
        return;
    }
    const ExpandedName type = value.Expand(*typeText);
    const std::string_view text = TrimXmlSpace(value.text);
    const auto requireText = [&](bool good, const char* what) {
        if (!good) check.Break(value, SchemaRule::Values, "the value '" + std::string(text) + "' is not " + what);
    };
    if (type.Is(facts::kXmlSchemaNamespace, "integer")) {
        requireText(IsInteger(text), "an integer");
    } else if (type.Is(facts::kXmlSchemaNamespace, "decimal")) {
        requireText(IsDecimal(text), "a decimal number");
    } else if (type.Is(facts::kXmlSchemaNamespace, "QName")) {
        CheckQNameText(check, value, text);
    } else if (!type.Is(facts::kXmlSchemaNamespace, "string")) {
        check.Break(value, SchemaRule::Values,
                    "the type '" + *typeText + "' is none of string, integer, decimal and QName of XML Schema");
    } else if (text.empty() && !value.text.empty()) {
        check.Break(value, SchemaRule::Values,
                    "a Value holds nothing but white space; an empty value is an empty element");
    }
}

void CheckChoices(SchemaCheck& check, const SchemaElement& element) {
    if (check.IsTicket()) return;
    if (element.kind == SchemaKind::Feature && !element.FindProperty(facts::kFrameworkNamespace, "SelectionType")) {
        if (check.isOwn && IsKeyword(element.GetName(), kWithoutSelectionType)) {
            check.Note(element, SchemaRule::Choices,
                       element.Describe() + " has no psf:SelectionType: the component declares it without one");
        } else {
            check.Break(element, SchemaRule::Choices, element.Describe() + " has no psf:SelectionType");
        }
    }
    const std::string* const constrained = element.FindAttribute("constrained");
    if (constrained && !IsKeyword(element.Expand(*constrained), kConstraints)) {
        check.Break(element, SchemaRule::Choices,
                    "'constrained' of " + element.Describe() + " is '" + *constrained +
                        "'; it must be psk:None, psk:PrintTicketSettings, psk:AdminSettings or psk:DeviceSettings");
    }
}

void CheckSize(SchemaCheck& check, const SchemaElement& element) {
    if (!IsKeyword(element.GetName(), kSizes)) return;
    const auto require = [&](const SchemaElement* holder, bool isZeroGood, const char* demand) {
        const SchemaElement* const value = holder ? holder->FindChild(SchemaKind::Value) : nullptr;
        if (!value) return;
        const std::string_view text = TrimXmlSpace(value->text);
        const std::string* const type = value->FindAttribute("type", facts::kXmlSchemaInstanceNamespace);
        const bool isZero = WithoutSign(text).find_first_not_of('0') == std::string_view::npos;
        if (IsInteger(text) && (isZero ? isZeroGood : !text.starts_with('-')) &&
            (!type || value->Expand(*type).Is(facts::kXmlSchemaNamespace, "integer")))
            return;
        check.Break(*value, SchemaRule::Sizes,
                    (holder == &element ? "" : holder->Describe() + " of ") + element.Describe() + " is '" +
                        std::string(text) + "'; a size is " + demand);
    };
    if (element.kind == SchemaKind::ParameterDef) {
        for (const char* bound : {"DefaultValue", "MinValue", "MaxValue"})
            require(element.FindProperty(facts::kFrameworkNamespace, bound), true,
                    "an integer of micrometres that is not negative");
    } else if (element.kind == SchemaKind::ScoredProperty || element.kind == SchemaKind::Property ||
               element.kind == SchemaKind::ParameterInit) {
        require(&element, false, "a positive integer of micrometres");
    }
}
