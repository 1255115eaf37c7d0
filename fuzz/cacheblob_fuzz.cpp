// A capability cache as another program left it: the first byte chooses which and whether its check word holds, the
// rest is the blob.
#include <capabilitygroups.h>
#include <mscacheddevicecapabilities.h>
#include <mvutil/crc32.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneutilities.h>

#include <cstring>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include "fuzzhost.h"

namespace {

// Bytes of one element of a capability's array; 0 for capabilities that are numbers.
std::size_t GetElementBytes(WORD capability) {
    switch (capability) {
        case DC_PAPERS:
        case DC_BINS:
            return sizeof(WORD);
        case DC_PAPERSIZE:
        case DC_ENUMRESOLUTIONS:
            return 2 * sizeof(LONG);
        case DC_PAPERNAMES:
        case DC_MEDIATYPENAMES:
        case DC_MEDIAREADY:
        case DC_FILEDEPENDENCIES:
            return 64 * sizeof(WCHAR);
        case DC_BINNAMES:
            return 24 * sizeof(WCHAR);
        case DC_MEDIATYPES:
            return sizeof(DWORD);
        default:
            return 0;
    }
}

void AskSpooler(const FuzzPrinter& printer, const CapabilityGroup& group) {
    const CXString& port = printer.session.GetPrinter().GetPort();
    for (const DWORD index : group.indexes) {
        const auto capability = static_cast<WORD>(index);
        const int count = DeviceCapabilitiesW(printer.name, port, capability, nullptr, nullptr);
        const std::size_t bytes = GetElementBytes(capability);
        if (count <= 0 || bytes == 0) continue;
        std::vector<BYTE> array(static_cast<std::size_t>(count) * bytes);
        DeviceCapabilitiesW(printer.name, port, capability, reinterpret_cast<LPWSTR>(array.data()), nullptr);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const FuzzPrinter& printer = GetFuzzPrinter("office8430");  // of few papers: its capabilities are soon made
    const CapabilityGroup& group = kCapabilityGroups[data[0] % kCapabilityGroupCount];
    ByteBuffer blob(data + 1, size - 1);
    DWORD check = 0;
    if (data[0] < 0x80 && blob.getDword() >= group.checkWordOffset + sizeof check) {
        std::memcpy(blob.getLpbyte() + group.checkWordOffset, &check, sizeof check);
        check = Crc32::GetCrc(blob.getLpbyte(), blob.getDword(), kCapabilityCacheCrcStart);
        std::memcpy(blob.getLpbyte() + group.checkWordOffset, &check, sizeof check);
    }
    const HANDLE handle = printer.session.GetPrinter().GetHandle();
    const CXString key = MorvaneUtilities::ConvertPortNameToRegistryKey(printer.session.GetPrinter().GetPort());
    DataCache cache(handle, key, kCapabilityCacheCrcStart, true);
    ByteBuffer before;
    cache.GetCachedBytesValue(group.valueName, before);
    cache.SetCachedValue(group.valueName, blob, false);
    AskSpooler(printer, group);
    MsCachedDeviceCapabilities cached(nullptr);
    cached.GetPaperDatabaseCachedDeviceCapabilitiesVector(handle);
    cached.GetResolutionEnumsCachedDeviceCapabilitiesVector(handle);
    AllowRefusal([&] { FormatDocument(printer.session.MakeCapabilities().Get()); });
    cache.SetCachedValue(group.valueName, before, false);
    return 0;
}
