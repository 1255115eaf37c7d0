// UserPreferenceVerticalFeature: what is declared, restored and reported.
#include "userpreferencefeature.h"

#include "userpreferences.h"

#include <facts/values.h>
#include <mvcore/integration.h>
#include <mvutil/operatingsystem.h>

#include <algorithm>
#include <vector>

using namespace userpreferences;

namespace {

namespace feature = facts::feature;
namespace value = facts::value;

constexpr int kObserverNumber = 26012;
constexpr int kAddValues = 1;

constexpr DWORD kOwnFeatures[] = {feature::kUnits,
                                  feature::kPaperUnits,
                                  feature::kUserPreference,
                                  feature::kTitleIsOfJob,
                                  feature::kSenderIsOfJob,
                                  feature::kRecipientIsOfJob,
                                  feature::kTitleIsRemembered,
                                  feature::kSenderIsRemembered,
                                  feature::kRecipientIsRemembered,
                                  feature::kUserText,
                                  feature::kUserSwitch,
                                  feature::kUserInteger};
constexpr DWORD kUserFeatures[] = {feature::kUnits, feature::kPaperUnits, feature::kTitleIsRemembered,
                                   feature::kSenderIsRemembered, feature::kRecipientIsRemembered};

std::vector<FeatureId> MakeIds(std::span<const DWORD> numbers) {
    std::vector<FeatureId> ids;
    for (const DWORD number : numbers) ids.emplace_back(number);
    for (DWORD number = feature::kFirstMaskedPreference; number <= feature::kCompanionPreference; ++number)
        ids.emplace_back(number);
    return ids;
}

void OfferValues(IntegrationServices& services, DWORD feature, DWORD first, DWORD second) {
    services.AddOptionValues(FeatureId(feature), {ValueId(first), ValueId(second)}, kAddValues);
}

DWORD UnitsOf(bool inMillimetres) {
    return inMillimetres ? DataModelIds::kUnitsMillimetres : DataModelIds::kUnitsInches;
}

}  // namespace

UserPreferenceVerticalFeature::Identification UserPreferenceVerticalFeature::MakeIdentification(
    DWORD textFeature, DWORD systemFeature, DWORD restoreFeature, const WCHAR* kindValue, const WCHAR* textValue) {
    return {textFeature, systemFeature, restoreFeature, kindValue, textValue};
}

UserPreferenceVerticalFeature::UserPreferenceVerticalFeature(DWORD controllerFamily, XDevmode&,
                                                             const CXString& documentName)
    : controllerFamily_(controllerFamily),
      options_{{{feature::kUnits, W("XUnits"), DataModelIds::kUnitsOfSystem},
                {feature::kPaperUnits, W("XPaperUnits"), DataModelIds::kUnitsOfSystem},
                {feature::kUserPreference, W("XOption50"), value::kSecondUserPreference}}},
      identifications_{MakeIdentification(feature::kTitle, feature::kTitleIsOfJob, feature::kTitleIsRemembered,
                                          W("XTitleKind"), W("XTitle")),
                       MakeIdentification(feature::kSender, feature::kSenderIsOfJob, feature::kSenderIsRemembered,
                                          W("XSenderKind"), W("XSender")),
                       MakeIdentification(feature::kRecipient, feature::kRecipientIsOfJob,
                                          feature::kRecipientIsRemembered, W("XRecipientKind"), W("XRecipient"))},
      integer_(kIntegerDefault),
      mask_(kWholeMask),
      companion_(value::kFirstCompanion),
      documentName_(documentName) {
    ReadProtectedStrings();
}

UserPreferenceVerticalFeature::~UserPreferenceVerticalFeature() = default;

void UserPreferenceVerticalFeature::IntegrateSourceData(IntegrationInterface& integration) {
    IntegrationServices& services = integration.GetServices();
    services.DeclareFeaturesPresent(FeatureId(feature::kRoot), MakeIds(kOwnFeatures));
    services.DeclareFeaturesOfUser(MakeIds(kUserFeatures));

    OfferValues(services, feature::kPaperUnits, DataModelIds::kUnitsMillimetres, DataModelIds::kUnitsInches);
    OfferValues(services, feature::kUnits, DataModelIds::kUnitsMillimetres, DataModelIds::kUnitsInches);
    OfferValues(services, feature::kCompanionPreference, value::kFirstCompanion, value::kSecondCompanion);
    OfferValues(services, feature::kUserPreference, value::kFirstUserPreference, value::kSecondUserPreference);

    ListOfFeaturesRef root;
    services.GetRootListOfFeatures(root);
    const auto setOption = [&](DWORD feature, DWORD value) {
        root.GetOptionFeature(FeatureId(feature)).SetDefault(ValueId(value));
    };
    const auto setBoolean = [&](DWORD feature, bool value) {
        root.GetBooleanFeature(FeatureId(feature)).SetDefault(value);
    };
    setOption(feature::kPaperUnits, UnitsOf(!OperatingSystem::UseEnglishPaperSizes()));
    setOption(feature::kUnits, UnitsOf(OperatingSystem::IsMetricCountry()));
    setOption(feature::kUserPreference, value::kSecondUserPreference);
    for (const DWORD id : {feature::kTitleIsOfJob, feature::kSenderIsOfJob, feature::kRecipientIsOfJob})
        setBoolean(id, true);
    for (const DWORD id : {feature::kTitleIsRemembered, feature::kSenderIsRemembered, feature::kRecipientIsRemembered})
        setBoolean(id, false);
    root.GetStringFeature(FeatureId(feature::kUserText)).SetDefault(CXString());
    for (DWORD id = feature::kFirstMaskedPreference; id < feature::kCompanionPreference; ++id) setBoolean(id, true);
    setOption(feature::kCompanionPreference, value::kFirstCompanion);
    root.GetIntegerFeature(FeatureId(feature::kUserInteger)).SetDefault(kIntegerDefault);
}

