// A product's settings as an attribute list: its defaults, and single settings given on the command line.
#include "attributesettings.h"

#include <facts/features.h>
#include <facts/values.h>

#include <limits>
#include <optional>
#include <span>

#include "hosterror.h"
#include "hosttext.h"
#include "settingnames.h"

namespace {

using facts::FeatureKind;

// A copy of the list with the value under the path; lists on the way that are missing are made.
void SetAtPath(AttributeBytesIndexedList& list, std::span<const DWORD> path, const AttributeBytesValue& value) {
    const AttributeBytesFeatureId feature(path.front());
    if (path.size() == 1) {
        list.SetAttributeBytes(feature, value);
        return;
    }
    AttributeBytesIndexedList inner;
    list.GetCollection(feature, inner);
    SetAtPath(inner, path.subspan(1), value);
    AttributeBytesRawList raw;
    raw.ImportFromIndexedList(inner);
    list.SetAttributeBytes(feature, AttributeBytesListValue(1, raw));
}

std::optional<AttributeBytesValue> DefaultValue(const ProductFeature& feature) {
    switch (feature.kind) {
        case FeatureKind::Boolean:
            return AttributeBytesBooleanValue(feature.defaultNumber != 0);
        case FeatureKind::Integer:
        case FeatureKind::Dimension:
            return AttributeBytesIntegerValue(feature.defaultNumber);
        case FeatureKind::Option:
            return AttributeBytesOptionValue(AttributeBytesValueId(static_cast<DWORD>(feature.defaultNumber)), false);
        case FeatureKind::String:
            return AttributeBytesStringValue(CXString::FromUtf8(feature.defaultText));
        // Told by what they hold, and by the DEVMODE's public fields.
        case FeatureKind::List:
        case FeatureKind::Resolution:
            break;
    }
    return std::nullopt;
}

// The media type's, which is nested.
std::string GetExamplePath() {
    std::string path;
    for (const DWORD id : GetCataloguePath(facts::feature::kMediaType))
        path += (path.empty() ? "" : "/") + std::to_string(id);
    return path;
}

// Feature ids joined by "/", or the name of one feature.
std::vector<DWORD> ParsePath(std::string_view text, const ProductDescription& product) {
    std::vector<DWORD> path;
    if (const std::optional<DWORD> id = FindFeatureByName(text)) {
        const ProductFeature* feature = product.FindFeature(*id);
        return feature ? feature->path : GetCataloguePath(*id);
    }
    for (std::string_view rest = text;;) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        const std::optional<std::int64_t> id = ParseNumber(rest.substr(0, end));
        if (!id || *id < 1 || *id > std::numeric_limits<LONG>::max())
            throw InputError("'" + std::string(text) + "' is no setting; give its name, such as " +
                             NameFeature(facts::feature::kSides) + ", or feature ids joined by '/', such as " +
                             GetExamplePath());
        path.push_back(static_cast<DWORD>(*id));
        if (end == rest.size()) break;
        rest.remove_prefix(end + 1);
    }
    if (path.size() > static_cast<std::size_t>(AttributeBytesRawList::kMaximumDepth))
        throw InputError("'" + std::string(text) + "' nests too deep; at most " +
                         std::to_string(AttributeBytesRawList::kMaximumDepth) + " ids make a path");
    return path;
}

std::optional<FeatureKind> FindKind(const ProductDescription& product, const std::vector<DWORD>& path) {
    const ProductFeature* feature = product.FindFeature(path.back());
    if (feature && feature->path == path) return feature->kind;
    if (GetCataloguePath(path.back()) == path) return FindCatalogueFeature(path.back())->kind;
    return std::nullopt;
}

FeatureKind KindBySpelling(std::string_view value) {
    if (value == "true" || value == "false") return FeatureKind::Boolean;
    return ParseNumber(value) ? FeatureKind::Option : FeatureKind::String;
}

// The values of an option feature that the product offers. What it lists by itself is a value of the feature that has a
// place for its number.
std::vector<DWORD> ListOptionValues(DWORD id, const ProductDescription& product) {
    const ProductFeature* feature = product.FindFeature(id);
    std::vector<DWORD> values = feature ? feature->values : std::vector<DWORD>();
    const CatalogueFeature* known = FindCatalogueFeature(id);
    const auto add = [&](const auto& entries) {
        for (const auto& entry : entries)
            if (known && entry.value >= known->values.first && entry.value <= known->values.last)
                values.push_back(entry.value);
    };
    add(product.mediaTypes);
    add(product.papers);
    add(product.trays);
    return values;
}

