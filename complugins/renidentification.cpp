// The identification that a printer's device settings ask of every job.
#include "renidentification.h"

#include "xoempdev.h"

#include <mvutil/attributebytes.h>

namespace {

// Numbers of device settings.
constexpr DWORD kModeSetting = 239;
constexpr DWORD kSourceSetting = 240;
constexpr DWORD kFirstSetting = 244;
constexpr DWORD kSecondSetting = 245;
constexpr DWORD kKindSetting = 246;
constexpr DWORD kFirstOf8433Setting = 441;
constexpr DWORD kFurtherSettings[] = {606, 604, 605};
// Keys of the job's store.
constexpr LONG kFirstItem = 13;
constexpr LONG kSecondItem = 14;
constexpr LONG kKindItem = 15;
constexpr LONG kFurtherItems[] = {25, 26, 27};
constexpr LONG kIdentifiedItem = 29;

constexpr DWORD kModeNone = 7620;
constexpr DWORD kModeOfKinds = 7621;
constexpr DWORD kSourceJob = 7641;
constexpr DWORD kKinds[] = {7680, 7681, 7682};

void ReadFromDevice(AttributeBytesReader& settings, DWORD controllerFamily, IdentificationSettings& identification) {
    settings.GetStringValueFromAttributeBytes(kFirstSetting, identification.first);
    settings.GetStringValueFromAttributeBytes(kSecondSetting, identification.second);
    settings.GetOptionValueFromAttributeBytes(kKindSetting, identification.kind);
    for (std::size_t index = 0; index < identification.further.size(); ++index)
        settings.GetStringValueFromAttributeBytes(kFurtherSettings[index], identification.further[index]);
    if (identification.first.IsEmpty() && controllerFamily == DataModelIds::kControllerFamily8433)
        settings.GetStringValueFromAttributeBytes(kFirstOf8433Setting, identification.first);
}

void ReadFromJob(XOemPdev& pdev, IdentificationSettings& identification) {
    pdev.GetPropertyString(kFirstItem, identification.first);
    pdev.GetPropertyString(kSecondItem, identification.second);
    for (std::size_t index = 0; index < identification.further.size(); ++index)
        pdev.GetPropertyString(kFurtherItems[index], identification.further[index]);
    LONG kind = 0;
    pdev.GetPropertyLong(kKindItem, kind);
    identification.kind = kind >= 0 && kind <= 2 ? kKinds[kind] : DWORD{DataModelIds::kNotSet};
}

}  // namespace

IdentificationSettings ReadIdentificationSettings(AttributeBytesReader& deviceSettings, XOemPdev& pdev,
                                                  DWORD controllerFamily) {
    DWORD mode = 0;
    DWORD source = 0;
    if (!deviceSettings.GetOptionValueFromAttributeBytes(kModeSetting, mode) ||
        !deviceSettings.GetOptionValueFromAttributeBytes(kSourceSetting, source) || mode == kModeNone)
        return {};
    if (mode == kModeOfKinds && source == kSourceJob) {
        LONG identified = 0;
        pdev.GetPropertyLong(kIdentifiedItem, identified);
        if (identified != 0) return {};
    }
    IdentificationSettings identification;
    identification.mode = mode;
    if (source == kSourceJob) {
        ReadFromJob(pdev, identification);
    } else {
        ReadFromDevice(deviceSettings, controllerFamily, identification);
    }
    if (mode != kModeOfKinds) identification.kind = DataModelIds::kNotSet;
    return identification;
}
