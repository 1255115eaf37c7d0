// CapabilityCacheBuilder: trays, media types, and the paper that the trays hold, built from the model.
#include <capabilitycachebuilder.h>

#include <facts/features.h>
#include <facts/mediatypes.h>
#include <mvutil/formatting.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/textresources.h>

#include <algorithm>

#include "capabilityblob.h"

namespace {

using DataModelIds::kCurrentValue;
using DataModelIds::kNotSet;

namespace feature = facts::feature;

constexpr FeatureId kPaper(feature::kPaper), kMediaType(feature::kMediaType), kPageSize(feature::kPageSize);
constexpr FeatureId kWidth(feature::kCustomWidth), kLength(feature::kCustomLength);
constexpr FeatureId kLoadedTrays(feature::kLoadedTrays);
constexpr DWORD kAutomaticText = 10133;
constexpr WORD kAutomaticBin = 15;
constexpr WORD kFirstFreeBin = 256;

// Bin numbers that the DEVMODE knows, by tray.
constexpr struct {
    DWORD tray;
    WORD bin;
} kBinNumbers[] = {{7147, 1},  {kNotSet, kAutomaticBin},
                   {7122, 6},  {7123, 2},
                   {7124, 11}, {7125, 5},
                   {7148, 7},  {7149, 3},
                   {7151, 4},  {7163, 10},
                   {7164, 9}};

// Gives every tray that has no number one of its own.
void NumberTrays(MediaHandler& media, const std::vector<ValueId>& trays) {
    WORD without = 0;
    for (const ValueId& tray : trays) {
        if (media.GetMsTrayId(tray) != 0) continue;
        const auto* known = std::find_if(std::begin(kBinNumbers), std::end(kBinNumbers),
                                         [&](const auto& row) { return row.tray == tray.GetValueEnum(); });
        if (known == std::end(kBinNumbers))
            ++without;
        else
            media.SetMsTrayId(tray, known->bin);
    }
    WORD next = static_cast<WORD>(kFirstFreeBin + without);
    for (const ValueId& tray : trays)
        if (media.GetMsTrayId(tray) == 0) media.SetMsTrayId(tray, next--);
}

// A size without a name of its own, in the units of its tray.
CXString FormatSize(const Dimension& width, const Dimension& length, DWORD units) {
    const bool isInches = units == DataModelIds::kUnitsInches ||
                          (units != DataModelIds::kUnitsMillimetres && OperatingSystem::UseEnglishPaperSizes());
    const int unit = isInches ? Dimension::Inches : Dimension::Millimetres;
    CXString text;
    text.Format(isInches ? W("%.2f x %.2f inches") : W("%.1f x %.1f mm"), width.GetValue(unit).GetDoubleValue(),
                length.GetValue(unit).GetDoubleValue());
    return text;
}

// The product's text for the value, else the value's own.
CXString GetValueText(const ValueId& value) {
    const CXString text = ProductStringLoader(kNotSet).GetStringForValue(value.GetValueEnum());
    return text.IsEmpty() ? value.GetDisplayString() : text;
}

}  // namespace

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildBins(const CapabilityGroup& group) {
    MediaHandler& media = services_.GetMediaHandler();
    const bool traysAreListed =
        services_.TestFeature(FeatureId(feature::kRoot), FeatureId(feature::kTraysAreListed), 1);
    std::vector<ValueId> trays;
    services_.ListOptionValues(traysAreListed
                                   ? FeatureIdWithContext(kLoadedTrays, FeatureId(feature::kTrayOfRow))
                                   : FeatureIdWithContext(FeatureId(feature::kTrays), FeatureId(feature::kTray)),
                               trays);
    NumberTrays(media, trays);

    CapabilityBlob<ListCapsHeader> blob;
    BinCapsRecord record{kAutomaticBin, 0, kNotSet, {}};
    SetNameField(record.name, TextResourceLoader::LoadStringW(kAutomaticText).AsWideString());
    blob.Append(record);
    for (const ValueId& tray : trays) {
        if (tray.GetValueEnum() == kNotSet) continue;  // the first record
        record = {media.GetMsTrayId(tray), 0, tray.GetValueEnum(), {}};
        SetNameField(record.name, tray.GetDisplayString().AsWideString());
        blob.Append(record);
    }
    return blob.Finish(group, {0, blob.GetCount()});
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildMedia(const CapabilityGroup& group) {
    if (!IsPresent(kMediaType)) return std::nullopt;
    const FeatureIdWithContext mediaTypes(kPaper, kMediaType);
    CapabilityBlob<ListCapsHeader> blob;
    const auto append = [&](DWORD number, const CXString& name) {
        MediaCapsRecord record{number, {}};
        SetNameField(record.name, name.AsWideString());
        blob.Append(record);
    };
    if (!services_.GetCapabilitiesNode(mediaTypes).IsRequired())
        append(kNotSet, TextResourceLoader::LoadStringW(kAutomaticText));
    std::vector<ValueId> values;
    services_.ListOptionValues(mediaTypes, values);
    for (const ValueId& mediaType : values) {
        if (mediaType.GetValueEnum() == kNotSet) continue;  // the automatic entry
        append(facts::NumberOfMediaType(mediaType.GetValueEnum()), GetValueText(mediaType));
    }
    return blob.Finish(group, {0, blob.GetCount()});
}

// The names of the paper in a tray; more than one when several page sizes have its dimensions.
std::vector<CXString> CapabilityCacheBuilder::GetLoadedPaperNames(const ListOfFeaturesRef& tray) {
    MediaHandler& media = services_.GetMediaHandler();
    const ValueId loaded = tray.GetOptionFeature(kPageSize).GetValue();
    if (loaded.GetValueEnum() != DataModelIds::kPageSizeCustom) {
        const PageSize* size = media.GetPageSize(loaded);
        return {size ? size->GetDisplayString() : loaded.GetDisplayString()};
    }
    Dimension width(0, Dimension::Micrometres), length(0, Dimension::Micrometres);
    tray.GetDimensionFeature(kWidth).GetValue(width, kCurrentValue);
    tray.GetDimensionFeature(kLength).GetValue(length, kCurrentValue);
    const PageSize* custom = media.GetPageSize(loaded);
    if (!media.AnyExist(width, length)) return {FormatSize(width, length, custom ? custom->GetUnits() : 0)};
    std::vector<PageSize*> sizes;
    media.GetPageSizes(width, length, sizes);
    std::vector<CXString> names;
    names.reserve(sizes.size());
    for (const PageSize* size : sizes) names.push_back(size->GetDisplayString());
    return names;
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildMediaReady(const CapabilityGroup& group) {
    if (!features_ || !IsPresent(kLoadedTrays)) return std::nullopt;
    std::vector<std::pair<CXString, CXString>> pairs;
    const auto add = [&](const CXString& paper, const CXString& mediaName) {
        const std::pair<CXString, CXString> pair(paper, mediaName);
        if (std::find(pairs.begin(), pairs.end(), pair) == pairs.end()) pairs.push_back(pair);
    };
    const ListOfValuesRef trays = features_->GetListOfValues(kLoadedTrays);
    for (std::size_t index = 0; index < trays.GetNumItems(); ++index) {
        const ListOfFeaturesRef tray = trays.GetListOfFeatures(index);
        if (tray.GetOptionFeature(kPageSize).GetValue().GetValueEnum() == kNotSet) continue;
        const ValueId mediaType = tray.GetOptionFeature({kPaper, kMediaType}).GetValue();
        const CXString mediaName = mediaType.GetValueEnum() == kNotSet ? CXString() : GetValueText(mediaType);
        for (const CXString& paper : GetLoadedPaperNames(tray)) add(paper, mediaName);
    }
    if (pairs.empty()) {
        const PageSize* usual = services_.GetMediaHandler().GetPageSize(ValueId(
            OperatingSystem::UseEnglishPaperSizes() ? DataModelIds::kPageSizeLetter : DataModelIds::kPageSizeA4));
        add(usual ? usual->GetDisplayString() : CXString(), CXString());
    }

    CapabilityBlob<ListCapsHeader> blob;
    for (const auto& [paper, mediaName] : pairs) {
        MediaReadyRecord record{};
        SetNameField(record.paperName, paper.AsWideString());
        SetNameField(record.mediaName, mediaName.AsWideString());
        blob.Append(record);
    }
    return blob.Finish(group, {0, blob.GetCount()});
}
