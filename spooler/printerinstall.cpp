// Installing a product as a printer, and removing it.
#include "printerinstall.h"

#include "cacheskey.h"
#include "printername.h"

#include <products/reader/productdescription.h>

#include <sizedread.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <algorithm>
#include <stdexcept>

namespace {

// The spooler's functions take texts that they do not change as writable ones.
WCHAR* Writable(const WideString& text) { return const_cast<WCHAR*>(text.c_str()); }

// No name is longer than what is shown of one.
std::string Quoted(const WideString& text) {
    const std::string shown = Utf8FromWide(text.substr(0, kLongestPrinterName), BadText::Replace);
    return "'" + shown + (text.size() > kLongestPrinterName ? "...'" : "'");
}

[[noreturn]] void ThrowRefusal(const std::string& what) {
    const DWORD error = GetLastError();
    switch (error) {
        case ERROR_INVALID_PRINTER_NAME:
            throw std::runtime_error(what + ": a printer's name has 1 to 219 characters, without \\ , ! and controls");
        case ERROR_UNKNOWN_PORT:
            throw std::runtime_error(what + ": a port's name has 1 to 255 characters");
        case ERROR_PRINTER_ALREADY_EXISTS:
            throw std::runtime_error(what + ": there is a printer of that name; remove it first or take another name");
        case ERROR_DISK_FULL:
            throw SpoolerFailure(what + ": the disk that keeps the printers is full; make room and try again");
        default:
            throw SpoolerFailure(what + ": the spooler failed with error " + std::to_string(error));
    }
}

[[noreturn]] void ThrowExists(const WideString& name) {
    if (HalfPrinters::Contains(name)) throw std::runtime_error(HalfPrinters::Describe(name));
    SetLastError(ERROR_PRINTER_ALREADY_EXISTS);
    ThrowRefusal("The printer " + Quoted(name) + " cannot be added");
}

// Ports with one value share their caches.
WideString GetPortIndex(const WideString& port) {
    WideString index = GetCacheKeyName(port);
    LowerRegistryName(index);
    return index;
}

// The port's key is given in the terms of its caches, which it stands for.
WideString GetPortKey(const WideString& port) {
    return W("SYSTEM\\CurrentControlSet\\Control\\Print\\Monitors\\Morvane Port\\Ports\\") + GetCacheKeyName(port);
}

// False when there is such a port. Of several processes that add printers at once each makes another.
bool MakePort(const WideString& port) {
    UniqueKey key;
    DWORD disposition = 0;
    const LSTATUS status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, GetPortKey(port).c_str(), 0, nullptr,
                                           REG_OPTION_NON_VOLATILE, KEY_READ, nullptr, key.Put(), &disposition);
    if (status == ERROR_SUCCESS) return disposition == REG_CREATED_NEW_KEY;
    SetLastError(static_cast<DWORD>(status));
    ThrowRefusal("The port " + Quoted(port) + " cannot be made");
}

void GiveBackPort(const WideString& port) { RegDeleteTreeW(HKEY_LOCAL_MACHINE, GetPortKey(port).c_str()); }

// What is left of a printer that had the port before would be taken for the new one's capabilities.
void ClearCaches(const WideString& port) {
    for (const HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) RegDeleteTreeW(hive, GetCachesKey(port).c_str());
}

void AddDriver(const ProductDescription& product, const WideString& driver) {
    WideString dataFile = product.file.string<WCHAR>();
    WideString files;
    for (const std::string& file : ListDependentFiles(product)) files += WidenUtf8(file) + W('\0');
    WideString driverPath = WidenUtf8(kCoreDriverFile), configFile = WidenUtf8(kCoreConfigFile);
    DRIVER_INFO_3W info{};
    info.cVersion = 3;
    info.pName = Writable(driver);
    info.pDriverPath = Writable(driverPath);
    info.pDataFile = Writable(dataFile);
    info.pConfigFile = Writable(configFile);
    info.pDependentFiles = Writable(files);
    if (!AddPrinterDriverW(nullptr, 3, reinterpret_cast<LPBYTE>(&info)))
        ThrowRefusal("The driver " + Quoted(driver) + " cannot be added");
}

// As the spooler has it; empty members when it has no such printer.
PrinterRow ReadPrinter(HANDLE printer) {
    SizedBytes record;
    const DWORD error = record.ReadWithLastError(
        [&](BYTE* buffer, DWORD bytes, DWORD* needed) { return GetPrinterW(printer, 2, buffer, bytes, needed); });
    if (error != ERROR_SUCCESS || !record.As<PRINTER_INFO_2W>()) return {};
    const PRINTER_INFO_2W& info = *record.As<PRINTER_INFO_2W>();
    return {record.Text<WideString>(info.pPrinterName), record.Text<WideString>(info.pPortName),
            record.Text<WideString>(info.pDriverName)};
}

}  // namespace

void PrinterInstaller::LookAtPorts() {
    printersOfPorts_.clear();
    for (const PrinterRow& row : ListPrinterPorts()) printersOfPorts_.emplace(GetPortIndex(row.port), row.name);
}

bool PrinterInstaller::IsPortUsed(const WideString& port, const WideString& exceptBy) const {
    const auto [first, last] = printersOfPorts_.equal_range(GetPortIndex(port));
    return std::any_of(first, last, [&](const auto& entry) { return !EqualRegistryNames(entry.second, exceptBy); });
}

