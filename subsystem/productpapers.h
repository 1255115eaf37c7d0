// What of a paper a printer can print on.
#pragma once

#include "printsession.h"

// All in micrometres, from the upper left corner.
struct PrintableArea {
    LONG left = 0, top = 0, width = 0, height = 0;
};

// The imageable area of the printer's paper of that number, in portrait: as the provider states it where a ticket
// selects the paper, else as the product's files do; without sides for the custom size, whose sides the user gives, and
// for a paper of which nothing is known. Throws what the session throws.
PrintableArea FindPrintableArea(const PrintSession& session, WORD paperNumber);