void UserPreferenceVerticalFeature::SetFeatureServices(FeatureServices& services) {
    services_ = &services;
    for (const OptionPreference& option : options_) {
        const bool isUnset = option.feature != feature::kUserPreference &&
                             (option.kept == DataModelIds::kUnitsOfSystem || option.kept == DataModelIds::kNotSet);
        if (!isUnset) services.GetOptionFeature(FeatureId(option.feature)).SetValue(ValueId(option.kept));
    }
    services.GetIntegerFeature(FeatureId(feature::kUserInteger)).SetValue(integer_);
    services.GetStringFeature(FeatureId(feature::kUserText)).SetValue(CXString());
    SetProtectedString(feature::kProtectedString, protectedString_);
    if (!IsSupported(feature::kPreferencesAreUsed)) return;
    for (const MaskBit& bit : kMaskBits)
        services.GetBooleanFeature(FeatureId(bit.feature)).SetValue((mask_ & bit.bit) != 0);
    services.GetOptionFeature(FeatureId(feature::kCompanionPreference)).SetValue(ValueId(companion_));
    services.GetOptionFeature(FeatureId(feature::kCompanion)).SetValue(ValueId(companion_));
}

void UserPreferenceVerticalFeature::RegisterForCurrentSettingsChanges(DataModelObserverInterfaces& observers) {
    for (const DWORD id : {feature::kProtectedString, feature::kSecondProtectedString, feature::kControllerFamily})
        observers.RegisterFeatureChangeObserver(this, SettingsInstanceId(DataModelIds::kCurrentSettings), FeatureId(id),
                                                FeatureChangeId(DataModelIds::kContentsChanged), kObserverNumber);
}

void UserPreferenceVerticalFeature::UnregisterForCurrentSettingsChanges(DataModelObserverInterfaces& observers) {
    observers.UnregisterFeatureChangeObserver(this);
}

bool UserPreferenceVerticalFeature::ExportSourceData(AttributeBytesSink&) { return false; }

void UserPreferenceVerticalFeature::OnNotification(INotification& notification) {
    if (!services_) return;
    if (const auto* event = dynamic_cast<EventNotification*>(&notification)) {
        const DWORD id = event->GetEventId().GetId();
        if (id == DataModelIds::kSettingsApplied || id == DataModelIds::kJobPrinted) Save();
    } else if (const auto* bundle = dynamic_cast<NotificationBundle*>(&notification)) {
        for (std::size_t index = 0; index < bundle->GetNumItems(); ++index) {
            const auto* change = dynamic_cast<FeatureChangeNotification*>(&bundle->GetItem(index));
            if (change && change->GetSettingsInstanceId() == SettingsInstanceId(DataModelIds::kCurrentSettings))
                OnSettingChanged(change->GetSettingIdWithContext().GetFeatureId().GetId());
        }
    }
}

void UserPreferenceVerticalFeature::OnSettingChanged(DWORD id) {
    if (id == feature::kControllerFamily) {
        const DWORD family =
            services_->GetOptionFeature(FeatureId(feature::kControllerFamily)).GetValue().GetValueEnum();
        if (family == controllerFamily_) return;
        controllerFamily_ = family;
        ReadProtectedStrings();
        SetProtectedString(feature::kProtectedString, protectedString_);
        SetProtectedString(feature::kSecondProtectedString, secondProtectedString_);
        return;
    }
    for (const Identification& identification : identifications_)
        if (identification.textFeature == id) ApplyIdentification(identification);
}

void UserPreferenceVerticalFeature::ApplyIdentification(const Identification& identification) {
    bool restores = false;
    services_->GetBooleanFeature(FeatureId(identification.restoreFeature))
        .GetValue(restores, DataModelIds::kCurrentValue);
    if (!restores) return;
    services_->GetStringFeature(FeatureId(identification.textFeature)).SetValue(identification.text);
    services_->GetBooleanFeature(FeatureId(identification.systemFeature)).SetValue(identification.kind != kCustomText);
}

// One that the feature would cut is dropped: what is left of a number is another number.
void UserPreferenceVerticalFeature::SetProtectedString(DWORD feature, CXString& text) {
    if (!IsSupported(feature)) return;
    const StringFeatureRef reference = services_->GetStringFeature(FeatureId(feature));
    reference.SetValue(text);
    CXString held;
    reference.GetValue(held, DataModelIds::kCurrentValue);
    if (held == text) return;
    text = CXString();
    reference.SetValue(text);
}

bool UserPreferenceVerticalFeature::IsSupported(DWORD feature) {
    return services_->IsFeatureSupported(FeatureId(feature));
}
