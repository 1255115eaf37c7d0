// The capability caches of the store's printers.
#include "printercaches.h"

#include <mvutil/datacache.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/operationscope.h>
#include <mvutil/printdriver.h>
#include <workflowobject.h>

#include <algorithm>
#include <iterator>

#include "hosterror.h"
#include "hosttext.h"

void RebuildCaches(CapabilityCachesOfMany& caches, HANDLE printer, const PrinterRow& row) {
    if (!caches.Rebuild(printer, row.driver))
        throw OperationError("the capability caches of the printer '" + ToUtf8(row.name) +
                             "' cannot be written; check the store and its free space");
}

void CompletePrinter(CapabilityCachesOfMany& caches, HANDLE printer, const PrinterRow& row) {
    RebuildCaches(caches, printer, row);
    // A library that does not load is reported by the conversions that miss it.
    WorkflowObject().InitializeWorkflowObject(printer, nullptr, nullptr);
}

void RebuildCachesOf(const std::vector<PrinterRow>& printers) {
    CapabilityCachesOfMany caches;
    std::map<WideString, bool> isComplete;  // by driver
    for (const PrinterRow& row : printers) {
        const UniquePrinter printer = OpenPrinterByName(row.name);
        if (!printer) continue;  // another process has removed it
        const auto [driver, isNew] = isComplete.try_emplace(row.driver);
        if (isNew)
            driver->second =
                PrintDriver::GetInstallationStateFromHandle(printer.Get()) == PrintDriver::kInstallationComplete;
        if (driver->second) RebuildCaches(caches, printer.Get(), row);
    }
}

bool ReadCache(HANDLE printer, const CXString& port, const CapabilityGroup& group, ByteBuffer& blob) {
    const CXString key = MorvaneUtilities::ConvertPortNameToRegistryKey(port);
    for (const HKEY hive : {MorvaneUtilities::GetRegistryHiveByContext(), HKEY_LOCAL_MACHINE})
        if (DataCache(printer, hive, key, kCapabilityCacheCrcStart, false).GetCachedBytesValue(group.valueName, blob))
            return true;
    return false;
}

bool LacksCaches(const PrinterRow& printer) {
    const UniquePrinter handle = OpenPrinterByName(printer.name);
    if (!handle) return false;  // another process has removed it
    const OperationScope scope;
    return std::any_of(std::begin(kCapabilityGroups), std::end(kCapabilityGroups), [&](const CapabilityGroup& group) {
        ByteBuffer blob;
        return !ReadCache(handle.Get(), printer.port, group, blob) || !IsWholeCapabilityBlob(group, blob);
    });
}
