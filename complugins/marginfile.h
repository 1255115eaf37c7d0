// The margin file of a product: the printable area of each page.
#pragma once

#include <mvutil/cxstring.h>

#include <windows.h>

#include <optional>
#include <vector>

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

    // Whether it is for a page of that size in micrometres: both are the same in whole millimetres.
    bool IsFor(LONG pageWidth, LONG pageHeight) const;
};

LONG MicrometresOfPoints(double points);

inline constexpr WideStringView kMarginSection = W("PostScript");
inline constexpr DWORD kMarginSectionCharacters = 4096;  // that are read, line ends and the last NUL included

// A line of the file's section: WIDTHxHEIGHT=LEFT BOTTOM RIGHT TOP, all in points: the page, and the printable area's
// corners from the page's lower left one. Nothing when the line does not have six numbers; margins are enlarged to the
// next whole point.
std::optional<MarginTableEntry> ReadMarginLine(WideStringView line);

// The pages that a margin file lists, in its order, lines that are none left out; none when there is no such file.
std::vector<MarginTableEntry> ReadMarginTable(const CXString& path);
