// MSDeviceCapabilities: the device capability caches that the driver family keeps for each printer, and the data source
// that rebuilds them from a data model.
#pragma once

#include <capabilitycachereader.h>

#include <mvcore/featureservices.h>
#include <mvutil/datasource.h>
#include <mvutil/observer.h>

#include <vector>

class NotificationBundle;

// Reads the caches as CapabilityCacheReader does. Held by a data-model manager, it teaches the model the printer's
// forms and builds the caches anew whenever what they say changes; it must then outlive the manager. For one thread at
// a time.
class MSDeviceCapabilities : public IObserver, public DataSource {
public:
    MSDeviceCapabilities();
    ~MSDeviceCapabilities() override;
    MSDeviceCapabilities(const MSDeviceCapabilities&) = delete;
    MSDeviceCapabilities& operator=(const MSDeviceCapabilities&) = delete;

    // Binds to a printer; another one than before drops what was read. The handle stays the caller's. A handle that is
    // null or all ones throws ExceptionInvalidPrinterHandle. noWrite keeps the caches as they are in the registry.
    void Initialize(HANDLE printer, bool noWrite);

    // The paper sizes, and the resolutions, in the cache's order. The vector is empty unless the call succeeds: it
    // answers CapabilityCacheReader::kPaperDatabaseRead, and S_OK; E_FAIL when the printer is not fully installed or
    // there is no cache. Records that the cache counts but does not hold are left out, and names always end. Exceptions
    // are reported, not thrown.
    HRESULT GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                           std::vector<_tag_FormsInfoRec>& records) {
        return caches_.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer, devmode, records);
    }
    HRESULT GetResolutionEnumsCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                             std::vector<_tag_ResolutionInfoRec>& records) {
        return caches_.GetResolutionEnumsCachedDeviceCapabilitiesVector(printer, devmode, records);
    }

    // Reads the registry's blob of the group that serves a DeviceCapabilitiesW index. E_NOTIMPL: the printer is not
    // fully installed. E_FAIL: there is none, or it is too short, or (paper, with validation) it was made for other
    // forms. S_OK also for an index that needs no cache.
    HRESULT LoadCache(DWORD index, bool validate) { return caches_.LoadCache(index, validate); }
    // With validation; E_NOTIMPL as above, E_FAIL when any group failed, else S_OK.
    HRESULT LoadAllCaches() { return caches_.LoadAllCaches(); }

    // CRC-32 over the current user's custom paper sizes; the bare start value in the spooler and the filter pipeline.
    DWORD GetCustomFormsCRC() { return caches_.GetCustomFormsCRC(); }

    // Offers the paper, bin, media, device limit and resolution blobs to the sink as items of the device-capabilities
    // namespace, each under its index. Groups without a cache, or without room, are left out. False when one could not
    // be framed; those behind it are then not offered.
    bool ExportCachesToDevmode(AttributeBytesSink& sink) { return caches_.ExportCachesToDevmode(sink); }

    const CapabilityCacheReader& GetCaches() const noexcept { return caches_; }

    // ---- as observer and data source of a data model ----------------------------------------------------------------

    void OnNotification(INotification& notification) override;
    CXString GetObserverClassNameHeirarchy() const override { return W("IObserver::MSDeviceCapabilities"); }
    void RegisterForIntegrateSourceDataChanges(DataModelObserverInterfaces& observers) override;
    void IntegrateSourceData(IntegrationInterface& integration) override;
    void RegisterForCurrentSettingsChanges(DataModelObserverInterfaces& observers) override;
    void SetFeatureServices(FeatureServices& services) override;
    bool ExportSourceData(AttributeBytesSink& sink) override { return ExportCachesToDevmode(sink); }
    void Dump() const override {}

    // Builds the blobs of the groups whose flags are in the mask; those that differ from what was last read or built,
    // or from what the registry holds, are dirty from now on. Does nothing before IntegrateSourceData.
    void UpdateCaches(DWORD mask);
    // Writes the dirty blobs to the registry, unless writes are suppressed, and forgets that they were dirty. Whether
    // all were written; the flags of the groups are written only then.
    bool SaveCaches();
    DWORD GetDirtyFlags() const noexcept { return dirtyFlags_; }

private:
    void UpdateAndSave(DWORD mask);
    void MapPrinterForms(IntegrationServices& services) const;
    DWORD CollectChangedGroups(const NotificationBundle& bundle);

    CapabilityCacheReader caches_;
    IntegrationInterface* integration_ = nullptr;  // the model's, from IntegrateSourceData on
    FeatureServices* services_ = nullptr;          // the model's, from SetFeatureServices on
    DWORD dirtyFlags_ = 0;
    bool isWriteSuppressed_ = false;
    bool isCollationUsable_ = false;
    bool isMediaReadyBuilt_ = false;
};
