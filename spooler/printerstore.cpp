// Printers and drivers as the registry keeps them.
#include "printerstore.h"

#include "keptanswers.h"
#include "printerhandles.h"
#include "printername.h"
#include "spoolererror.h"
#include "spoolerregistry.h"
#include "storedfields.h"

#include <cstring>

namespace {

// Values of other kinds than texts and numbers.
constexpr const WCHAR* kDefaultDevmode = W("Default DevMode");
constexpr const WCHAR* kDependentFiles = W("Dependent Files");

WideString KeyBelow(const WCHAR* parent, const WideString& name) { return WideString(parent) + W("\\") + name; }

// The key is what the printer is found by; the value states how it is written.
void SettleName(StoredPrinterBrief& printer, const WideString& keyName) {
    if (!EqualRegistryNames(printer.name, keyName)) printer.name = keyName;
}

UniqueKey OpenPrinterKey(const WideString& name) {
    return IsPrinterName(name) ? OpenKey(GetPrinterKey(name)) : UniqueKey();
}

// What the operation on a printer of the list answers; nothing when another process removes the printer just now.
template <class Operation>
auto IgnoringRemoved(Operation operation) -> std::optional<decltype(operation())> {
    try {
        return operation();
    } catch (const SpoolerError& error) {
        if (error.code != ERROR_KEY_DELETED) throw;
        return std::nullopt;
    }
}

template <class Printer>
std::vector<Printer> ReadEach(std::optional<Printer> (*read)(const WideString& name)) {
    std::vector<Printer> printers;
    const UniqueKey key = OpenKey(kPrintersKey);
    if (!key) return printers;
    for (const WideString& name : ListKeys(key))
        if (auto printer = IgnoringRemoved([&] { return read(name); }).value_or(std::nullopt))
            printers.push_back(std::move(*printer));
    return printers;
}

// Of the printer that an open handle stands for: what the reader makes of its name.
template <class Read>
auto ReadPrinterOf(HANDLE handle, Read read) {
    const WideString name = GetNameBehind(handle);
    Require(!name.empty(), ERROR_INVALID_HANDLE);
    auto printer = read(name);
    Require(printer.has_value(), ERROR_PRINTER_DELETED);
    return std::move(*printer);
}

std::optional<StoredPrinterBrief> ReadBriefAfresh(const WideString& name) {
    const UniqueKey key = OpenPrinterKey(name);
    if (!key) return std::nullopt;
    StoredPrinterBrief printer{ReadText(key, kPrinterNameValue), ReadText(key, kPrinterPortValue),
                               ReadText(key, kPrinterDriverValue), ReadNumber(key, kPrinterAttributesValue)};
    SettleName(printer, name);
    return printer;
}

std::optional<StoredDriver> ReadDriverAfresh(const WideString& name) {
    if (!IsDriverName(name)) return std::nullopt;
    const UniqueKey key = OpenKey(KeyBelow(kDriversKey, name));
    if (!key) return std::nullopt;
    StoredDriver driver;
    driver.name = name;
    for (const auto& value : kDriverTexts) driver.*value.member = ReadText(key, value.valueName);
    driver.dependentFiles = ReadTexts(key, kDependentFiles);
    return driver;
}

KeptAnswers<std::optional<StoredPrinterBrief>> keptPrinters;
KeptAnswers<std::optional<StoredDriver>> keptDrivers;

}  // namespace

bool IsDriverName(const WideString& name) noexcept { return IsSpoolerKeyName(name, 255, W("\\")); }

WideString GetPrinterKey(const WideString& name) { return KeyBelow(kPrintersKey, name); }

std::optional<StoredPrinter> ReadPrinter(const WideString& name) {
    const UniqueKey key = OpenPrinterKey(name);
    if (!key) return std::nullopt;
    StoredPrinter printer;
    for (const auto& value : kPrinterTexts) printer.*value.member = ReadText(key, value.valueName);
    for (const auto& value : kPrinterNumbers) printer.*value.member = ReadNumber(key, value.valueName);
    if (auto devmode = ReadValue(key, kDefaultDevmode); devmode && devmode->type == REG_BINARY)
        printer.devmode = std::move(devmode->bytes);
    SettleName(printer, name);
    return printer;
}

std::optional<StoredPrinterBrief> ReadPrinterBrief(const WideString& name, StoreState state) {
    return *keptPrinters.Get(name, state, ReadBriefAfresh);
}

std::vector<StoredPrinter> ReadPrinters() { return ReadEach<StoredPrinter>(ReadPrinter); }

std::vector<StoredPrinterBrief> ReadPrinterBriefs() { return ReadEach<StoredPrinterBrief>(ReadBriefAfresh); }

bool IsDriverUsed(const WideString& driver) {
    const UniqueKey key = OpenKey(kPrintersKey);
    return key && AnyKey(key, [&](const WideString& name) {
               return IgnoringRemoved([&] {
                          const UniqueKey printer = OpenPrinterKey(name);
                          return printer && EqualRegistryNames(ReadText(printer, kPrinterDriverValue), driver);
                      })
                   .value_or(false);
           });
}

void CreatePrinter(const StoredPrinter& printer) {
    bool created = false;
    const UniqueKey key = CreateKey(GetPrinterKey(printer.name), &created);
    Require(created, ERROR_PRINTER_ALREADY_EXISTS);
    try {
        for (const auto& value : kPrinterTexts) WriteText(key, value.valueName, printer.*value.member);
        for (const auto& value : kPrinterNumbers) WriteNumber(key, value.valueName, printer.*value.member);
        if (!printer.devmode.empty())
            WriteValue(key, kDefaultDevmode, REG_BINARY, printer.devmode.data(), printer.devmode.size());
    } catch (...) {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, GetPrinterKey(printer.name).c_str());
        throw;
    }
}

void RemoveStoredPrinter(const WideString& name) { DeleteKey(GetPrinterKey(name)); }

std::optional<StoredDriver> ReadDriver(const WideString& name, StoreState state) {
    return *keptDrivers.Get(name, state, ReadDriverAfresh);
}

void WriteDriver(const StoredDriver& driver) {
    const UniqueKey key = CreateKey(KeyBelow(kDriversKey, driver.name));
    WriteNumber(key, W("Version"), kDriverVersion);
    for (const auto& value : kDriverTexts) WriteText(key, value.valueName, driver.*value.member);
    WriteTexts(key, kDependentFiles, driver.dependentFiles);
}

void RemoveStoredDriver(const WideString& name) { DeleteKey(KeyBelow(kDriversKey, name)); }

StoredPrinter GetPrinterOf(HANDLE handle) {
    return ReadPrinterOf(handle, [](const WideString& name) { return ReadPrinter(name); });
}

StoredPrinterBrief GetPrinterBriefOf(HANDLE handle, StoreState state) {
    return ReadPrinterOf(handle, [&](const WideString& name) { return ReadPrinterBrief(name, state); });
}
