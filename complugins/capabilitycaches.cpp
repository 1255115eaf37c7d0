// Building a printer's capability caches anew.
#include "capabilitycaches.h"

#include <msdevicecapabilities.h>
#include <mvcore/datamodelmanager.h>
#include <mvutil/crc32.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/operationscope.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <mvutil/textresources.h>
#include <privateblock.h>

namespace {

DataCache OpenCaches(HANDLE printer) {
    return {printer, MorvaneUtilities::GetRegistryHiveByContext(),
            MorvaneUtilities::ConvertPortNameToRegistryKey(Printer(printer).GetPrinterPort()), kCapabilityCacheCrcStart,
            true};
}

// Empty when one is missing or damaged.
std::vector<ByteBuffer> ReadBlobs(HANDLE printer) {
    const DataCache caches = OpenCaches(printer);
    std::vector<ByteBuffer> blobs;
    for (const CapabilityGroup& group : kCapabilityGroups) {
        ByteBuffer blob;
        if (!caches.GetCachedBytesValue(group.valueName, blob) || !IsWholeCapabilityBlob(group, blob)) return {};
        blobs.push_back(std::move(blob));
    }
    return blobs;
}

// Whether all are there.
bool WriteBlobs(HANDLE printer, const std::vector<ByteBuffer>& blobs) {
    DataCache caches = OpenCaches(printer);
    DWORD written = 0;
    bool all = true;
    for (const CapabilityGroup& group : kCapabilityGroups) {
        const ByteBuffer& blob = blobs[static_cast<std::size_t>(group.id)];
        ByteBuffer stored;
        if (caches.GetCachedBytesValue(group.valueName, stored) && stored == blob) continue;
        all &= caches.SetCachedValue(group.valueName, blob, false);
        written |= group.flag;
    }
    if (!written) return true;
    if (all) caches.SetCachedValue(kCapsFlagsValue, static_cast<LONG>(written), false);
    Printer(printer).ClearDevmode1stLevelCache();
    return all;
}

}  // namespace

bool CapabilityCachesOfMany::Rebuild(HANDLE printer, const CXString& driver) {
    CXString key = driver;
    key.MakeLower();
    const auto found = built_.find(key);
    if (found != built_.end()) return WriteBlobs(printer, found->second);
    RebuildCapabilityCaches(printer);
    std::vector<ByteBuffer> blobs = ReadBlobs(printer);
    if (blobs.empty()) return false;
    built_.emplace(std::move(key), std::move(blobs));
    return true;
}

bool IsWholeCapabilityBlob(const CapabilityGroup& group, ByteBuffer blob) {
    if (blob.getDword() < group.minimumBytes) return false;
    BYTE* const check = blob.getLpbyte() + group.checkWordOffset;
    const DWORD stored = privateblock::ReadDword(check);
    privateblock::WriteDword(check, 0);
    return stored == Crc32::GetCrc(blob.getLpbyte(), blob.getDword(), kCapabilityCacheCrcStart);
}

void RebuildCapabilityCaches(HANDLE printer) {
    const OperationScope scope;
    TextResourceLoader::Initialize(printer, false);
    const ProductStringLoader loader(DataModelIds::kNotSet);
    MSDeviceCapabilities capabilities;  // outlives the manager, which it observes
    DataModelManager manager(1, PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer), loader, false, true);
    capabilities.Initialize(printer, false);
    std::vector<DataSource*> sources = {&capabilities};
    manager.PopulateFromSourceData(sources);
    // Filling the model reports no change of the stapler and of no loaded media: these two groups are asked for. What
    // the trays held is not read back by then; without it the same again would be written.
    capabilities.LoadCache(DC_MEDIAREADY, false);
    capabilities.UpdateCaches(GetCapabilityGroup(CapabilityGroupId::Staple).flag);
    manager.GetFeatureServices().RaiseEvent(EventId(DataModelIds::kLoadedMediaChanged));
}
