// CapabilityCacheBuilder: the choice among the groups; dependent files, device limits, staple and resolutions.
#include <capabilitycachebuilder.h>

#include <facts/features.h>
#include <facts/units.h>
#include <facts/values.h>
#include <mvutil/formatting.h>
#include <mvutil/printdriver.h>
#include <mvutil/textresources.h>

#include <algorithm>
#include <limits>

#include "capabilityblob.h"

namespace {

using DataModelIds::kCurrentValue;

namespace feature = facts::feature;
namespace value = facts::value;

constexpr FeatureId kPaper(feature::kPaper), kWidth(feature::kCustomWidth), kLength(feature::kCustomLength);
constexpr FeatureId kResolution(feature::kResolution), kStapler(feature::kStapler), kCopies(feature::kCopies);
constexpr LONG kDefaultDotsPerInch = 600;
constexpr DWORD kDotsPerInchText = 11103, kOtherDotsText = 11104;

SHORT ToShort(LONG value) { return static_cast<SHORT>(std::clamp<LONG>(value, 0, std::numeric_limits<SHORT>::max())); }

// In tenths of a millimetre, the rounding added before the fraction is dropped.
SHORT ToTenths(const Dimension& size, double rounding) {
    return ToShort(size.GetValue(Dimension::TenthsOfMillimetre).GetLongValue(rounding));
}

bool Offers(IntegrationServices& services, DWORD id, DWORD first, DWORD second) {
    std::vector<ValueId> values;
    services.ListOptionValues(FeatureId(id), values);
    return std::any_of(values.begin(), values.end(), [&](const ValueId& offered) {
        return offered.GetValueEnum() == first || offered.GetValueEnum() == second;
    });
}

_tag_ResolutionInfoRec MakeResolutionRecord(const Resolution& resolution) {
    _tag_ResolutionInfoRec record{};
    const bool is200 = resolution.GetCrossFeed() == 200 && resolution.GetFeed() == 200;
    record.kind = is200 ? 2 : 1;
    record.crossFeed = resolution.GetCrossFeed();
    record.feed = resolution.GetFeed();
    const DWORD text = resolution.GetUnits() == Resolution::kDotsPerInch ? kDotsPerInchText : kOtherDotsText;
    CXString name;
    name.Format(TextResourceLoader::LoadStringW(text), record.crossFeed, record.feed);
    SetNameField(record.name, name.AsWideString());
    return record;
}

// Marks the default among the records: its own, else 600 x 600, else the first.
void MarkDefault(std::vector<_tag_ResolutionInfoRec>& records, const Resolution& usual) {
    if (records.empty()) return;
    const auto find = [&](LONG crossFeed, LONG feed) {
        return std::find_if(records.begin(), records.end(), [&](const _tag_ResolutionInfoRec& record) {
            return record.crossFeed == crossFeed && record.feed == feed;
        });
    };
    auto found = find(usual.GetCrossFeed(), usual.GetFeed());
    if (found == records.end()) found = find(kDefaultDotsPerInch, kDefaultDotsPerInch);
    (found == records.end() ? records.begin() : found)->kind = 0;
}

bool IsBefore(FeatureId first, FeatureId second) { return first.GetId() < second.GetId(); }

}  // namespace

CapabilityCacheBuilder::CapabilityCacheBuilder(CapabilityCacheReader& caches, IntegrationServices& services,
                                               FeatureServices* features)
    : caches_(caches), services_(services), features_(features) {
    TextResourceLoader::Initialize(caches.GetPrinter(), false);
    services.ListFeaturesPresent(FeatureId(facts::feature::kRoot), present_);
    std::sort(present_.begin(), present_.end(), IsBefore);
}

bool CapabilityCacheBuilder::IsPresent(FeatureId feature) const {
    return std::binary_search(present_.begin(), present_.end(), feature, IsBefore);
}

