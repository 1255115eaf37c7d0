// Installing a product as a printer, and removing it: over the spooler's functions alone.
#pragma once

#include "printerlist.h"

#include <widetext.h>
#include <filesystem>
#include <string>

// Adds the product's driver (or brings it up to date) and a printer of it. An empty port makes one for this printer
// alone, "MV_1:" and so on. The port's capability caches start empty when no other printer uses it. Returns the port.
// Throws ProductError for an unusable product file, and std::runtime_error with a sentence for the user: a name that a
// printer cannot have or one has already, a port that a printer of another product uses; a SpoolerFailure for the rest.
WideString InstallPrinter(const WideString& name, const std::filesystem::path& productFile, const WideString& port);
inline WideString InstallPrinter(const WCHAR* name, const std::filesystem::path& productFile, const WCHAR* port) {
    return InstallPrinter(WideString(name), productFile, WideString(port));
}

// Removes the printer; with the last one of a port its capability caches, and with the last one of a driver the driver.
// Throws std::runtime_error with a sentence for the user.
void RemovePrinter(const WideString& name);
inline void RemovePrinter(const WCHAR* name) { RemovePrinter(WideString(name)); }
