// The capability caches of the store's printers: building them anew, and finding printers that lack them.
#pragma once

#include <capabilitycaches.h>
#include <printerlist.h>

#include <functional>

// Rebuilds one printer's caches. Throws OperationError when they cannot all be built and written.
void RebuildCaches(CapabilityCachesOfMany& caches, HANDLE printer, const WideString& name, const WideString& driver);

// Rebuilds those of all printers whose driver is complete, each reported once it is done. Forms belong to the print
// server and custom sizes to the user: all printers offer them.
void RebuildAllCaches(const std::function<void()>& report = {});