// Printers of one port are of one product. One that is there no more counts for nothing.
void PrinterInstaller::CheckPort(const WideString& port, const WideString& driver) const {
    const auto [first, last] = printersOfPorts_.equal_range(GetPortIndex(port));
    for (auto entry = first; entry != last; ++entry) {
        const UniquePrinter other = OpenPrinterByName(entry->second);
        if (!other || EqualRegistryNames(ReadPrinter(other.Get()).driver, driver)) continue;
        throw std::runtime_error("The port " + Quoted(port) + " is used by the printer " + Quoted(entry->second) +
                                 " of another product; give another port or none");
    }
}

// The wanted port, or one that no printer has.
WideString PrinterInstaller::TakePort(const WideString& wanted, const WideString& driver) {
    if (!wanted.empty()) {
        // Another process's printer may have it since this one looked.
        if (!MakePort(wanted) && !IsPortUsed(wanted, {})) LookAtPorts();
        CheckPort(wanted, driver);
        return wanted;
    }
    for (;;) {
        WideString name = WidenUtf8("MV_" + std::to_string(nextPort_++) + ":");
        if (!IsPortUsed(name, {}) && MakePort(name)) return name;
    }
}

WideString PrinterInstaller::Add(const WideString& name, const std::filesystem::path& productFile,
                                 const WideString& wantedPort, const Completion& complete,
                                 const WideString& driverName) {
    const auto product = LoadProduct(std::filesystem::absolute(productFile));
    const WideString driver = driverName.empty() ? WidenUtf8(product->modelName) : driverName;
    if (!IsPrinterName(name)) {
        SetLastError(ERROR_INVALID_PRINTER_NAME);
        ThrowRefusal("The printer " + Quoted(name) + " cannot be added");
    }
    if (OpenPrinterByName(name)) ThrowExists(name);
    WideString port = TakePort(wantedPort, driver);
    const bool isShared = IsPortUsed(port, {});
    try {
        if (!HalfPrinters::Add(name, port)) ThrowExists(name);
        if (OpenPrinterByName(name)) {  // another process has just added it
            HalfPrinters::Remove(name);
            ThrowExists(name);
        }
    } catch (...) {
        if (!isShared) GiveBackPort(port);
        throw;
    }
    try {
        if (!addedDrivers_.contains(driver)) {
            doubtfulDrivers_.insert(driver);
            AddDriver(*product, driver);
            addedDrivers_.insert(driver);
        }
        if (!isShared) ClearCaches(port);
        AddToSpooler(name, port, driver, complete);
    } catch (...) {
        if (!OpenPrinterByName(name)) RemoveParts(name, port);  // else it stays noted as a half
        addedDrivers_.erase(driver);                            // for the caller may take all of it back
        throw;
    }
    doubtfulDrivers_.erase(driver);
    printersOfPorts_.emplace(GetPortIndex(port), name);
    HalfPrinters::Remove(name);
    return port;
}

void PrinterInstaller::AddToSpooler(const WideString& name, const WideString& port, const WideString& driver,
                                    const Completion& complete) {
    PRINTER_INFO_2W info{};
    info.pPrinterName = Writable(name);
    info.pPortName = Writable(port);
    info.pDriverName = Writable(driver);
    const UniquePrinter printer(AddPrinterW(nullptr, 2, reinterpret_cast<LPBYTE>(&info)));
    if (!printer) ThrowRefusal("The printer " + Quoted(name) + " cannot be added");
    if (!complete) return;
    try {
        complete(printer.Get(), driver);
    } catch (...) {
        DeletePrinter(printer.Get());
        throw;
    }
}

// What a printer has beside the spooler's record, its note last.
void PrinterInstaller::RemoveParts(const WideString& name, const WideString& port) {
    if (!port.empty() && !IsPortUsed(port, name)) {
        ClearCaches(port);
        GiveBackPort(port);
    }
    const auto [first, last] = printersOfPorts_.equal_range(GetPortIndex(port));
    const auto own =
        std::find_if(first, last, [&](const auto& entry) { return EqualRegistryNames(entry.second, name); });
    if (own != last) printersOfPorts_.erase(own);
    HalfPrinters::Remove(name);
}

void PrinterInstaller::Remove(const WideString& name) {
    const UniquePrinter printer = OpenPrinterByName(name);
    if (!printer && !HalfPrinters::Contains(name)) throw std::runtime_error("There is no printer " + Quoted(name));
    PrinterRow row = printer ? ReadPrinter(printer.Get()) : PrinterRow{};
    if (row.name.empty()) row.name = name;
    if (row.port.empty()) row.port = HalfPrinters::GetPort(row.name);
    HalfPrinters::Add(row.name, row.port);
    if (printer && !DeletePrinter(printer.Get()))
        ThrowRefusal("The printer " + Quoted(row.name) + " cannot be removed");
    RemoveParts(row.name, row.port);
    if (!row.driver.empty()) doubtfulDrivers_.insert(row.driver);
}

// A driver that a printer uses stays: the spooler refuses.
void PrinterInstaller::RemoveUnusedDrivers() {
    for (const WideString& driver : doubtfulDrivers_) DeletePrinterDriverW(nullptr, nullptr, Writable(driver));
    doubtfulDrivers_.clear();
    addedDrivers_.clear();
}

WideString InstallPrinter(const WideString& name, const std::filesystem::path& productFile, const WideString& port,
                          const PrinterInstaller::Completion& complete, const WideString& driverName) {
    PrinterInstaller installer;
    try {
        return installer.Add(name, productFile, port, complete, driverName);
    } catch (...) {
        installer.RemoveUnusedDrivers();
        throw;
    }
}

void RemovePrinter(const WideString& name) {
    PrinterInstaller installer;
    installer.Remove(name);
    installer.RemoveUnusedDrivers();
}
