// CapabilityCacheBuilder: the choice among the groups; dependent files, device limits, staple and resolutions.
#include <capabilitycachebuilder.h>

#include <mvutil/printdriver.h>
#include <mvutil/textresources.h>

#include <algorithm>
#include <limits>

#include "capabilityblob.h"

namespace {

using DataModelIds::kCurrentValue;

constexpr FeatureId kMedia(477), kWidth(172), kLength(173), kResolution(94), kStaple(252), kCopies(43);
constexpr DWORD kStapled = 7720;
constexpr LONG kDefaultDotsPerInch = 600;
constexpr DWORD kDotsPerInchText = 11103, kOtherDotsText = 11104;

SHORT ToShort(LONG value) { return static_cast<SHORT>(std::clamp<LONG>(value, 0, std::numeric_limits<SHORT>::max())); }

// In tenths of a millimetre, the rounding added before the fraction is dropped.
SHORT ToTenths(const Dimension& size, double rounding) {
    return ToShort(size.GetValue(Dimension::TenthsOfMillimetre).GetLongValue(rounding));
}

bool Offers(IntegrationServices& services, DWORD feature, DWORD first, DWORD second) {
    std::vector<ValueId> values;
    services.ListOptionValues(FeatureId(feature), values);
    return std::any_of(values.begin(), values.end(), [&](const ValueId& value) {
        return value.GetValueEnum() == first || value.GetValueEnum() == second;
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
    SetNameField(record.name, name);
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
    services.ListFeaturesPresent(FeatureId(DataModelIds::kRootFeature), present_);
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
        SetNameField(record.name, file);
        blob.Append(record);
    }
    return blob.Finish(group, {0, blob.GetCount()});
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildDeviceLimits(const CapabilityGroup& group) {
    ListOfFeaturesRef root;
    services_.GetRootListOfFeatures(root);
    DeviceLimitsCaps caps{};
    const auto valid = [&](DWORD feature, DWORD bit) {
        if (!IsPresent(FeatureId(feature))) return false;
        caps.valid |= bit;
        return true;
    };
    const auto integer = [&](DWORD feature) {
        LONG value = 0;
        root.GetIntegerFeature(FeatureId(feature)).GetValue(value, kCurrentValue);
        return static_cast<DWORD>(value);
    };
    if (valid(45, DeviceLimitsCaps::kCollate)) caps.collate = Offers(services_, 45, 5410, 5410);
    if (valid(247, DeviceLimitsCaps::kColor)) caps.color = Offers(services_, 247, 7730, 7730);
    LONG minimum = 0, maximum = 1;
    if (services_.GetIntegerRange(kCopies, minimum, maximum) && valid(kCopies.GetId(), DeviceLimitsCaps::kCopies))
        caps.maximumCopies = static_cast<DWORD>(maximum);
    if (valid(46, DeviceLimitsCaps::kDuplex)) caps.duplex = Offers(services_, 46, 5421, 5422);
    if (valid(248, DeviceLimitsCaps::kMemory)) caps.memory = integer(248);
    if (valid(250, DeviceLimitsCaps::kPrintRate)) caps.printRate = integer(250);
    if (valid(249, DeviceLimitsCaps::kPagesPerMinute)) caps.pagesPerMinute = integer(249);
    if (valid(251, DeviceLimitsCaps::kPrintRateUnit))
        caps.printRateUnit = root.GetOptionFeature(FeatureId(251)).GetValue().GetValueEnum();

    Dimension least(0, Dimension::Micrometres), widest = least, shortest = least, longest = least;
    if (services_.GetDimensionRange({kMedia, kWidth}, least, widest) &&
        services_.GetDimensionRange({kMedia, kLength}, shortest, longest)) {
        caps.valid |= DeviceLimitsCaps::kExtents;
        caps.maximumWidth = ToTenths(widest, 0);
        caps.maximumLength = ToTenths(longest, 0);
        caps.minimumWidth = ToTenths(least, 0.999);
        caps.minimumLength = ToTenths(shortest, 0.999);
    }
    return CapabilityBlob<DeviceLimitsCaps>().Finish(group, caps);
}

std::optional<ByteBuffer> CapabilityCacheBuilder::BuildStaple(const CapabilityGroup& group) {
    ListOfFeaturesRef root;
    services_.GetRootListOfFeatures(root);
    const bool staples = IsPresent(kStaple) && root.GetOptionFeature(kStaple).GetValue().GetValueEnum() == kStapled;
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
