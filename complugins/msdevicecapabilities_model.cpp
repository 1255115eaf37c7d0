// MSDeviceCapabilities: data source and observer of a data model, and writing the caches that changed.
#include <msdevicecapabilities.h>

#include <privateblock.h>

#include <mvcore/notifications.h>
#include <mvutil/cforms.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/printer.h>
#include <mvutil/textresources.h>

#include <algorithm>

namespace {

// Kinds of observer, by the model's numbers.
constexpr int kFeatureObserver = 26014;
constexpr int kEventObserver = 26016;

constexpr DWORD kPaperFlag = 0x2000;
constexpr DWORD kMediaReadyFlag = 0x20000;
constexpr DWORD kStapleFlag = 0x10000;
constexpr DWORD kDeviceLimitsFlag = 0x7ff;
constexpr DWORD kListGroups = 0x6800;      // paper, bins, resolutions
constexpr DWORD kSettingsGroups = 0x97ff;  // media, dependent files, device limits

constexpr FeatureId kCollation(45), kStaple(252), kResolution(94), kPageSize(168), kMediaType(175), kTrays(193);
constexpr FeatureId kMedia(477);

// Groups that follow what a feature offers; others are device limits.
DWORD GroupOf(FeatureId registered) {
    if (registered == kResolution) return 0x800;
    if (registered == kPageSize) return kPaperFlag;
    if (registered == kMediaType) return 0x8000;
    if (registered == kTrays) return 0x4000;
    return kDeviceLimitsFlag;
}

bool IsEnvelopeName(const CXString& name) {
    const CXString words[] = {TextResourceLoader::LoadStringW(32009), TextResourceLoader::LoadStringW(31591),
                              W("Envelope"), W("Env.")};
    return std::any_of(std::begin(words), std::end(words),
                       [&](const CXString& word) { return !word.IsEmpty() && name.Find(word) >= 0; });
}

// Gives the form's name and number to the page sizes of its dimensions that it can stand for.
void MapForm(MediaHandler& media, const _MVN_FORM_INFO& form, const Dimension& width, const Dimension& length) {
    std::vector<PageSize*> sizes;
    media.GetPageSizes(width, length, sizes);
    for (PageSize* size : sizes) {
        const bool isCommon = size->GetPageSizeType() == PageSizeTypeEnum::Common;
        if ((!isCommon && size->GetPageSizeType() != PageSizeTypeEnum::Other) || size->GetMsId() != 0) continue;
        if (sizes.size() != 1 && !isCommon && !IsEnvelopeName(form.name)) continue;
        size->SetMsFormName(form.name);
        size->SetMsId(form.formIndex);
    }
}

}  // namespace

void MSDeviceCapabilities::RegisterForIntegrateSourceDataChanges(DataModelObserverInterfaces& observers) {
    observers.RegisterFeatureChangeObserver(this, SettingsInstanceId(DataModelIds::kCapabilities), kCollation,
                                            FeatureChangeId(DataModelIds::kUsableChanged), kFeatureObserver);
}

void MSDeviceCapabilities::IntegrateSourceData(IntegrationInterface& integration) {
    integration_ = &integration;
    services_ = nullptr;
    collationUsable_ = integration.GetServices().TestFeature(kCollation);
    if (LoadAllCaches() != E_NOTIMPL) MapPrinterForms(integration.GetServices());
}

void MSDeviceCapabilities::MapPrinterForms(IntegrationServices& services) const {
    MediaHandler& media = services.GetMediaHandler();
    const ValueId units(DataModelIds::kUnitsOfSystem);
    constexpr WORD kTabloid = 3;
    std::vector<ValueId> taught;
    const CForms forms(printer_, true);
    for (const _MVN_FORM_INFO& form : forms.GetForms()) {
        if (form.formIndex == kTabloid || form.width > form.length) continue;
        const Dimension width(form.width, Dimension::Micrometres), length(form.length, Dimension::Micrometres);
        if (form.flags == 0) {
            taught.push_back(media.AddNewMsForm(width, length, units, true, form.formIndex, form.name).GetValueId());
        } else if (!media.AnyExist(width, length)) {
            media.AddNewMsForm(width, length, units, false, form.formIndex, form.name);
        } else {
            MapForm(media, form, width, length);
        }
    }
    if (!taught.empty()) services.AddOptionValues(kPageSize, taught, 1);
}

void MSDeviceCapabilities::RegisterForCurrentSettingsChanges(DataModelObserverInterfaces& observers) {
    UpdateCaches(kListGroups);
    if (dirtyFlags_) SaveCaches();
    const auto observe = [&](DWORD settings, const FeatureIdWithContext& feature) {
        observers.RegisterFeatureChangeObserver(this, SettingsInstanceId(settings), feature,
                                                FeatureChangeId(DataModelIds::kContentsChanged), kFeatureObserver);
    };
    const FeatureIdWithContext offered[] = {{kMedia, kPageSize}, kTrays,        {kMedia, kMediaType}, kCollation,
                                            FeatureId(247),      FeatureId(46), kResolution};
    for (const FeatureIdWithContext& feature : offered) observe(DataModelIds::kCapabilities, feature);
    observe(DataModelIds::kCurrentSettings, kStaple);
}

