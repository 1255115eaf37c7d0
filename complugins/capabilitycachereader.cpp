// CapabilityCacheReader: binding to a printer, and the capability caches in the registry.
#include <capabilitycachereader.h>

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
#include <utility>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/msdevicecapabilities");

// The records of a blob that is at least as long as its header: as many as it counts, and no more than it holds.
template <class Header, class Record>
std::vector<Record> CopyRecords(const ByteBuffer& blob) {
    Header header;
    std::memcpy(&header, blob.getLpbyte(), sizeof header);
    std::vector<Record> records(
        std::min<std::size_t>(header.count, (blob.getDword() - sizeof header) / sizeof(Record)));
    if (!records.empty()) {
        std::memcpy(records.data(), blob.getLpbyte() + sizeof header, records.size() * sizeof(Record));
        for (Record& record : records) record.name[std::size(record.name) - 1] = 0;
    }
    return records;
}

DWORD CheckWordOf(const CapabilityGroup& group, const ByteBuffer& blob) {
    return privateblock::ReadDword(blob.getLpbyte() + group.checkWordOffset);
}

}  // namespace

CapabilityCacheReader::CapabilityCacheReader() = default;
CapabilityCacheReader::~CapabilityCacheReader() = default;

void CapabilityCacheReader::Initialize(HANDLE printer) {
    if (!Printer::IsValidHandle(printer)) {
        ThrowException(&GetExceptionInvalidPrinterHandle, W("MSDeviceCapabilities::Initialize"), kSourceUnit);
    }
    if (printer == printer_) return;
    printer_ = printer;
    printerName_.Empty();
    port_.Empty();
    setUp_ = 0;
    values_.reset();
    blobs_.fill(std::nullopt);
    knownCheckWords_.fill(0);
    loadedFlags_ = 0;
    isPaperCacheStale_ = true;
    hasDevmodeCrcMismatch_ = false;
    EnsureInitialized(false);
}

