// UserPreferenceVerticalFeature: what is declared, restored and reported.
#include "userpreferencefeature.h"

#include "userpreferences.h"

#include <mvcore/integration.h>
#include <mvutil/operatingsystem.h>

#include <algorithm>
#include <vector>

using namespace userpreferences;

namespace {

constexpr int kObserverNumber = 26012;
constexpr int kAddValues = 1;
constexpr DWORD kUnitsOfPapers = 238;
constexpr DWORD kUnits = 237;
constexpr DWORD kOption50 = 50;
constexpr DWORD kOption50First = 8120;
constexpr DWORD kOption50Second = 8121;
constexpr DWORD kCompanionFirst = 8710;
constexpr DWORD kCompanionSecond = 8711;

constexpr DWORD kOwnFeatures[] = {kUnits, kUnitsOfPapers, kOption50, 438, 439, 440, 473, 472, 471, 441, 442, kInteger};
constexpr DWORD kUserFeatures[] = {kUnits, kUnitsOfPapers, 473, 472, 471};

std::vector<FeatureId> MakeIds(std::span<const DWORD> numbers) {
    std::vector<FeatureId> ids;
    for (const DWORD number : numbers) ids.emplace_back(number);
    for (DWORD number = kFirstOfMask; number <= kCompanion; ++number) ids.emplace_back(number);
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
      options_{{{kUnits, W("XUnits"), DataModelIds::kUnitsOfSystem},
                {kUnitsOfPapers, W("XPaperUnits"), DataModelIds::kUnitsOfSystem},
                {kOption50, W("XOption50"), kOption50Second}}},
      identifications_{MakeIdentification(78, 438, 473, W("XTitleKind"), W("XTitle")),
                       MakeIdentification(82, 439, 472, W("XSenderKind"), W("XSender")),
                       MakeIdentification(83, 440, 471, W("XRecipientKind"), W("XRecipient"))},
      integer_(kIntegerDefault),
      mask_(kWholeMask),
      companion_(kCompanionFirst),
      documentName_(documentName) {
    ReadProtectedStrings();
}

UserPreferenceVerticalFeature::~UserPreferenceVerticalFeature() = default;

void UserPreferenceVerticalFeature::IntegrateSourceData(IntegrationInterface& integration) {
    IntegrationServices& services = integration.GetServices();
    services.DeclareFeaturesPresent(FeatureId(DataModelIds::kRootFeature), MakeIds(kOwnFeatures));
    services.DeclareFeaturesOfUser(MakeIds(kUserFeatures));

    OfferValues(services, kUnitsOfPapers, DataModelIds::kUnitsMillimetres, DataModelIds::kUnitsInches);
    OfferValues(services, kUnits, DataModelIds::kUnitsMillimetres, DataModelIds::kUnitsInches);
    OfferValues(services, kCompanion, kCompanionFirst, kCompanionSecond);
    OfferValues(services, kOption50, kOption50First, kOption50Second);

    ListOfFeaturesRef root;
    services.GetRootListOfFeatures(root);
    const auto setOption = [&](DWORD feature, DWORD value) {
        root.GetOptionFeature(FeatureId(feature)).SetDefault(ValueId(value));
    };
    const auto setBoolean = [&](DWORD feature, bool value) {
        root.GetBooleanFeature(FeatureId(feature)).SetDefault(value);
    };
    setOption(kUnitsOfPapers, UnitsOf(!OperatingSystem::UseEnglishPaperSizes()));
    setOption(kUnits, UnitsOf(OperatingSystem::IsMetricCountry()));
    setOption(kOption50, kOption50Second);
    for (const DWORD feature : {438, 439, 440}) setBoolean(feature, true);
    for (const DWORD feature : {473, 472, 471}) setBoolean(feature, false);
    root.GetStringFeature(FeatureId(kText)).SetDefault(CXString());
    for (DWORD feature = kFirstOfMask; feature < kCompanion; ++feature) setBoolean(feature, true);
    setOption(kCompanion, kCompanionFirst);
    root.GetIntegerFeature(FeatureId(kInteger)).SetDefault(kIntegerDefault);
}

void UserPreferenceVerticalFeature::SetFeatureServices(FeatureServices& services) {
    services_ = &services;
    for (const OptionPreference& option : options_) {
        const bool isUnset = option.feature != kOption50 &&
                             (option.kept == DataModelIds::kUnitsOfSystem || option.kept == DataModelIds::kNotSet);
        if (!isUnset) services.GetOptionFeature(FeatureId(option.feature)).SetValue(ValueId(option.kept));
    }
    services.GetIntegerFeature(FeatureId(kInteger)).SetValue(integer_);
    services.GetStringFeature(FeatureId(kText)).SetValue(CXString());
    SetProtectedString(kProtectedString, protectedString_);
    if (!IsSupported(kMaskSwitch)) return;
    for (const MaskBit& bit : kMaskBits)
        services.GetBooleanFeature(FeatureId(bit.feature)).SetValue((mask_ & bit.bit) != 0);
    services.GetOptionFeature(FeatureId(kCompanion)).SetValue(ValueId(companion_));
    services.GetOptionFeature(FeatureId(kCompanionOfDevice)).SetValue(ValueId(companion_));
}

void UserPreferenceVerticalFeature::RegisterForCurrentSettingsChanges(DataModelObserverInterfaces& observers) {
    for (const DWORD feature : {kProtectedString, kSecondProtectedString, kControllerFamily})
        observers.RegisterFeatureChangeObserver(this, SettingsInstanceId(DataModelIds::kCurrentSettings),
                                                FeatureId(feature), FeatureChangeId(DataModelIds::kContentsChanged),
                                                kObserverNumber);
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

void UserPreferenceVerticalFeature::OnSettingChanged(DWORD feature) {
    if (feature == kControllerFamily) {
        const DWORD family = services_->GetOptionFeature(FeatureId(kControllerFamily)).GetValue().GetValueEnum();
        if (family == controllerFamily_) return;
        controllerFamily_ = family;
        ReadProtectedStrings();
        SetProtectedString(kProtectedString, protectedString_);
        SetProtectedString(kSecondProtectedString, secondProtectedString_);
        return;
    }
    for (const Identification& identification : identifications_)
        if (identification.textFeature == feature) ApplyIdentification(identification);
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
