// Building a printer's capability caches anew.
#include "capabilitycaches.h"

#include <msdevicecapabilities.h>
#include <mvcore/datamodelmanager.h>
#include <mvutil/crc32.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <mvutil/textresources.h>
#include <privateblock.h>

namespace {

constexpr DWORD kMediaReadyIndex = 29, kStapleIndex = 30;

// A builder compares check words alone: a blob that has the right one over wrong content would stay.
void DropDamagedCaches(HANDLE printer) {
    const CXString key = MorvaneUtilities::ConvertPortNameToRegistryKey(Printer(printer).GetPrinterPort());
    DataCache cache(printer, key, kCapabilityCacheCrcStart, true);
    for (const CapabilityGroup& group : kCapabilityGroups) {
        ByteBuffer blob;
        if (cache.GetCachedBytesValue(group.valueName, blob) && !IsWholeCapabilityBlob(group, blob))
            cache.DeleteCache(group.valueName, false);
    }
}

}  // namespace

bool IsWholeCapabilityBlob(const CapabilityGroup& group, ByteBuffer blob) {
    if (blob.getDword() < group.minimumBytes) return false;
    BYTE* const check = blob.getLpbyte() + group.checkWordOffset;
    const DWORD stored = privateblock::ReadDword(check);
    privateblock::WriteDword(check, 0);
    return stored == Crc32::GetCrc(blob.getLpbyte(), blob.getDword(), kCapabilityCacheCrcStart);
}

void RebuildCapabilityCaches(HANDLE printer) {
    TextResourceLoader::Initialize(printer, false);
    const ProductStringLoader loader(DataModelIds::kNotSet);
    MSDeviceCapabilities capabilities;  // outlives the manager, which it observes
    DataModelManager manager(1, PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer), loader, false, true);
    DropDamagedCaches(printer);
    capabilities.Initialize(printer, false);
    std::vector<DataSource*> sources = {&capabilities};
    manager.PopulateFromSourceData(sources);
    // Filling the model tells of no change of the stapler and of no loaded media: these two groups are asked for. What
    // the trays held is not read back by then; without it the same again would be written.
    capabilities.LoadCache(kMediaReadyIndex, false);
    capabilities.UpdateCaches(FindCapabilityGroup(kStapleIndex)->flag);
    manager.GetFeatureServices().RaiseEvent(EventId(DataModelIds::kLoadedMediaChanged));
}
