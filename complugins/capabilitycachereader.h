// CapabilityCacheReader: the device capability caches that the driver family keeps for each printer, as they are read.
#pragma once

#include <capabilitygroups.h>

#include <mvutil/bytebuffer.h>
#include <mvutil/cxstring.h>
#include <mvutil/datacache.h>

#include <array>
#include <memory>
#include <optional>
#include <vector>

class AttributeBytesSink;

// Reads the caches from the registry, under the printer's port, or, in the spooler and the filter pipeline, from the
// private block of a DEVMODE, and holds the blobs that were read or built. For one thread at a time.
class CapabilityCacheReader {
public:
    CapabilityCacheReader();
    ~CapabilityCacheReader();
    CapabilityCacheReader(const CapabilityCacheReader&) = delete;
    CapabilityCacheReader& operator=(const CapabilityCacheReader&) = delete;

    static constexpr HRESULT kPaperDatabaseRead = 0x0004DC01;

    // As the operations of MSDeviceCapabilities of these names.
    void Initialize(HANDLE printer);
    HRESULT GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                           std::vector<_tag_FormsInfoRec>& records);
    HRESULT GetResolutionEnumsCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                             std::vector<_tag_ResolutionInfoRec>& records);
    HRESULT LoadCache(DWORD index, bool validate);
    HRESULT LoadAllCaches();
    bool ExportCachesToDevmode(AttributeBytesSink& sink);
    DWORD GetCustomFormsCRC();

    // CRC-32 over the printer's forms.
    DWORD ComputeFormsDatabaseCRC() const;

    HANDLE GetPrinter() const noexcept { return printer_; }
    // The printer's values in the registry; null until they are open.
    DataCache* GetValues() const noexcept { return values_.get(); }
    const std::optional<ByteBuffer>& GetBlob(const CapabilityGroup& group) const { return blobs_[IndexOf(group)]; }
    // Holds a blob that was built, or none. Whether it differs from what was last read or built, as none does always.
    bool Hold(const CapabilityGroup& group, std::optional<ByteBuffer> blob);
    // Whether the registry holds the group's blob; one that vanished or was damaged since it was read is to be written
    // again. True as long as the registry's values are not open.
    bool IsStored(const CapabilityGroup& group);

    DWORD GetLoadedFlags() const noexcept { return loadedFlags_; }  // of the groups that LoadAllCaches got
    bool IsPaperCacheStale() const noexcept { return isPaperCacheStale_; }
    // Whether a blob from a DEVMODE did not have the CRC that it came with; it is used all the same.
    bool HasDevmodeCrcMismatch() const noexcept { return hasDevmodeCrcMismatch_; }

private:
    enum SetUpStep : DWORD {
        kPrinterNameRead = 1,
        kPortRead = 2,
        kFramingStartRead = 4,
        kValuesOpen = 8,
        kContextNoted = 16,
        kDriverInstalled = 32,
    };

    static std::size_t IndexOf(const CapabilityGroup& group) noexcept { return static_cast<std::size_t>(group.id); }

    bool EnsureInitialized(bool useLocalMachineHive);
    void SetUp();
    bool LoadFromRegistry(const CapabilityGroup& group);
    bool LoadFromDevmode(const CapabilityGroup& group, DWORD item, DEVMODEW* devmode);
    const ByteBuffer* GetBlobForLookup(DWORD item, HANDLE printer, DEVMODEW* devmode);
    template <class Header, class Record>
    bool LookUp(const WCHAR* operation, DWORD item, HANDLE printer, DEVMODEW* devmode, std::vector<Record>& records);
    bool FrameForDevmode(const ByteBuffer& blob, ByteBuffer& item) const;

    HANDLE printer_ = nullptr;
    CXString printerName_;
    CXString port_;
    HKEY hive_ = HKEY_LOCAL_MACHINE;
    DWORD setUp_ = 0;  // SetUpStep bits
    std::unique_ptr<DataCache> values_;
    std::array<std::optional<ByteBuffer>, kCapabilityGroupCount> blobs_;
    std::array<DWORD, kCapabilityGroupCount> knownCheckWords_{};
    DWORD loadedFlags_ = 0;
    DWORD framingStart_ = 0;
    DWORD customFormsCrc_ = kCapabilityCacheCrcStart;
    bool isInSpooler_ = false;
    bool isPaperCacheStale_ = true;
    bool hasDevmodeCrcMismatch_ = false;
};
