// MSDeviceCapabilities: building the capability caches that changed and writing them.
#include <msdevicecapabilities.h>

#include <capabilitycachebuilder.h>

#include <mvutil/printer.h>

MSDeviceCapabilities::MSDeviceCapabilities() = default;
MSDeviceCapabilities::~MSDeviceCapabilities() = default;

void MSDeviceCapabilities::Initialize(HANDLE printer, bool noWrite) {
    caches_.Initialize(printer);
    isWriteSuppressed_ = noWrite;
}

void MSDeviceCapabilities::UpdateCaches(DWORD mask) {
    using enum CapabilityGroupId;
    if (!integration_) return;
    CapabilityCacheBuilder builder(caches_, integration_->GetServices(), services_);
    for (const CapabilityGroupId id :
         {Paper, Bins, Media, MediaReady, DependentFiles, DeviceLimits, Resolutions, Staple}) {
        const CapabilityGroup& group = GetCapabilityGroup(id);
        if ((mask & group.flag) != group.flag) continue;
        const bool isNew = caches_.Hold(group, builder.Build(group));
        if (isNew || !(isWriteSuppressed_ || caches_.IsStored(group))) dirtyFlags_ |= group.flag;
    }
}

bool MSDeviceCapabilities::SaveCaches() {
    using enum CapabilityGroupId;
    bool all = true;
    if (!isWriteSuppressed_) {
        DataCache* const values = caches_.GetValues();
        for (const CapabilityGroupId id :
             {Paper, Bins, Media, MediaReady, DependentFiles, DeviceLimits, Staple, Resolutions}) {
            const CapabilityGroup& group = GetCapabilityGroup(id);
            if ((dirtyFlags_ & group.flag) != group.flag) continue;
            const std::optional<ByteBuffer>& blob = caches_.GetBlob(group);
            all &= blob && values && values->SetCachedValue(group.valueName, *blob, false);
        }
        if (all && values) all = values->SetCachedValue(kCapsFlagsValue, static_cast<LONG>(dirtyFlags_), false);
        if (dirtyFlags_) Printer(caches_.GetPrinter()).ClearDevmode1stLevelCache();
    }
    dirtyFlags_ = 0;
    return all;
}

void MSDeviceCapabilities::UpdateAndSave(DWORD mask) {
    UpdateCaches(mask);
    if (dirtyFlags_) SaveCaches();
}