bool CapabilityCacheReader::EnsureInitialized(bool useLocalMachineHive) {
    const HKEY hive = useLocalMachineHive ? HKEY_LOCAL_MACHINE : MorvaneUtilities::GetRegistryHiveByContext();
    if (hive != hive_) {
        hive_ = hive;
        setUp_ &= ~static_cast<DWORD>(kValuesOpen);
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
void CapabilityCacheReader::SetUp() {
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
    once(kValuesOpen, [&] {
        values_ = std::make_unique<DataCache>(printer_, hive_, MorvaneUtilities::ConvertPortNameToRegistryKey(port_),
                                              kCapabilityCacheCrcStart, true);
        values_->Dump();
    });
    once(kContextNoted, [&] { isInSpooler_ = DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext(); });
    // Asked again until it is so: the installation may be under way.
    if (!(setUp_ & kDriverInstalled) &&
        PrintDriver::GetInstallationStateFromHandle(printer_) >= PrintDriver::kInstallationComplete) {
        setUp_ |= kDriverInstalled;
    }
}

bool CapabilityCacheReader::Hold(const CapabilityGroup& group, std::optional<ByteBuffer> blob) {
    std::optional<ByteBuffer>& held = blobs_[IndexOf(group)];
    held = std::move(blob);
    if (!held) return true;
    if (group.id == CapabilityGroupId::Paper) isPaperCacheStale_ = false;
    const DWORD check = CheckWordOf(group, *held);
    return std::exchange(knownCheckWords_[IndexOf(group)], check) != check;
}

bool CapabilityCacheReader::IsStored(const CapabilityGroup& group) {
    ByteBuffer value;
    return !values_ || (values_->GetCachedBytesValue(group.valueName, value) && value == *GetBlob(group));
}

bool CapabilityCacheReader::LoadFromRegistry(const CapabilityGroup& group) {
    std::optional<ByteBuffer>& blob = blobs_[IndexOf(group)];
    blob.reset();
    ByteBuffer value;
    values_->GetCachedBytesValue(group.valueName, value);
    if (value.getDword() < group.minimumBytes) return false;
    knownCheckWords_[IndexOf(group)] = CheckWordOf(group, value);
    blob = std::move(value);
    return true;
}

HRESULT CapabilityCacheReader::LoadCache(DWORD index, bool validate) {
    if (!EnsureInitialized(false)) return E_NOTIMPL;
    const CapabilityGroup* const group = FindCapabilityGroup(index);
    if (!group) return S_OK;
    if (group->id != CapabilityGroupId::Paper) return LoadFromRegistry(*group) ? S_OK : E_FAIL;

    isPaperCacheStale_ = true;
    const DWORD formsCrc = validate ? ComputeFormsDatabaseCRC() : 0;
    const DWORD customFormsCrc = validate ? GetCustomFormsCRC() : 0;
    if (!LoadFromRegistry(*group)) return E_FAIL;
    PaperCapsHeader header;
    std::memcpy(&header, GetBlob(*group)->getLpbyte(), sizeof header);
    isPaperCacheStale_ = validate && header.formsDatabaseCrc != formsCrc;
    if (isPaperCacheStale_) return E_FAIL;
    if (validate && header.customFormsCrc != customFormsCrc) return E_FAIL;
    return S_OK;
}

HRESULT CapabilityCacheReader::LoadAllCaches() {
    constexpr DWORD kIndexes[] = {
        DC_PAPERS,      DC_BINS,  DC_MEDIATYPES, DC_FILEDEPENDENCIES, DC_ENUMRESOLUTIONS, kResolutionRecordsIndex,
        DC_COLORDEVICE, DC_STAPLE};
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
const ByteBuffer* CapabilityCacheReader::GetBlobForLookup(DWORD item, HANDLE printer, DEVMODEW* devmode) {
    const CapabilityGroup& group = *FindCapabilityGroup(item);
    Initialize(printer);
    if (!EnsureInitialized(false)) return nullptr;
    if (!isInSpooler_ && !values_->DoesCacheExist(group.valueName)) {
        // The user has no caches of his own yet: those of the machine serve.
        if (!EnsureInitialized(true) || !values_->DoesCacheExist(group.valueName)) return nullptr;
    }
    const std::optional<ByteBuffer>& blob = GetBlob(group);
    if (!blob && !(isInSpooler_ ? LoadFromDevmode(group, item, devmode) : LoadFromRegistry(group))) return nullptr;
    return &*blob;
}

// Fills the vector from the blob; false when it cannot be had. Exceptions are reported.
template <class Header, class Record>
bool CapabilityCacheReader::LookUp(const WCHAR* operation, DWORD item, HANDLE printer, DEVMODEW* devmode,
                                   std::vector<Record>& records) {
    records.clear();
    try {
        const ByteBuffer* const blob = GetBlobForLookup(item, printer, devmode);
        if (blob) records = CopyRecords<Header, Record>(*blob);
        return blob != nullptr;
    } catch (...) {
        ReportCaughtException(operation, kSourceUnit);
        return false;
    }
}

HRESULT CapabilityCacheReader::GetPaperDatabaseCachedDeviceCapabilitiesVector(HANDLE printer, DEVMODEW* devmode,
                                                                              std::vector<_tag_FormsInfoRec>& records) {
    const bool isRead =
        LookUp<PaperCapsHeader>(W("MSDeviceCapabilities::GetPaperDatabaseCachedDeviceCapabilitiesVector"), DC_PAPERS,
                                printer, devmode, records);
    return isRead ? kPaperDatabaseRead : E_FAIL;
}

HRESULT CapabilityCacheReader::GetResolutionEnumsCachedDeviceCapabilitiesVector(
    HANDLE printer, DEVMODEW* devmode, std::vector<_tag_ResolutionInfoRec>& records) {
    const bool isRead =
        LookUp<ResolutionCapsHeader>(W("MSDeviceCapabilities::GetResolutionEnumsCachedDeviceCapabilitiesVector"),
                                     kResolutionRecordsIndex, printer, devmode, records);
    return isRead ? S_OK : E_FAIL;
}
