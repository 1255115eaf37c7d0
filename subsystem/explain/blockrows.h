// Rows about the driver's own settings: those in the private blocks of DEVMODEs and in driver data.
#pragma once

#include <subsystem/devmodefile.h>

#include "explanation.h"
#include "printerfacts.h"

// The private block, or null when the DEVMODE has none. It lies in the DEVMODE.
const BYTE* FindBlock(const DevmodeBuffer& devmode);

// Whose DEVMODE it is that has no private block of this driver: "'Name' with 604 bytes of another driver's".
std::string DescribeForeignDevmode(const DevmodeBuffer& devmode);

// A row for each setting of the first block: kept where the second one has the same value, else with the verdict and
// reason given; one without a value in the second block is lost.
struct BlockReasons {
    std::string same;
    Verdict difference;
    std::string differs;
    std::string onlyAfter = std::string();  // of a setting that the second block alone has; empty for no row
};
void AddBlockRows(const BYTE* before, const BYTE* after, const BlockReasons& reasons, const PrinterFacts& printer,
                  Explanation& rows);