std::optional<ByteBuffer> CapabilityCacheBuilder::Build(const CapabilityGroup& group) {
    switch (group.id) {
        case CapabilityGroupId::Paper:
            return BuildPaper(group);
        case CapabilityGroupId::Bins:
            return BuildBins(group);
        case CapabilityGroupId::Media:
            return BuildMedia(group);
        case CapabilityGroupId::MediaReady:
            return BuildMediaReady(group);
        case CapabilityGroupId::DependentFiles:
            return BuildDependentFiles(group);
        case CapabilityGroupId::DeviceLimits:
            return BuildDeviceLimits(group);
        case CapabilityGroupId::Staple:
            return BuildStaple(group);
        case CapabilityGroupId::Resolutions:
            return BuildResolutions(group);
    }
    return std::nullopt;
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildDependentFiles(const CapabilityGroup& group) {
    CapabilityBlob<ListCapsHeader> blob;
    for (const CXString& file : PrintDriver().GetDriverDependentFiles(caches_.GetPrinter())) {
        DependentFileRecord record{};
        SetNameField(record.name, file.AsWideString());
        blob.Append(record);
    }
    return blob.Finish(group, {0, blob.GetCount()});
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildDeviceLimits(const CapabilityGroup& group) {
    ListOfFeaturesRef root;
    services_.GetRootListOfFeatures(root);
    DeviceLimitsCaps caps{};
    const auto valid = [&](DWORD id, DWORD bit) {
        if (!IsPresent(FeatureId(id))) return false;
        caps.valid |= bit;
        return true;
    };
    const auto integer = [&](DWORD id) {
        LONG number = 0;
        root.GetIntegerFeature(FeatureId(id)).GetValue(number, kCurrentValue);
        return static_cast<DWORD>(number);
    };
    if (valid(feature::kCollation, DeviceLimitsCaps::kCollate))
        caps.collate = Offers(services_, feature::kCollation, value::kCollated, value::kCollated);
    if (valid(feature::kColor, DeviceLimitsCaps::kColor))
        caps.color = Offers(services_, feature::kColor, value::kColor, value::kColor);
    LONG minimum = 0, maximum = 1;
    if (services_.GetIntegerRange(kCopies, minimum, maximum) && valid(kCopies.GetId(), DeviceLimitsCaps::kCopies))
        caps.maximumCopies = static_cast<DWORD>(maximum);
    if (valid(feature::kSides, DeviceLimitsCaps::kDuplex))
        caps.duplex = Offers(services_, feature::kSides, value::kTwoSidedLongEdge, value::kTwoSidedShortEdge);
    if (valid(feature::kMemory, DeviceLimitsCaps::kMemory)) caps.memory = integer(feature::kMemory);
    if (valid(feature::kPrintRate, DeviceLimitsCaps::kPrintRate)) caps.printRate = integer(feature::kPrintRate);
    if (valid(feature::kPagesPerMinute, DeviceLimitsCaps::kPagesPerMinute))
        caps.pagesPerMinute = integer(feature::kPagesPerMinute);
    if (valid(feature::kPrintRateUnit, DeviceLimitsCaps::kPrintRateUnit))
        caps.printRateUnit = root.GetOptionFeature(FeatureId(feature::kPrintRateUnit)).GetValue().GetValueEnum();

    Dimension least(0, Dimension::Micrometres), widest = least, shortest = least, longest = least;
    if (services_.GetDimensionRange({kPaper, kWidth}, least, widest) &&
        services_.GetDimensionRange({kPaper, kLength}, shortest, longest)) {
        caps.valid |= DeviceLimitsCaps::kExtents;
        caps.maximumWidth = ToTenths(widest, 0);
        caps.maximumLength = ToTenths(longest, 0);
        caps.minimumWidth = ToTenths(least, facts::kUpwards);
        caps.minimumLength = ToTenths(shortest, facts::kUpwards);
    }
    return CapabilityBlob<DeviceLimitsCaps>().Finish(group, caps);
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildStaple(const CapabilityGroup& group) {
    ListOfFeaturesRef root;
    services_.GetRootListOfFeatures(root);
    const bool staples =
        IsPresent(kStapler) && root.GetOptionFeature(kStapler).GetValue().GetValueEnum() == value::kStaplerInstalled;
    return CapabilityBlob<StapleCaps>().Finish(group, {0, staples ? 1u : 0u});
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildResolutions(const CapabilityGroup& group) {
    Resolution usual(kDefaultDotsPerInch, kDefaultDotsPerInch, Resolution::kDotsPerInch);
    std::vector<Resolution> resolutions;
    if (IsPresent(kResolution)) {
        ListOfFeaturesRef root;
        services_.GetRootListOfFeatures(root);
        root.GetResolutionFeature(kResolution).GetValue(usual, DataModelIds::kDefaultValue);
        services_.ListResolutions(kResolution, resolutions);
    }
    std::vector<_tag_ResolutionInfoRec> records;
    ResolutionCapsHeader header{};
    for (const Resolution& resolution : resolutions) {
        records.push_back(MakeResolutionRecord(resolution));
        header.has200x200 |= records.back().kind == 2;
    }
    MarkDefault(records, usual);
    CapabilityBlob<ResolutionCapsHeader> blob;
    for (const _tag_ResolutionInfoRec& record : records) blob.Append(record);
    header.count = blob.GetCount();
    return blob.Finish(group, header);
}
