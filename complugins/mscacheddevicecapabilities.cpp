// MsCachedDeviceCapabilities: the view of a printer's capability caches that a conversion holds for one call.
#include <mscacheddevicecapabilities.h>

MsCachedDeviceCapabilities::MsCachedDeviceCapabilities(DEVMODEW* devmode)
    : devmode_(devmode), capabilities_(std::make_unique<MSDeviceCapabilities>()) {}

MsCachedDeviceCapabilities::~MsCachedDeviceCapabilities() = default;

std::vector<_tag_FormsInfoRec> MsCachedDeviceCapabilities::GetPaperDatabaseCachedDeviceCapabilitiesVector(
    HANDLE printer) {
    std::vector<_tag_FormsInfoRec> records;
    capabilities_->GetPaperDatabaseCachedDeviceCapabilitiesVector(printer, devmode_, records);
    return records;
}

std::vector<_tag_ResolutionInfoRec> MsCachedDeviceCapabilities::GetResolutionEnumsCachedDeviceCapabilitiesVector(
    HANDLE printer) {
    std::vector<_tag_ResolutionInfoRec> records;
    capabilities_->GetResolutionEnumsCachedDeviceCapabilitiesVector(printer, devmode_, records);
    return records;
}
