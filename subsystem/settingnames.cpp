// Names that people use for driver settings, for their values and for the keywords of the Print Schema.
#include "settingnames.h"

#include <facts/printschemakeywords.h>
#include <facts/valuenames.h>
#include <mvcore/datamodelids.h>
#include <products/pagesizes.h>

#include <algorithm>
#include <vector>

#include "hosttext.h"

namespace {

// A text that is longer than any keyword is no misspelling of one.
constexpr std::size_t kLongestName = 80;

// Letters added, left out, changed, or two neighbours swapped.
std::size_t CountEdits(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before, last(b.size() + 1), row(b.size() + 1);
    for (std::size_t column = 0; column <= b.size(); ++column) last[column] = column;
    for (std::size_t line = 1; line <= a.size(); ++line) {
        row[0] = line;
        for (std::size_t column = 1; column <= b.size(); ++column) {
            const bool same = a[line - 1] == b[column - 1];
            row[column] = std::min({last[column] + 1, row[column - 1] + 1, last[column - 1] + (same ? 0 : 1)});
            if (line > 1 && column > 1 && a[line - 1] == b[column - 2] && a[line - 2] == b[column - 1])
                row[column] = std::min(row[column], before[column - 2] + 1);
        }
        before = std::exchange(last, row);
    }
    return last[b.size()];
}

}  // namespace

std::string NameFeature(DWORD feature) {
    const CatalogueFeature* known = FindCatalogueFeature(feature);
    return known ? known->GetName() : "Feature " + std::to_string(feature);
}

bool IsProtectedFeature(DWORD feature) {
    const CatalogueFeature* known = FindCatalogueFeature(feature);
    return known && known->isProtected;
}

std::optional<DWORD> FindFeatureByName(std::string_view name) {
    const std::string wanted = LowerSchemaWord(name);
    for (const CatalogueFeature& known : GetFeatureCatalogue())
        if (known.name && LowerSchemaWord(known.name) == wanted) return known.id;
    return std::nullopt;
}

std::string NameValue(DWORD value, const ProductDescription& product) {
    const auto find = [value](const auto& entries) -> const std::string* {
        for (const auto& entry : entries)
            if (entry.value == value) return &entry.name;
        return nullptr;
    };
    // The lists name what is automatic each in its own way, and a size without a value has 0.
    if (value != 0 && value != DataModelIds::kNotSet)
        for (const std::string* name : {find(product.mediaTypes), find(product.papers), find(product.trays)})
            if (name) return *name;
    if (const auto text = product.strings.find(value); text != product.strings.end()) return text->second;
    for (const facts::ValueName& row : facts::kValueNames)
        if (row.value == value) return row.name;
    const PageSizeRow* size = FindPageSizeByValue(value);
    return size ? std::string(size->displayName) : std::to_string(value);
}

const char* FindKeywordName(std::string_view keyword) {
    for (const facts::PrintSchemaKeyword& row : facts::kPrintSchemaKeywords)
        if (keyword == row.keyword) return row.name;
    return nullptr;
}

std::optional<std::string> FindNearest(std::string_view text, std::span<const std::string> candidates) {
    if (text.empty() || text.size() > kLongestName) return std::nullopt;
    const std::string wanted = LowerSchemaWord(text);
    // A third of the letters may be wrong, and no more than four of them.
    std::size_t fewest = std::min<std::size_t>(4, text.size() / 3) + 1;
    std::optional<std::string> nearest;
    for (const std::string& candidate : candidates) {
        if (candidate.size() > kLongestName) continue;
        const std::size_t edits = CountEdits(wanted, LowerSchemaWord(candidate));
        if (edits >= fewest) continue;
        fewest = edits;
        nearest = candidate;
    }
    return nearest;
}

std::optional<std::string> FindNearestKeyword(std::string_view text) {
    static const std::vector<std::string> keywords = [] {
        std::vector<std::string> all;
        for (const facts::PrintSchemaKeyword& row : facts::kPrintSchemaKeywords) all.emplace_back(row.keyword);
        return all;
    }();
    return FindNearest(text, keywords);
}