// The number of an option's value, given by its name; other texts stay as they are.
std::string NumberOfValue(DWORD id, const ProductDescription& product, std::string_view text) {
    for (const DWORD value : ListOptionValues(id, product))
        if (LowerSchemaWord(NameValue(value, product)) == LowerSchemaWord(text)) return std::to_string(value);
    return std::string(text);
}

// Nothing when the text is no value of the kind.
std::optional<AttributeBytesValue> ParseValue(FeatureKind kind, std::string_view text) {
    const std::optional<std::int64_t> number = ParseNumber(text);
    const bool fits =
        number && *number >= std::numeric_limits<LONG>::min() && *number <= std::numeric_limits<LONG>::max();
    switch (kind) {
        case FeatureKind::Boolean:
            if (text == "true" || text == "false") return AttributeBytesBooleanValue(text == "true");
            break;
        case FeatureKind::Integer:
        case FeatureKind::Dimension:
            if (fits) return AttributeBytesIntegerValue(static_cast<LONG>(*number));
            break;
        case FeatureKind::Option:
            if (fits && *number >= 0)
                return AttributeBytesOptionValue(AttributeBytesValueId(static_cast<DWORD>(*number)), true);
            break;
        case FeatureKind::String:
            return AttributeBytesStringValue(CXString(ArgumentToWide(text)));
        case FeatureKind::List:
        case FeatureKind::Resolution:
            break;
    }
    return std::nullopt;
}

const char* DescribeKind(FeatureKind kind) {
    switch (kind) {
        case FeatureKind::Boolean:
            return "true or false";
        case FeatureKind::Integer:
            return "a whole number";
        case FeatureKind::Dimension:
            return "a whole number of micrometres";
        case FeatureKind::Option:
            return "the number of an option's value, or its name";
        case FeatureKind::String:
            return "a text";
        case FeatureKind::Resolution:
            return "no value here; set dmPrintQuality and dmYResolution";
        case FeatureKind::List:
            break;
    }
    return "no value of its own; name a feature inside it";
}

}  // namespace

AttributeBytesIndexedList MakeDefaultSettings(const ProductDescription& product) {
    AttributeBytesIndexedList settings;
    for (const ProductFeature& feature : product.features)
        if (const std::optional<AttributeBytesValue> value = DefaultValue(feature))
            SetAtPath(settings, feature.path, *value);
    return settings;
}

std::string GetAttributeExamples() {
    return NameFeature(facts::feature::kSides) + "=" + std::to_string(facts::value::kTwoSidedLongEdge) + " or " +
           GetExamplePath() + "=" + std::to_string(facts::value::kTransparency);
}

std::vector<std::string> ListSettingTexts(std::string_view word, const ProductDescription* product) {
    std::vector<std::string> texts;
    const std::size_t end = word.find('=');
    if (end == std::string_view::npos) {
        for (const CatalogueFeature& feature : GetFeatureCatalogue())
            if (feature.name && feature.kind != FeatureKind::List && feature.kind != FeatureKind::Resolution)
                texts.push_back(feature.GetName() + "=");
        return texts;
    }
    const std::string name(word.substr(0, end + 1));
    const std::optional<DWORD> id = FindFeatureByName(word.substr(0, end));
    if (!id) return texts;
    if (FindCatalogueFeature(*id)->kind == FeatureKind::Boolean) return {name + "true", name + "false"};
    if (FindCatalogueFeature(*id)->kind == FeatureKind::Option && product)
        for (const DWORD value : ListOptionValues(*id, *product)) texts.push_back(name + NameValue(value, *product));
    return texts;
}

void SetAttribute(AttributeBytesIndexedList& settings, const ProductDescription& product, std::string_view path,
                  std::string_view value) {
    const std::vector<DWORD> ids = ParsePath(path, product);
    const FeatureKind kind = FindKind(product, ids).value_or(KindBySpelling(value));
    const std::optional<AttributeBytesValue> parsed =
        ParseValue(kind, kind == FeatureKind::Option ? NumberOfValue(ids.back(), product, value) : value);
    if (!parsed)
        throw InputError("'" + std::string(value) + "' is no value for the setting " + std::string(path) +
                         ", which takes " + DescribeKind(kind));
    SetAtPath(settings, ids, *parsed);
}
