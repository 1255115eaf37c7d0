// UserPreferenceVerticalFeature: reading the protected strings from the user's registry, and saving all preferences.
#include "userpreferences.h"

#include "userpreferencefeature.h"

#include <mvutil/dataencrypter.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/user.h>

#include <cstring>

using namespace userpreferences;

namespace {

constexpr std::size_t kShortestString = 4;
constexpr std::size_t kShortestStringOfShortFamilies = 1;

bool HasSlot(DWORD family) {
    return family >= DataModelIds::kControllerFamily8430 && family <= DataModelIds::kControllerFamily8434;
}

CXString SlotName(const WCHAR* prefix, DWORD family) {
    return MorvaneUtilities::SafeFormatString(W("%s%u"), prefix, family);
}

// The text of the slot; empty when there is none, it cannot be read, or it is no number of that length.
CXString ReadProtectedString(const WCHAR* prefix, DWORD family, std::size_t shortest) {
    ByteBuffer bytes;
    if (!User::GetUserDataBytesFromRegistry(kKey, SlotName(prefix, family), bytes)) return CXString();
    try {
        CXString text = DataEncrypter::DecryptString(bytes);
        if (text.GetLength() >= shortest && text.IsContainNumericCharsOnly()) return text;
    } catch (const ExceptionDataEncrypterFailure&) {
        // Another user's, another machine's, or damaged: nothing that could be shown.
    }
    return CXString();
}

}  // namespace

void UserPreferenceVerticalFeature::ReadProtectedStrings() {
    protectedString_ = CXString();
    secondProtectedString_ = CXString();
    protectedStringTime_ = {};
    if (!HasSlot(controllerFamily_)) return;
    const bool takesShort = controllerFamily_ == DataModelIds::kControllerFamily8432 ||
                            controllerFamily_ == DataModelIds::kControllerFamily8433;
    protectedString_ = ReadProtectedString(kProtectedValue, controllerFamily_,
                                           takesShort ? kShortestStringOfShortFamilies : kShortestString);
    ByteBuffer time;
    if (User::GetUserDataBytesFromRegistry(kKey, SlotName(kProtectedTimeValue, controllerFamily_), time) &&
        time.getDword() == sizeof(protectedStringTime_))
        std::memcpy(&protectedStringTime_, time.getLpbyte(), sizeof(protectedStringTime_));
    if (controllerFamily_ == DataModelIds::kControllerFamily8433)
        secondProtectedString_ =
            ReadProtectedString(kSecondProtectedValue, controllerFamily_, kShortestStringOfShortFamilies);
}

void UserPreferenceVerticalFeature::Save() {
    for (OptionPreference& option : options_) {
        const DWORD value = services_->GetOptionFeature(FeatureId(option.feature)).GetValue().GetValueEnum();
        if (value == option.kept) continue;
        User::StoreUserDataLongInRegistry(kKey, option.value, static_cast<LONG>(value));
        option.kept = value;
    }
    LONG integer = integer_;
    services_->GetIntegerFeature(FeatureId(facts::feature::kUserInteger))
        .GetValue(integer, DataModelIds::kCurrentValue);
    if (integer != integer_) {
        User::StoreUserDataLongInRegistry(kKey, kIntegerValue, integer);
        integer_ = integer;
    }
    if (IsSupported(facts::feature::kCompanion)) SaveMask();
    for (Identification& identification : identifications_) SaveIdentification(identification);
    SaveProtectedString(facts::feature::kProtectedString, kProtectedValue, true);
    SaveProtectedString(facts::feature::kSecondProtectedString, kSecondProtectedValue, false);
}

void UserPreferenceVerticalFeature::SaveMask() {
    LONG mask = 0;
    for (const MaskBit& bit : kMaskBits) {
        bool value = false;
        services_->GetBooleanFeature(FeatureId(bit.feature)).GetValue(value, DataModelIds::kCurrentValue);
        if (value) mask |= bit.bit;
    }
    const DWORD companion =
        services_->GetOptionFeature(FeatureId(facts::feature::kCompanionPreference)).GetValue().GetValueEnum();
    User::StoreUserDataLongInRegistry(kKey, kMaskValue, mask);
    User::StoreUserDataLongInRegistry(kKey, kCompanionValue, static_cast<LONG>(companion));
}

void UserPreferenceVerticalFeature::SaveIdentification(Identification& identification) {
    bool isSystemText = true;
    services_->GetBooleanFeature(FeatureId(identification.systemFeature))
        .GetValue(isSystemText, DataModelIds::kCurrentValue);
    CXString text;
    if (!isSystemText)
        services_->GetStringFeature(FeatureId(identification.textFeature)).GetValue(text, DataModelIds::kCurrentValue);
    identification.kind = isSystemText ? kSystemText : kCustomText;
    identification.text = text;
    User::StoreUserDataLongInRegistry(kKey, identification.kindValue, identification.kind);
    User::StoreUserDataStringInRegistry(kKey, identification.textValue, text);
}

void UserPreferenceVerticalFeature::SaveProtectedString(DWORD feature, const WCHAR* valuePrefix, bool withTime) {
    const DWORD family =
        services_->GetOptionFeature(FeatureId(facts::feature::kControllerFamily)).GetValue().GetValueEnum();
    CXString text;
    if (!HasSlot(family) || !IsSupported(feature) ||
        !services_->GetStringFeature(FeatureId(feature)).GetValue(text, DataModelIds::kCurrentValue))
        return;
    text.SetSecret();
    ByteBuffer bytes;
    try {
        DataEncrypter::EncryptString(text, bytes);
    } catch (const ExceptionDataEncrypterFailure&) {
        return;  // rather not remembered than in the clear
    }
    User::StoreUserDataBytesInRegistry(kKey, SlotName(valuePrefix, family), bytes);
    if (!withTime) return;
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    static_assert(sizeof(now) == 8);
    User::StoreUserDataBytesInRegistry(kKey, SlotName(kProtectedTimeValue, family), ByteBuffer(&now, sizeof(now)));
}
