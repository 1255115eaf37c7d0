// What the commands on one printer and those on many share.
#pragma once

#include "commands.h"

struct PrinterOptions {
    std::string name, product, port;
    std::string from;  // a list of printers; empty when none is given
    bool all = false, atomic = false, json = false;
};

void AddPrintersOfList(HostContext& context, const PrinterOptions& options);
void RemovePrintersOfList(HostContext& context, const PrinterOptions& options);
void RemoveAllPrinters(HostContext& context, const PrinterOptions& options);
