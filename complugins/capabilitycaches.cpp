// Building a printer's capability caches anew.
#include "capabilitycaches.h"

#include <msdevicecapabilities.h>
#include <mvcore/datamodelmanager.h>
#include <mvutil/crc32.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/operationscope.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <mvutil/textresources.h>
#include <privateblock.h>

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
