// MSDeviceCapabilities: data source and observer of a data model.
#include <msdevicecapabilities.h>

#include <facts/features.h>
#include <mvcore/notifications.h>
#include <mvutil/cforms.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/textresources.h>

#include <algorithm>

namespace {

// Kinds of observer, by the model's numbers.
constexpr int kFeatureObserver = 26014;
constexpr int kEventObserver = 26016;

constexpr DWORD FlagOf(CapabilityGroupId id) { return GetCapabilityGroup(id).flag; }

// What is built once the model offers its values, and once it has its settings.
constexpr DWORD kListGroups =
    FlagOf(CapabilityGroupId::Paper) | FlagOf(CapabilityGroupId::Bins) | FlagOf(CapabilityGroupId::Resolutions);
constexpr DWORD kSettingsGroups = FlagOf(CapabilityGroupId::Media) | FlagOf(CapabilityGroupId::DependentFiles) |
                                  FlagOf(CapabilityGroupId::DeviceLimits);

namespace feature = facts::feature;

constexpr FeatureId kCollation(feature::kCollation), kStapler(feature::kStapler), kResolution(feature::kResolution);
constexpr FeatureId kPageSize(feature::kPageSize), kMediaType(feature::kMediaType), kPaper(feature::kPaper);
constexpr FeatureId kPaperSource(feature::kPaperSource);

// The group that follows what a feature offers.
CapabilityGroupId GroupOf(FeatureId registered) {
    if (registered == kResolution) return CapabilityGroupId::Resolutions;
    if (registered == kPageSize) return CapabilityGroupId::Paper;
    if (registered == kMediaType) return CapabilityGroupId::Media;
    if (registered == kPaperSource) return CapabilityGroupId::Bins;
    return CapabilityGroupId::DeviceLimits;
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
    isCollationUsable_ = integration.GetServices().TestFeature(kCollation);
    if (LoadAllCaches() != E_NOTIMPL) MapPrinterForms(integration.GetServices());
}

void MSDeviceCapabilities::MapPrinterForms(IntegrationServices& services) const {
    MediaHandler& media = services.GetMediaHandler();
    const ValueId units(DataModelIds::kUnitsOfSystem);
    std::vector<ValueId> taught;
    const CForms forms(caches_.GetPrinter(), true);
    for (const _MVN_FORM_INFO& form : forms.GetForms()) {
        if (form.formIndex == DMPAPER_TABLOID || form.width > form.length) continue;
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
    UpdateAndSave(kListGroups);
    const auto observe = [&](DWORD settings, const FeatureIdWithContext& observed) {
        observers.RegisterFeatureChangeObserver(this, SettingsInstanceId(settings), observed,
                                                FeatureChangeId(DataModelIds::kContentsChanged), kFeatureObserver);
    };
    const FeatureIdWithContext offered[] = {
        {kPaper, kPageSize},        kPaperSource, {kPaper, kMediaType}, kCollation, FeatureId(feature::kColor),
        FeatureId(feature::kSides), kResolution};
    for (const FeatureIdWithContext& changed : offered) observe(DataModelIds::kCapabilities, changed);
    observe(DataModelIds::kCurrentSettings, kStapler);
}

void MSDeviceCapabilities::SetFeatureServices(FeatureServices& services) {
    services_ = &services;
    UpdateAndSave(kSettingsGroups);
    for (const DWORD event :
         {DataModelIds::kLoadedMediaChanged, DataModelIds::kSettingsApplied, DataModelIds::kConfigurationRead})
        services.RegisterEventObserver(this, EventId(event), kEventObserver);
}

void MSDeviceCapabilities::OnNotification(INotification& notification) {
    if (const auto* event = dynamic_cast<EventNotification*>(&notification)) {
        if (event->GetEventId() == EventId(DataModelIds::kLoadedMediaChanged)) isMediaReadyBuilt_ = false;
        if (!isMediaReadyBuilt_) {
            UpdateCaches(FlagOf(CapabilityGroupId::MediaReady));
            isMediaReadyBuilt_ = true;
            isWriteSuppressed_ = false;
        }
        if (dirtyFlags_) SaveCaches();
    } else if (const auto* bundle = dynamic_cast<NotificationBundle*>(&notification)) {
        const DWORD mask = CollectChangedGroups(*bundle);
        if (mask) UpdateAndSave(mask);
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
            if (item->GetSettingIdWithContext().GetFeatureId() == kStapler) mask |= FlagOf(CapabilityGroupId::Staple);
        } else if (settings == offered && change == usable) {
            if (!(item->GetSettingIdWithContext().GetFeatureId() == kCollation) || !integration_) continue;
            const bool isUsable = integration_->GetServices().TestFeature(kCollation);
            if (isUsable == isCollationUsable_) continue;
            isCollationUsable_ = isUsable;
            mask |= FlagOf(CapabilityGroupId::DeviceLimits);
        } else if (settings == offered && change == contents) {
            mask |= FlagOf(GroupOf(item->GetOriginallyRegisteredSetting().GetFeatureId()));
        }
    }
    return mask;
}
