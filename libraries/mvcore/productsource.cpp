// The product's features, papers, trays, media types and resolutions as features of a model.
#include "productsource.h"

#include <facts/features.h>
#include <facts/units.h>
#include <products/reader/productdescription.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

namespace feature = facts::feature;

Feature& Declare(ModelParts& parts, DWORD id) { return parts.root.Declare(GetCataloguePath(id)); }

void SetDefaultNumber(Feature& feature, DWORD value) { feature.SetDefault({.number = static_cast<LONG>(value)}); }

// The product's default for a field of the DEVMODE; 0 when it has none.
LONG GetDevmodeDefault(const ProductDescription& product, std::string_view field) {
    for (const ProductDevmodeField& candidate : product.devmode)
        if (candidate.name == field) return candidate.value;
    return 0;
}

// Value of the list's entry with that DEVMODE number; else of its first entry; else not set.
template <class Entry>
DWORD GetDefaultValue(const std::vector<Entry>& entries, LONG number) {
    for (const Entry& entry : entries)
        if (static_cast<LONG>(entry.number) == number) return entry.value;
    return entries.empty() ? DWORD{DataModelIds::kNotSet} : entries.front().value;
}

void AddFeature(ModelParts& parts, const ProductFeature& description) {
    Feature& feature = parts.root.Declare(description.path);
    switch (feature.GetKind()) {
        case FeatureKind::Option:
            feature.AddOptions(description.values);
            feature.SetRequired(std::find(description.values.begin(), description.values.end(),
                                          DWORD{DataModelIds::kNotSet}) == description.values.end());
            break;
        case FeatureKind::Integer:
        case FeatureKind::Dimension:
            feature.SetRange(description.minimum, description.maximum);
            break;
        case FeatureKind::String:
            feature.SetRange(0, description.maximum);
            feature.SetDefault({.text = CXString::FromUtf8(description.defaultText)});
            return;
        case FeatureKind::List:
            return;
        case FeatureKind::Boolean:
        case FeatureKind::Resolution:
            break;
    }
    feature.SetDefault({.number = description.defaultNumber});
}

void AddPapers(ModelParts& parts, const ProductDescription& product) {
    std::vector<DWORD> values;
    Feature& feature = Declare(parts, feature::kPageSize);
    feature.SetRequired(true);
    for (const ProductPaper& paper : product.papers) {
        if (paper.type == PageSizeTypeEnum::Custom) {
            // No page size stands for it: it has width and length of its own.
            feature.AddUnlistedOption(paper.value);
            parts.names.Add(paper.value, CXString::FromUtf8(paper.name));
            continue;
        }
        parts.media
            .AddPageSize(paper.value, paper.type, paper.width, paper.length, paper.displayUnits, paper.number,
                         CXString::FromUtf8(paper.name))
            .SetMsFormName(CXString::FromUtf8(paper.formName));
        values.push_back(paper.value);
    }
    feature.AddOptions(values);
    SetDefaultNumber(feature, GetDefaultValue(product.papers, GetDevmodeDefault(product, "dmPaperSize")));
}

void AddMediaTypes(ModelParts& parts, const ProductDescription& product) {
    if (product.mediaTypes.empty()) return;
    std::vector<DWORD> values;
    Feature& feature = Declare(parts, feature::kMediaType);
    feature.SetRequired(true);
    for (const ProductMediaType& media : product.mediaTypes) {
        parts.names.Add(media.value, CXString::FromUtf8(media.name));
        // The automatic choice is no media type: that it may be made is said by the feature's not being required.
        if (media.value == DataModelIds::kNotSet)
            feature.SetRequired(false);
        else
            values.push_back(media.value);
    }
    feature.AddOptions(values);
    for (const DWORD value : product.unlistedMediaTypes) feature.AddUnlistedOption(value);
    SetDefaultNumber(feature, GetDefaultValue(product.mediaTypes, GetDevmodeDefault(product, "dmMediaType")));
}

void AddResolutions(ModelParts& parts, const ProductDescription& product) {
    if (product.resolutions.empty()) return;
    Feature& feature = Declare(parts, feature::kResolution);
    std::vector<Resolution> resolutions;
    for (const ProductResolution& listed : product.resolutions)
        resolutions.emplace_back(listed.feed, listed.crossFeed, Resolution::kDotsPerInch);
    feature.SetResolutions(resolutions);
    for (std::size_t index = 0; index < resolutions.size(); ++index)
        if (product.resolutions[index].isDefault) feature.SetDefault(ToFeatureValue(resolutions[index]));
}

// What one tray holds, as the product states it; other sources may know better.
void AddTrayRow(ModelParts& parts, Feature& rows, const ProductTray& tray) {
    FeatureList& row = rows.AddRow();
    Feature& number = row.Declare({feature::kTrayOfRow});
    number.AddOptions({tray.value});
    SetDefaultNumber(number, tray.value);
    Feature& size = row.Declare({feature::kPageSize});
    size.ShareOptionsOf(Declare(parts, feature::kPageSize));
    SetDefaultNumber(size, tray.heldSize);
    for (const auto& [side, held] :
         {std::pair(feature::kCustomWidth, tray.heldWidth), std::pair(feature::kCustomLength, tray.heldLength)}) {
        Feature& feature = row.Declare({side});
        feature.SetRange(0, facts::kLongestSide);
        if (held != 0) feature.SetDefault({.number = held});
    }
    Feature& media = row.Declare({feature::kPaper, feature::kMediaType});
    if (Feature* types = FindFeature(parts, FeatureId(feature::kMediaType), FeatureKind::Option))
        media.ShareOptionsOf(*types);
    SetDefaultNumber(media, tray.heldMediaType);
}

void AddTrays(ModelParts& parts, const ProductDescription& product) {
    if (product.trays.empty()) return;
    std::vector<DWORD> values;
    for (const ProductTray& tray : product.trays) {
        parts.names.Add(tray.value, CXString::FromUtf8(tray.name));
        parts.media.SetMsTrayId(ValueId(tray.value), tray.number);
        values.push_back(tray.value);
    }
    const DWORD preset = GetDefaultValue(product.trays, GetDevmodeDefault(product, "dmDefaultSource"));
    for (const DWORD id : {feature::kTray, feature::kPaperSource, feature::kTrayOfRow}) {
        Feature& feature = Declare(parts, id);
        feature.AddOptions(values);
        SetDefaultNumber(feature, preset);
    }
    Feature& rows = Declare(parts, feature::kLoadedTrays);
    for (const ProductTray& tray : product.trays)
        if (tray.value != DataModelIds::kNotSet) AddTrayRow(parts, rows, tray);
}

}  // namespace

void AddProduct(ModelParts& parts, const ProductDescription& product) {
    for (const ProductFeature& feature : product.features) AddFeature(parts, feature);
    AddPapers(parts, product);
    AddMediaTypes(parts, product);
    AddResolutions(parts, product);
    AddTrays(parts, product);
}
