// MsCachedDeviceCapabilities: the view of a printer's capability caches that a conversion holds for one call.
#pragma once

#include <printsubsystem/capabilityrecords.h>

#include <memory>
#include <vector>

class MSDeviceCapabilities;

class MsCachedDeviceCapabilities {
public:
    // The DEVMODE of the call, or null when there is none. It stays the caller's.
    explicit MsCachedDeviceCapabilities(DEVMODEW* devmode);
    ~MsCachedDeviceCapabilities();

    // The printer's paper sizes, and its resolutions; empty when they cannot be read. Never throw on a bad printer. The
    // papers are read once for a printer; they are valid until those of another one are asked for.
    const std::vector<_tag_FormsInfoRec>& GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer);
    std::vector<_tag_ResolutionInfoRec> GetResolutionEnumsCachedDeviceCapabilitiesVector(HANDLE printer);
    DEVMODEW* GetDevmode() const noexcept { return devmode_; }

private:
    DEVMODEW* devmode_;
    std::unique_ptr<MSDeviceCapabilities> capabilities_;
    HANDLE printerOfPapers_ = nullptr;
    std::vector<_tag_FormsInfoRec> papers_;
};
