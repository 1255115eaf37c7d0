// MSDeviceCapabilities: binding to a printer, and the capability caches in the registry.
#include <msdevicecapabilities.h>

#include <caughtexception.h>
#include <privateblock.h>
#include <throwscheme.h>

#include <mvutil/cforms.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/msdevicecapabilities");

// "XPaperCaps" begins with four DWORDs.
constexpr DWORD kPaperItem = 2;
constexpr std::size_t kPaperFormsCrcOffset = 0;
constexpr std::size_t kPaperCustomFormsCrcOffset = 8;
constexpr std::size_t kPaperCountOffset = 12;
constexpr std::size_t kPaperHeaderBytes = 16;
// "XResolutions": CRC, count, a byte for 200 x 200, three zero bytes.
constexpr DWORD kResolutionsItem = 65527;
constexpr std::size_t kResolutionsCountOffset = 4;
constexpr std::size_t kResolutionsHeaderBytes = 12;

// The records of a blob that is at least as long as its header: as many as it counts, and no more than it holds.
template <class Record>
std::vector<Record> CopyRecords(const ByteBuffer& blob, std::size_t headerBytes, std::size_t countOffset) {
    const std::size_t counted = privateblock::ReadDword(blob.getLpbyte() + countOffset);
    std::vector<Record> records(std::min(counted, (blob.getDword() - headerBytes) / sizeof(Record)));
    if (!records.empty()) {
        std::memcpy(records.data(), blob.getLpbyte() + headerBytes, records.size() * sizeof(Record));
        for (Record& record : records) record.name[std::size(record.name) - 1] = 0;
    }
    return records;
}

}  // namespace

MSDeviceCapabilities::MSDeviceCapabilities() = default;
MSDeviceCapabilities::~MSDeviceCapabilities() = default;

void MSDeviceCapabilities::Initialize(HANDLE printer, bool noWrite) {
    if (!Printer::IsValidHandle(printer)) {
        ThrowException(&GetExceptionInvalidPrinterHandle, W("MSDeviceCapabilities::Initialize"), kSourceUnit);
    }
    noWrite_ = noWrite;
    if (printer == printer_) return;
    printer_ = printer;
    printerName_.Empty();
    port_.Empty();
    setUp_ = 0;
    cache_.reset();
    blobs_.fill(std::nullopt);
    knownCheckWords_.fill(0);
    loadedFlags_ = 0;
    paperCacheStale_ = true;
    devmodeCrcMismatch_ = false;
    EnsureInitialized(false);
}

bool MSDeviceCapabilities::EnsureInitialized(bool useLocalMachineHive) {
    const HKEY hive = useLocalMachineHive ? HKEY_LOCAL_MACHINE : MorvaneUtilities::GetRegistryHiveByContext();
    if (hive != hive_) {
        hive_ = hive;
        setUp_ &= ~static_cast<DWORD>(kCacheOpen);
    }
    if (!Printer::IsValidHandle(printer_)) return false;
    try {
        SetUp();
    } catch (const ExceptionPrinterFailure&) {
        return false;
    } catch (const ExceptionDataCacheFailure&) {
        return false;
    } catch (const ExceptionPrintDriverFailure&) {
        return false;
    }
    return (setUp_ & kDriverInstalled) != 0;
}

// Takes the steps that have not been taken yet.
void MSDeviceCapabilities::SetUp() {
    const auto once = [this](SetUpStep step, auto action) {
        if (setUp_ & step) return;
        action();
        setUp_ |= step;
    };
    const Printer printer(printer_);
    once(kPrinterNameRead, [&] { printerName_ = printer.GetPrinterName(); });
    once(kPortRead, [&] { port_ = printer.GetPrinterPort(); });
    once(kFramingStartRead, [&] {
        const DataCache common(printer_, hive_, kCapabilityCacheCrcStart, true);
        common.Dump();
        framingStart_ = common.GetCurrentCRC();
    });
    once(kCacheOpen, [&] {
        cache_ = std::make_unique<DataCache>(printer_, hive_, MorvaneUtilities::ConvertPortNameToRegistryKey(port_),
                                             kCapabilityCacheCrcStart, true);
        cache_->Dump();
    });
    once(kContextNoted, [&] { spoolerContext_ = DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext(); });
    // Asked again until it is so: the installation may be under way.
    if (!(setUp_ & kDriverInstalled) &&
        PrintDriver::GetInstallationStateFromHandle(printer_) >= PrintDriver::kInstallationComplete) {
        setUp_ |= kDriverInstalled;
    }
}

