// The printers that the spooler has: the list of them, and an open one.
#pragma once

#include <uniquehandle.h>
#include <widetext.h>

#include <stdexcept>
#include <string>
#include <vector>

// The spooler could not do what it was rightly asked for.
class SpoolerFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct CloseSpoolerHandle {
    void operator()(HANDLE printer) const noexcept;
};
using UniquePrinter = UniqueHandle<HANDLE, CloseSpoolerHandle>;

// Empty, with the last error set, when there is no printer of that name.
UniquePrinter OpenPrinterByName(const WideString& name);

struct PrinterRow {
    WideString name, port, driver;
};
// Throws SpoolerFailure when the spooler does not answer.
std::vector<PrinterRow> ListPrinters();