void MSDeviceCapabilities::SetFeatureServices(FeatureServices& services) {
    services_ = &services;
    UpdateCaches(kSettingsGroups);
    if (dirtyFlags_) SaveCaches();
    for (const DWORD event :
         {DataModelIds::kLoadedMediaChanged, DataModelIds::kSettingsApplied, DataModelIds::kConfigurationRead})
        services.RegisterEventObserver(this, EventId(event), kEventObserver);
}

void MSDeviceCapabilities::OnNotification(INotification& notification) {
    if (const auto* event = dynamic_cast<EventNotification*>(&notification)) {
        if (event->GetEventId() == EventId(DataModelIds::kLoadedMediaChanged)) mediaReadyBuilt_ = false;
        if (!mediaReadyBuilt_) {
            UpdateCaches(kMediaReadyFlag);
            mediaReadyBuilt_ = true;
            noWrite_ = false;
        }
        if (dirtyFlags_) SaveCaches();
    } else if (const auto* bundle = dynamic_cast<NotificationBundle*>(&notification)) {
        const DWORD mask = CollectChangedGroups(*bundle);
        if (!mask) return;
        UpdateCaches(mask);
        if (dirtyFlags_) SaveCaches();
    }
}

DWORD MSDeviceCapabilities::CollectChangedGroups(const NotificationBundle& bundle) {
    const SettingsInstanceId current(DataModelIds::kCurrentSettings), offered(DataModelIds::kCapabilities);
    const FeatureChangeId contents(DataModelIds::kContentsChanged), usable(DataModelIds::kUsableChanged);
    DWORD mask = 0;
    for (std::size_t index = 0; index < bundle.GetNumItems(); ++index) {
        const auto* item = dynamic_cast<FeatureChangeNotification*>(&bundle.GetItem(index));
        if (!item) continue;
        const SettingsInstanceId settings = item->GetSettingsInstanceId();
        const FeatureChangeId change = item->GetFeatureChangeId();
        if (settings == current && change == contents) {
            if (item->GetSettingIdWithContext().GetFeatureId() == kStaple) mask |= kStapleFlag;
        } else if (settings == offered && change == usable) {
            if (!(item->GetSettingIdWithContext().GetFeatureId() == kCollation) || !integration_) continue;
            const bool isUsable = integration_->GetServices().TestFeature(kCollation);
            if (isUsable == collationUsable_) continue;
            collationUsable_ = isUsable;
            mask |= kDeviceLimitsFlag;
        } else if (settings == offered && change == contents) {
            mask |= GroupOf(item->GetOriginallyRegisteredSetting().GetFeatureId());
        }
    }
    return mask;
}

void MSDeviceCapabilities::UpdateCaches(DWORD mask) {
    if (!integration_) return;
    TextResourceLoader::Initialize(printer_, false);
    integration_->GetServices().ListFeaturesPresent(FeatureId(DataModelIds::kRootFeature), presentFeatures_);
    std::sort(presentFeatures_.begin(), presentFeatures_.end(),
              [](FeatureId a, FeatureId b) { return a.GetId() < b.GetId(); });
    for (const DWORD index : {2, 6, 35, 29, 14, 32, 13, 30}) {
        const CapabilityGroup& group = *FindCapabilityGroup(index);
        if ((mask & group.flag) != group.flag) continue;
        std::optional<ByteBuffer>& blob = BlobOf(group);
        blob = BuildGroup(group);
        DWORD& known = knownCheckWords_[static_cast<std::size_t>(group.id)];
        const DWORD check = blob ? privateblock::ReadDword(blob->getLpbyte() + group.checkWordOffset) : known + 1;
        if (check == known && (noWrite_ || IsStored(group))) continue;
        if (blob) known = check;
        dirtyFlags_ |= group.flag;
    }
    presentFeatures_.clear();
}

// Whether the registry holds the group's blob; one that vanished or was damaged since it was read is to be written
// again.
bool MSDeviceCapabilities::IsStored(const CapabilityGroup& group) {
    ByteBuffer value;
    return !cache_ || (cache_->GetCachedBytesValue(group.valueName, value) && value == *BlobOf(group));
}

bool MSDeviceCapabilities::IsPresent(DWORD feature) const {
    return std::binary_search(presentFeatures_.begin(), presentFeatures_.end(), FeatureId(feature),
                              [](FeatureId a, FeatureId b) { return a.GetId() < b.GetId(); });
}

bool MSDeviceCapabilities::SaveCaches() {
    bool all = true;
    if (!noWrite_) {
        for (const DWORD index : {2, 6, 35, 29, 14, 32, 30, 13}) {
            const CapabilityGroup& group = *FindCapabilityGroup(index);
            if ((dirtyFlags_ & group.flag) != group.flag) continue;
            const std::optional<ByteBuffer>& blob = BlobOf(group);
            all &= blob && cache_ && cache_->SetCachedValue(group.valueName, *blob, false);
        }
        if (all && cache_) all = cache_->SetCachedValue(kCapsFlagsValue, static_cast<LONG>(dirtyFlags_), false);
        if (dirtyFlags_) Printer(printer_).ClearDevmode1stLevelCache();
    }
    dirtyFlags_ = 0;
    return all;
}
