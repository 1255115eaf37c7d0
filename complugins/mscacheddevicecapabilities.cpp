// MsCachedDeviceCapabilities: the view of a printer's capability caches that a conversion holds for one call.
#include <mscacheddevicecapabilities.h>

#include <msdevicecapabilities.h>

MsCachedDeviceCapabilities::MsCachedDeviceCapabilities(DEVMODEW* devmode)
    : devmode_(devmode), capabilities_(std::make_unique<MSDeviceCapabilities>()) {}

MsCachedDeviceCapabilities::~MsCachedDeviceCapabilities() = default;

const std::vector<_tag_FormsInfoRec>& MsCachedDeviceCapabilities::GetPaperDatabaseCachedDeviceCapabilitiesVector(
    HANDLE printer) {
    if (!printer || printer != printerOfPapers_) {
        const HRESULT hr = capabilities_->GetPaperDatabaseCachedDeviceCapabilitiesVector(printer, devmode_, papers_);
        printerOfPapers_ = SUCCEEDED(hr) ? printer : nullptr;
    }
    return papers_;
}

std::vector<_tag_ResolutionInfoRec> MsCachedDeviceCapabilities::GetResolutionEnumsCachedDeviceCapabilitiesVector(
    HANDLE printer) {
    std::vector<_tag_ResolutionInfoRec> records;
    capabilities_->GetResolutionEnumsCachedDeviceCapabilitiesVector(printer, devmode_, records);
    return records;
}
