// Printers and drivers as the registry keeps them.
#include "printerstore.h"

#include "printerhandles.h"
#include "registryvalues.h"
#include "spoolererror.h"

#include <cstring>

namespace {

// Value names of a printer's key, with the member that each one holds.
struct TextValue {
    const WCHAR* name;
    WideString StoredPrinter::*member;
};
struct NumberValue {
    const WCHAR* name;
    DWORD StoredPrinter::*member;
};
constexpr const WCHAR* kDefaultDevmode = W("Default DevMode");
constexpr const WCHAR* kPrinterDriver = W("Printer Driver");
constexpr TextValue kPrinterTexts[] = {
    {W("Name"), &StoredPrinter::name},
    {W("Share Name"), &StoredPrinter::shareName},
    {W("Port"), &StoredPrinter::port},
    {kPrinterDriver, &StoredPrinter::driver},
    {W("Description"), &StoredPrinter::comment},
    {W("Location"), &StoredPrinter::location},
    {W("Separator File"), &StoredPrinter::separatorFile},
    {W("Print Processor"), &StoredPrinter::printProcessor},
    {W("Datatype"), &StoredPrinter::datatype},
    {W("Parameters"), &StoredPrinter::parameters},
};
constexpr NumberValue kPrinterNumbers[] = {
    {W("Attributes"), &StoredPrinter::attributes},
    {W("Priority"), &StoredPrinter::priority},
    {W("Default Priority"), &StoredPrinter::defaultPriority},
    {W("StartTime"), &StoredPrinter::startTime},
    {W("UntilTime"), &StoredPrinter::untilTime},
    {W("AveragePPM"), &StoredPrinter::averagePagesPerMinute},
};

struct DriverValue {
    const WCHAR* name;
    WideString StoredDriver::*member;
};
constexpr const WCHAR* kDependentFiles = W("Dependent Files");
constexpr DriverValue kDriverTexts[] = {
    {W("Driver"), &StoredDriver::driverPath},
    {W("Data File"), &StoredDriver::dataFile},
    {W("Configuration File"), &StoredDriver::configFile},
    {W("Help File"), &StoredDriver::helpFile},
    {W("Monitor"), &StoredDriver::monitor},
    {W("Datatype"), &StoredDriver::datatype},
};

WideString KeyBelow(const WCHAR* parent, const WideString& name) { return WideString(parent) + W("\\") + name; }

bool IsKeyName(const WideString& name, std::size_t longest, WideStringView refused) noexcept {
    const auto isBad = [&](WCHAR c) { return c < 0x20 || c == 0x7F || refused.find(c) != WideStringView::npos; };
    return !name.empty() && name.size() <= longest && std::none_of(name.begin(), name.end(), isBad);
}

}  // namespace

bool IsPrinterName(const WideString& name) noexcept { return IsKeyName(name, 219, W("\\,!")); }

bool IsDriverName(const WideString& name) noexcept { return IsKeyName(name, 255, W("\\")); }

WideString GetPrinterKey(const WideString& name) { return KeyBelow(kPrintersKey, name); }

std::optional<StoredPrinter> ReadPrinter(const WideString& name) {
    if (!IsPrinterName(name)) return std::nullopt;
    const UniqueKey key = OpenKey(GetPrinterKey(name));
    if (!key) return std::nullopt;
    StoredPrinter printer;
    for (const TextValue& value : kPrinterTexts) printer.*value.member = ReadText(key, value.name);
    for (const NumberValue& value : kPrinterNumbers) printer.*value.member = ReadNumber(key, value.name);
    if (auto devmode = ReadValue(key, kDefaultDevmode); devmode && devmode->type == REG_BINARY)
        printer.devmode = std::move(devmode->bytes);
    if (printer.name.empty()) printer.name = name;
    return printer;
}

std::vector<StoredPrinter> ReadPrinters() {
    std::vector<StoredPrinter> printers;
    const UniqueKey key = OpenKey(kPrintersKey);
    if (!key) return printers;
    for (const WideString& name : ListKeys(key))
        if (auto printer = ReadPrinter(name)) printers.push_back(std::move(*printer));
    return printers;
}

void CreatePrinter(const StoredPrinter& printer) {
    bool created = false;
    const UniqueKey key = CreateKey(GetPrinterKey(printer.name), &created);
    Require(created, ERROR_PRINTER_ALREADY_EXISTS);
    try {
        for (const TextValue& value : kPrinterTexts) WriteText(key, value.name, printer.*value.member);
        for (const NumberValue& value : kPrinterNumbers) WriteNumber(key, value.name, printer.*value.member);
        if (!printer.devmode.empty())
            WriteValue(key, kDefaultDevmode, REG_BINARY, printer.devmode.data(), printer.devmode.size());
    } catch (...) {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, GetPrinterKey(printer.name).c_str());
        throw;
    }
}

void RemoveStoredPrinter(const WideString& name) { DeleteKey(GetPrinterKey(name)); }

std::optional<StoredDriver> ReadDriver(const WideString& name) {
    if (!IsDriverName(name)) return std::nullopt;
    const UniqueKey key = OpenKey(KeyBelow(kDriversKey, name));
    if (!key) return std::nullopt;
    StoredDriver driver;
    driver.name = name;
    for (const DriverValue& value : kDriverTexts) driver.*value.member = ReadText(key, value.name);
    driver.dependentFiles = ReadTexts(key, kDependentFiles);
    return driver;
}

void WriteDriver(const StoredDriver& driver) {
    const UniqueKey key = CreateKey(KeyBelow(kDriversKey, driver.name));
    WriteNumber(key, W("Version"), kDriverVersion);
    for (const DriverValue& value : kDriverTexts) WriteText(key, value.name, driver.*value.member);
    WriteTexts(key, kDependentFiles, driver.dependentFiles);
}

void RemoveStoredDriver(const WideString& name) { DeleteKey(KeyBelow(kDriversKey, name)); }

WideString GetDriverNameOf(HANDLE handle) {
    const WideString name = GetNameBehind(handle);
    Require(!name.empty(), ERROR_INVALID_HANDLE);
    const UniqueKey key = OpenKey(GetPrinterKey(name));
    Require(static_cast<bool>(key), ERROR_PRINTER_DELETED);
    return ReadText(key, kPrinterDriver);
}

StoredPrinter GetPrinterOf(HANDLE handle) {
    const WideString name = GetNameBehind(handle);
    Require(!name.empty(), ERROR_INVALID_HANDLE);
    auto printer = ReadPrinter(name);
    Require(printer.has_value(), ERROR_PRINTER_DELETED);
    return std::move(*printer);
}
