// Lists of printers in files: CSV with a header line, or JSON lines.
#pragma once

#include <widetext.h>

#include <string>
#include <string_view>
#include <vector>

struct PrinterListEntry {
    std::size_t line = 0;  // of the file, from 1
    WideString name;
    std::string product;  // empty when none is given
    WideString port;      // empty when none is given
    std::string fault;    // why the line is no printer; empty when it is one
};

// The columns, or keys of an object on each line, are name, product and port, in any order; only the name must be
// there, and the product where it is wanted. A line is one entry: none of the three can hold a line's end, and so a
// quote that is not closed costs one line and not all that follow. Empty lines are passed over. A name that was listed
// before is a fault. Throws InputError for bytes that hold no list or one with other columns.
std::vector<PrinterListEntry> ReadPrinterList(std::string_view bytes, bool wantsProduct);
