// MSDeviceCapabilities: the device capability caches that the driver family keeps for each printer, and the data source
// that rebuilds them from a data model.
#pragma once

#include <capabilitygroups.h>

#include <mvcore/featureservices.h>
#include <mvutil/datacache.h>
#include <mvutil/datasource.h>
#include <mvutil/observer.h>
#include <printsubsystem/capabilityrecords.h>

#include <array>
#include <memory>
#include <optional>
#include <vector>

class NotificationBundle;

// Reads the caches from the registry, under the printer's port, or, in the spooler and the filter pipeline, from the
// private block of a DEVMODE. Held by a data-model manager, it teaches the model the printer's forms and builds the
// caches anew whenever what they hold changes; it must then outlive the manager. For one thread at a time.
class MSDeviceCapabilities : public IObserver, public DataSource {
public:
    MSDeviceCapabilities();
    ~MSDeviceCapabilities() override;
    MSDeviceCapabilities(const MSDeviceCapabilities&) = delete;
    MSDeviceCapabilities& operator=(const MSDeviceCapabilities&) = delete;

    static constexpr HRESULT kPaperDatabaseRead = 0x0004DC01;

    // Binds to a printer; another one than before drops what was read. The handle stays the caller's. A handle that is
    // null or all ones throws ExceptionInvalidPrinterHandle. noWrite keeps the caches as they are in the registry.
    void Initialize(HANDLE printer, bool noWrite);

    // The paper sizes, and the resolutions, in the cache's order. The vector is empty unless the call succeeds: it
    // answers kPaperDatabaseRead, and S_OK; E_FAIL when the printer is not fully installed or there is no cache.
    // Records that the cache counts but does not hold are left out, and names always end. Exceptions are reported, not
    // thrown.
    HRESULT GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                           std::vector<_tag_FormsInfoRec>& records);
    HRESULT GetResolutionEnumsCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                             std::vector<_tag_ResolutionInfoRec>& records);

    // Reads the registry's blob of the group that serves a DeviceCapabilitiesW index. E_NOTIMPL: the printer is not
    // fully installed. E_FAIL: there is none, or it is too short, or (paper, with validation) it was made for other
    // forms. S_OK also for an index that needs no cache.
    HRESULT LoadCache(DWORD index, bool validate);
    HRESULT LoadAllCaches();  // with validation; E_NOTIMPL as above, E_FAIL when any group failed, else S_OK

    // CRC-32 over the printer's forms.
    DWORD ComputeFormsDatabaseCRC() const;
    // CRC-32 over the current user's custom paper sizes; the bare start value in the spooler and the filter pipeline.
    DWORD GetCustomFormsCRC();

    // Offers the paper, bin, media, device limit and resolution blobs to the sink as items of the device-capabilities
    // namespace, each under its index. Groups without a cache, or without room, are left out. False when one could not
    // be framed; those behind it are then not offered.
    bool ExportCachesToDevmode(AttributeBytesSink& sink);

    // ---- as observer and data source of a data model
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

    DWORD GetLoadedFlags() const noexcept { return loadedFlags_; }  // of the groups that LoadAllCaches got
    bool IsPaperCacheStale() const noexcept { return paperCacheStale_; }
    // Whether a blob from a DEVMODE did not have the CRC that it came with; it is used all the same.
    bool HasDevmodeCrcMismatch() const noexcept { return devmodeCrcMismatch_; }

private:
    enum SetUpStep : DWORD {
        kPrinterNameRead = 1,
        kPortRead = 2,
        kFramingStartRead = 4,
        kCacheOpen = 8,
        kContextNoted = 16,
        kDriverInstalled = 32,
    };

    bool EnsureInitialized(bool useLocalMachineHive);
    void SetUp();

    std::optional<ByteBuffer>& BlobOf(const CapabilityGroup& group);
    bool LoadFromRegistry(const CapabilityGroup& group);
    bool LoadFromDevmode(const CapabilityGroup& group, DWORD item, DEVMODEW* devmode);
    const ByteBuffer* GetBlobForLookup(DWORD item, HANDLE printer, DEVMODEW* devmode);
    bool FrameForDevmode(const ByteBuffer& blob, ByteBuffer& item) const;

    void MapPrinterForms(IntegrationServices& services) const;
    DWORD CollectChangedGroups(const NotificationBundle& bundle);
    bool IsStored(const CapabilityGroup& group);
    bool IsPresent(DWORD feature) const;
    CXString GetValueText(const ValueId& value) const;
    // Null when the group cannot be built.
    std::optional<ByteBuffer> BuildGroup(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildPaper(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildBins(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildMedia(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildMediaReady(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildDependentFiles(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildDeviceLimits(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildStaple(const CapabilityGroup& group);
    std::optional<ByteBuffer> BuildResolutions(const CapabilityGroup& group);
    std::vector<_tag_FormsInfoRec> MakePaperRecords();
    std::vector<CXString> GetLoadedPaperNames(const ListOfFeaturesRef& tray);

    HANDLE printer_ = nullptr;
    CXString printerName_;
    CXString port_;
    HKEY hive_ = HKEY_LOCAL_MACHINE;
    DWORD setUp_ = 0;  // SetUpStep bits
    std::unique_ptr<DataCache> cache_;
    std::array<std::optional<ByteBuffer>, kCapabilityGroupCount> blobs_;
    std::array<DWORD, kCapabilityGroupCount> knownCheckWords_{};
    DWORD loadedFlags_ = 0;
    DWORD framingStart_ = 0;
    DWORD customFormsCrc_ = kCapabilityCacheCrcStart;
    bool noWrite_ = false;
    bool spoolerContext_ = false;
    bool paperCacheStale_ = true;
    bool devmodeCrcMismatch_ = false;

    IntegrationInterface* integration_ = nullptr;  // the model's, from IntegrateSourceData on
    FeatureServices* services_ = nullptr;          // the model's, from SetFeatureServices on
    std::vector<FeatureId> presentFeatures_;       // ascending; only while the caches are built
    DWORD dirtyFlags_ = 0;
    bool collationUsable_ = false;
    bool mediaReadyBuilt_ = false;
};
