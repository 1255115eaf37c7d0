// Tickets and capabilities of all printers, a file each.
#pragma once

#include <subsystem/providerlibrary.h>
#include "commands.h"

struct BulkConversion {
    std::string folder;   // of the files; made when it is missing
    std::string devmode;  // the tickets' settings; empty for what each printer's driver starts from
    bool strict = false;  // a ticket that loses a setting is none
    ProviderSource provider;
};

void MakeAllTickets(HostContext& context, const BulkConversion& conversion);
void MakeAllCapabilities(HostContext& context, const BulkConversion& conversion);
