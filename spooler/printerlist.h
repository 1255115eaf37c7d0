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
// The printers that are whole. Throws SpoolerFailure when the spooler does not answer.
std::vector<PrinterRow> ListPrinters();
// Halves as well, and without drivers, which take the spooler longer.
std::vector<PrinterRow> ListPrinterPorts();

// A printer counts unless a note says that it is half added or half removed: the note is written before all else and
// deleted last, so that of one whose adding or removing was interrupted a half is left that is known for one.
class HalfPrinters {
public:
    // Names, as they were given.
    static std::vector<WideString> List();
    static bool Contains(const WideString& name);
    // A sentence for the user.
    static std::string Describe(const WideString& name);
    // Notes the printer with its port. False when there is a note of that name already. Throws SpoolerFailure.
    static bool Add(const WideString& name, const WideString& port);
    // The port that was noted; empty when there is none.
    static WideString GetPort(const WideString& name);
    static void Remove(const WideString& name);
};
