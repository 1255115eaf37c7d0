// The margins of a printer's pages: from the product's margin file, else from the printer's device settings.
#pragma once

#include <mvutil/cxstring.h>

#include <windows.h>

#include <vector>

class ProductData;

// All in micrometres.
struct PageMargins {
    LONG left = 0;
    LONG top = 0;
    LONG right = 0;
    LONG bottom = 0;
};
struct MarginTableEntry {
    LONG width;
    LONG height;
    PageMargins margins;
};

// The pages that a margin file lists, in its order; none when there is no such file. A line of its section PostScript
// is WIDTHxHEIGHT=LEFT BOTTOM RIGHT TOP, all in points: the page, and the printable area's corners from the page's
// lower left one. A line with other than six numbers is skipped; margins are enlarged to the next whole point.
std::vector<MarginTableEntry> ReadMarginTable(const CXString& path);

// The margins of a page of that size in micrometres. Of several entries for B5 paper, the paper number decides.
PageMargins GetPageMargins(ProductData& product, HANDLE printer, WORD paperNumber, LONG width, LONG height);