std::optional<ByteBuffer>& MSDeviceCapabilities::BlobOf(const CapabilityGroup& group) {
    return blobs_[static_cast<std::size_t>(group.id)];
}

bool MSDeviceCapabilities::LoadFromRegistry(const CapabilityGroup& group) {
    std::optional<ByteBuffer>& blob = BlobOf(group);
    blob.reset();
    ByteBuffer value;
    cache_->GetCachedBytesValue(group.valueName, value);
    if (value.getDword() < group.minimumBytes) return false;
    knownCheckWords_[static_cast<std::size_t>(group.id)] =
        privateblock::ReadDword(value.getLpbyte() + group.checkWordOffset);
    blob = std::move(value);
    return true;
}

HRESULT MSDeviceCapabilities::LoadCache(DWORD index, bool validate) {
    if (!EnsureInitialized(false)) return E_NOTIMPL;
    const CapabilityGroup* const group = FindCapabilityGroup(index);
    if (!group) return S_OK;
    if (group->id != CapabilityGroupId::Paper) return LoadFromRegistry(*group) ? S_OK : E_FAIL;

    paperCacheStale_ = true;
    const DWORD formsCrc = validate ? ComputeFormsDatabaseCRC() : 0;
    const DWORD customFormsCrc = validate ? GetCustomFormsCRC() : 0;
    if (!LoadFromRegistry(*group)) return E_FAIL;
    const BYTE* const header = BlobOf(*group)->getLpbyte();
    paperCacheStale_ = validate && privateblock::ReadDword(header + kPaperFormsCrcOffset) != formsCrc;
    if (paperCacheStale_) return E_FAIL;
    if (validate && privateblock::ReadDword(header + kPaperCustomFormsCrcOffset) != customFormsCrc) return E_FAIL;
    return S_OK;
}

HRESULT MSDeviceCapabilities::LoadAllCaches() {
    constexpr DWORD kIndexes[] = {2, 6, 35, 14, 13, 65527, 32, 30};
    HRESULT result = S_OK;
    for (const DWORD index : kIndexes) {
        const HRESULT loaded = LoadCache(index, true);
        if (index == kIndexes[0] && loaded == E_NOTIMPL) return E_NOTIMPL;
        if (FAILED(loaded))
            result = E_FAIL;
        else
            loadedFlags_ |= FindCapabilityGroup(index)->flag;
    }
    return result;
}

// The blob of the group that serves the item, held by this object; null when it cannot be had.
const ByteBuffer* MSDeviceCapabilities::GetBlobForLookup(DWORD item, HANDLE printer, DEVMODEW* devmode) {
    const CapabilityGroup& group = *FindCapabilityGroup(item);
    Initialize(printer, noWrite_);
    if (!EnsureInitialized(false)) return nullptr;
    if (!spoolerContext_ && !cache_->DoesCacheExist(group.valueName)) {
        // The user has no caches of his own yet: those of the machine serve.
        if (!EnsureInitialized(true) || !cache_->DoesCacheExist(group.valueName)) return nullptr;
    }
    std::optional<ByteBuffer>& blob = BlobOf(group);
    if (!blob && !(spoolerContext_ ? LoadFromDevmode(group, item, devmode) : LoadFromRegistry(group))) return nullptr;
    return &*blob;
}

HRESULT MSDeviceCapabilities::GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                                             std::vector<_tag_FormsInfoRec>& records) {
    records.clear();
    try {
        const ByteBuffer* const blob = GetBlobForLookup(kPaperItem, printer, devmode);
        if (!blob) return E_FAIL;
        records = CopyRecords<_tag_FormsInfoRec>(*blob, kPaperHeaderBytes, kPaperCountOffset);
        return kPaperDatabaseRead;
    } catch (...) {
        ReportCaughtException(W("MSDeviceCapabilities::GetPaperDatabaseCachedDeviceCapabilitiesVector"), kSourceUnit);
        return E_FAIL;
    }
}

HRESULT MSDeviceCapabilities::GetResolutionEnumsCachedDeviceCapabilitiesVector(
    HANDLE printer, DEVMODEW* devmode, std::vector<_tag_ResolutionInfoRec>& records) {
    records.clear();
    try {
        const ByteBuffer* const blob = GetBlobForLookup(kResolutionsItem, printer, devmode);
        if (!blob) return E_FAIL;
        records = CopyRecords<_tag_ResolutionInfoRec>(*blob, kResolutionsHeaderBytes, kResolutionsCountOffset);
        return S_OK;
    } catch (...) {
        ReportCaughtException(W("MSDeviceCapabilities::GetResolutionEnumsCachedDeviceCapabilitiesVector"), kSourceUnit);
        return E_FAIL;
    }
}
