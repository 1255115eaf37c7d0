// Printers without their capability caches, and what a command does about them.
#pragma once

#include <printerlist.h>

#include <string>
#include <vector>

#include <subsystem/installedprinter.h>
#include "commands/commands.h"

// Where some of the printers lack caches, or have damaged ones: says so on standard error, and from then on the command
// works on a copy of the store in memory, in which they are built from the product. The store itself stays as it is.
// Printers that are open have to be opened anew.
void MakeUpForMissingCaches(HostContext& context, const std::vector<PrinterRow>& printers);

// What a conversion says that works with the caches as they are; empty when the printer has them.
std::string DescribeMissingCaches(const PrinterRow& printer);
std::string DescribeMissingCaches(const InstalledPrinter& printer);
