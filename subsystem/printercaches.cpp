// The capability caches of the store's printers.
#include "printercaches.h"

#include <mvutil/printdriver.h>

#include "hosterror.h"
#include "hosttext.h"

void RebuildCaches(CapabilityCachesOfMany& caches, HANDLE printer, const WideString& name, const WideString& driver) {
    if (!caches.Rebuild(printer, driver))
        throw OperationError("the capability caches of the printer '" + ToUtf8(name) +
                             "' cannot be written; check the store and its free space");
}

void RebuildAllCaches(const std::function<void()>& report) {
    CapabilityCachesOfMany caches;
    std::map<WideString, bool> isComplete;  // by driver
    for (const PrinterRow& row : ListPrinters()) {
        const UniquePrinter printer = OpenPrinterByName(row.name);
        if (!printer) continue;  // another process has removed it
        const auto [driver, isNew] = isComplete.try_emplace(row.driver);
        if (isNew)
            driver->second =
                PrintDriver::GetInstallationStateFromHandle(printer.Get()) == PrintDriver::kInstallationComplete;
        if (driver->second) RebuildCaches(caches, printer.Get(), row.name, row.driver);
        if (report) report();
    }
}
