// What a printer can print on of each of its product's papers.
#pragma once

#include <vector>

#include "printsession.h"

// All in micrometres, from the upper left corner.
struct PrintableArea {
    LONG left = 0, top = 0, width = 0, height = 0;
};

// The imageable areas of the product's papers in portrait, in the order of the product: as the provider states them
// where a ticket selects the paper, else as the product's files do; zeros for the custom size, whose sides the user
// gives. Throws what the session throws.
std::vector<PrintableArea> ReadPrintableAreas(const PrintSession& session);
