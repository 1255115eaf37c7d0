// Printers and drivers as the registry keeps them, where the system's own spooler keeps its.
#pragma once

#include "spoolertext.h"

#include <storestate.h>

#include <optional>
#include <vector>

inline constexpr const WCHAR* kPrintKey = W("SYSTEM\\CurrentControlSet\\Control\\Print");
inline constexpr const WCHAR* kPrintersKey = W("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers");
inline constexpr const WCHAR* kDriversKey =
    W("SYSTEM\\CurrentControlSet\\Control\\Print\\Environments\\Windows x64\\Drivers\\Version-3");
inline constexpr const WCHAR* kFormsKey = W("SYSTEM\\CurrentControlSet\\Control\\Print\\Forms");
inline constexpr const WCHAR* kEnvironment = W("Windows x64");
inline constexpr DWORD kDriverVersion = 3;

// What most calls ask of a printer.
struct StoredPrinterBrief {
    WideString name, port, driver;
    DWORD attributes = 0;
};

struct StoredPrinter : StoredPrinterBrief {
    WideString shareName, comment, location, separatorFile, printProcessor, datatype, parameters;
    DWORD priority = 0, defaultPriority = 0, startTime = 0, untilTime = 0, averagePagesPerMinute = 0;
    std::vector<BYTE> devmode;  // default DEVMODE; empty when it has none
};

struct StoredDriver {
    WideString name, driverPath, dataFile, configFile, helpFile, monitor, datatype;
    WideString dependentFiles;  // each name with its NUL
};

bool IsDriverName(const WideString& name) noexcept;

WideString GetPrinterKey(const WideString& name);
std::optional<StoredPrinter> ReadPrinter(const WideString& name);
// Reads no other value, and nothing as long as the store is in the state in which it was read.
std::optional<StoredPrinterBrief> ReadPrinterBrief(const WideString& name, StoreState state = GetStoreState());
std::vector<StoredPrinter> ReadPrinters();
std::vector<StoredPrinterBrief> ReadPrinterBriefs();
bool IsDriverUsed(const WideString& driver);       // by any printer
void CreatePrinter(const StoredPrinter& printer);  // ERROR_PRINTER_ALREADY_EXISTS; nothing is left after a failure
void RemoveStoredPrinter(const WideString& name);

// Reads nothing as long as the store is in the state in which it was read.
std::optional<StoredDriver> ReadDriver(const WideString& name, StoreState state = GetStoreState());
void WriteDriver(const StoredDriver& driver);
void RemoveStoredDriver(const WideString& name);

// The printer that an open handle stands for. ERROR_INVALID_HANDLE, also for the print server; ERROR_PRINTER_DELETED.
StoredPrinter GetPrinterOf(HANDLE handle);
StoredPrinterBrief GetPrinterBriefOf(HANDLE handle, StoreState state = GetStoreState());
