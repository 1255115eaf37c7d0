// Names that people use for driver settings, for their values and for the keywords of the Print Schema.
#include "settingnames.h"

#include <facts/printschemakeywords.h>
#include <facts/valuenames.h>
#include <mvcore/datamodelids.h>
#include <products/pagesizes.h>
#include <textcodec.h>

#include <vector>

#include "nearestname.h"

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

std::optional<std::string> FindNearestKeyword(std::string_view text) {
    static const std::vector<std::string> keywords = [] {
        std::vector<std::string> all;
        for (const facts::PrintSchemaKeyword& row : facts::kPrintSchemaKeywords) all.emplace_back(row.keyword);
        return all;
    }();
    return FindNearest(text, keywords);
}
