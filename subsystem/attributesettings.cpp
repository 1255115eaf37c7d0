// A product's settings as an attribute list: its defaults, and single settings given on the command line.
#include "attributesettings.h"

#include <limits>
#include <optional>
#include <span>

#include "hosterror.h"
#include "hosttext.h"
#include "settingnames.h"

namespace {

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
        case ProductFeatureKind::Boolean:
            return AttributeBytesBooleanValue(feature.defaultNumber != 0);
        case ProductFeatureKind::Integer:
        case ProductFeatureKind::Dimension:
            return AttributeBytesIntegerValue(feature.defaultNumber);
        case ProductFeatureKind::Option:
            return AttributeBytesOptionValue(AttributeBytesValueId(static_cast<DWORD>(feature.defaultNumber)), false);
        case ProductFeatureKind::String:
            return AttributeBytesStringValue(CXString::FromUtf8(feature.defaultText));
        // Told by what they hold, and by the DEVMODE's public fields.
        case ProductFeatureKind::List:
        case ProductFeatureKind::Resolution:
            break;
    }
    return std::nullopt;
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
            throw InputError("'" + std::string(text) +
                             "' is no setting; give its name, such as Duplex, or feature ids joined by '/', such as "
                             "477/210/175");
        path.push_back(static_cast<DWORD>(*id));
        if (end == rest.size()) break;
        rest.remove_prefix(end + 1);
    }
    if (path.size() > static_cast<std::size_t>(AttributeBytesRawList::kMaximumDepth))
        throw InputError("'" + std::string(text) + "' nests too deep; at most " +
                         std::to_string(AttributeBytesRawList::kMaximumDepth) + " ids make a path");
    return path;
}

std::optional<ProductFeatureKind> FindKind(const ProductDescription& product, const std::vector<DWORD>& path) {
    const ProductFeature* feature = product.FindFeature(path.back());
    if (feature && feature->path == path) return feature->kind;
    if (GetCataloguePath(path.back()) == path) return FindCatalogueFeature(path.back())->kind;
    return std::nullopt;
}

ProductFeatureKind KindBySpelling(std::string_view value) {
    if (value == "true" || value == "false") return ProductFeatureKind::Boolean;
    return ParseNumber(value) ? ProductFeatureKind::Option : ProductFeatureKind::String;
}

// The number of an option's value, given by its name; other texts stay as they are.
std::string NumberOfValue(DWORD id, const ProductDescription& product, std::string_view text) {
    const ProductFeature* feature = product.FindFeature(id);
    std::vector<DWORD> values = feature ? feature->values : std::vector<DWORD>();
    // What the product lists by itself is a value of the feature that has a place for its number.
    const CatalogueFeature* known = FindCatalogueFeature(id);
    const auto add = [&](const auto& entries) {
        for (const auto& entry : entries)
            if (known && entry.value >= known->firstValue && entry.value <= known->lastValue)
                values.push_back(entry.value);
    };
    add(product.mediaTypes);
    add(product.papers);
    add(product.trays);
    for (const DWORD value : values)
        if (LowerSchemaWord(NameValue(value, product)) == LowerSchemaWord(text)) return std::to_string(value);
    return std::string(text);
}

// Nothing when the text is no value of the kind.
std::optional<AttributeBytesValue> ParseValue(ProductFeatureKind kind, std::string_view text) {
    const std::optional<std::int64_t> number = ParseNumber(text);
    const bool fits =
        number && *number >= std::numeric_limits<LONG>::min() && *number <= std::numeric_limits<LONG>::max();
    switch (kind) {
        case ProductFeatureKind::Boolean:
            if (text == "true" || text == "false") return AttributeBytesBooleanValue(text == "true");
            break;
        case ProductFeatureKind::Integer:
        case ProductFeatureKind::Dimension:
            if (fits) return AttributeBytesIntegerValue(static_cast<LONG>(*number));
            break;
        case ProductFeatureKind::Option:
            if (fits && *number >= 0)
                return AttributeBytesOptionValue(AttributeBytesValueId(static_cast<DWORD>(*number)), true);
            break;
        case ProductFeatureKind::String:
            return AttributeBytesStringValue(CXString(ArgumentToWide(text)));
        case ProductFeatureKind::List:
        case ProductFeatureKind::Resolution:
            break;
    }
    return std::nullopt;
}

const char* DescribeKind(ProductFeatureKind kind) {
    switch (kind) {
        case ProductFeatureKind::Boolean:
            return "true or false";
        case ProductFeatureKind::Integer:
            return "a whole number";
        case ProductFeatureKind::Dimension:
            return "a whole number of micrometres";
        case ProductFeatureKind::Option:
            return "the number of an option's value, or its name";
        case ProductFeatureKind::String:
            return "a text";
        case ProductFeatureKind::Resolution:
            return "no value here; set dmPrintQuality and dmYResolution";
        case ProductFeatureKind::List:
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

void SetAttribute(AttributeBytesIndexedList& settings, const ProductDescription& product, std::string_view path,
                  std::string_view value) {
    const std::vector<DWORD> ids = ParsePath(path, product);
    const ProductFeatureKind kind = FindKind(product, ids).value_or(KindBySpelling(value));
    const std::optional<AttributeBytesValue> parsed =
        ParseValue(kind, kind == ProductFeatureKind::Option ? NumberOfValue(ids.back(), product, value) : value);
    if (!parsed)
        throw InputError("'" + std::string(value) + "' is no value for the setting " + std::string(path) +
                         ", which takes " + DescribeKind(kind));
    SetAtPath(settings, ids, *parsed);
}
