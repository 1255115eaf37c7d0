// The capability caches of the store's printers: building them anew, and finding printers that lack them.
#pragma once

#include <capabilitycaches.h>
#include <printerlist.h>

// Rebuilds one printer's caches; the row gives its name and its driver's. Throws OperationError when they cannot all be
// built and written.
void RebuildCaches(CapabilityCachesOfMany& caches, HANDLE printer, const PrinterRow& row);

// Of a printer that was just installed, builds the caches and has its workflow library chosen, so that who may not
// write in the store finds both.
void CompletePrinter(CapabilityCachesOfMany& caches, HANDLE printer, const PrinterRow& row);

// Rebuilds those of the printers whose driver is complete.
void RebuildCachesOf(const std::vector<PrinterRow>& printers);
// Of all printers: forms belong to the print server and custom sizes to the user, so that all offer them.
inline void RebuildAllCaches() { RebuildCachesOf(ListPrinters()); }

// One of the caches that the user has, else of those of the machine; false when there is none.
bool ReadCache(HANDLE printer, const CXString& port, const CapabilityGroup& group, ByteBuffer& blob);

// Whether one of the printer's caches is missing, or is damaged, for the user and for the machine.
bool LacksCaches(const PrinterRow& printer);
