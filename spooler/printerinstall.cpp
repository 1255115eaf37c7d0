// Installing a product as a printer, and removing it.
#include "printerinstall.h"

#include "cacheskey.h"

#include <products/reader/productdescription.h>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <vector>

namespace {

// The spooler's functions take texts that they do not change as writable ones.
WCHAR* Writable(const WideString& text) { return const_cast<WCHAR*>(text.c_str()); }

std::string Quoted(const WideString& text) { return "'" + NarrowToUtf8(text) + "'"; }

[[noreturn]] void ThrowRefusal(const std::string& what) {
    const DWORD error = GetLastError();
    switch (error) {
        case ERROR_INVALID_PRINTER_NAME:
            throw std::runtime_error(what + ": a printer's name has 1 to 219 characters, without \\ , ! and controls");
        case ERROR_PRINTER_ALREADY_EXISTS:
            throw std::runtime_error(what + ": there is a printer of that name; remove it first or take another name");
        case ERROR_DISK_FULL:
            throw SpoolerFailure(what + ": the disk that keeps the printers is full; make room and try again");
        default:
            throw SpoolerFailure(what + ": the spooler failed with error " + std::to_string(error));
    }
}

bool SharesCaches(const WideString& a, const WideString& b) {
    return EqualRegistryNames(GetCachesKey(a), GetCachesKey(b));
}

bool IsPortUsed(const std::vector<PrinterRow>& printers, const WideString& port) {
    return std::any_of(printers.begin(), printers.end(),
                       [&](const PrinterRow& printer) { return SharesCaches(printer.port, port); });
}

// The port's key is given in the terms of its caches, which it stands for.
WideString GetPortKey(const WideString& port) {
    return W("SYSTEM\\CurrentControlSet\\Control\\Print\\Monitors\\Morvane Port\\Ports\\") + GetCacheKeyName(port);
}

// False when the port is taken. Of several processes that add printers at once each takes another.
bool TakePort(const WideString& port) {
    UniqueKey key;
    DWORD disposition = 0;
    const LSTATUS status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, GetPortKey(port).c_str(), 0, nullptr,
                                           REG_OPTION_NON_VOLATILE, KEY_READ, nullptr, key.Put(), &disposition);
    if (status == ERROR_SUCCESS) return disposition == REG_CREATED_NEW_KEY;
    SetLastError(static_cast<DWORD>(status));
    ThrowRefusal("The port " + Quoted(port) + " cannot be made");
}

void GiveBackPort(const WideString& port) { RegDeleteTreeW(HKEY_LOCAL_MACHINE, GetPortKey(port).c_str()); }

// A port that no printer has, given back unless it is kept.
class OwnPort {
public:
    explicit OwnPort(const std::vector<PrinterRow>& printers) {
        int number = 1;
        do {
            name_ = WidenUtf8("MV_" + std::to_string(number++) + ":");
        } while (IsPortUsed(printers, name_) || !TakePort(name_));
    }
    OwnPort(const OwnPort&) = delete;
    OwnPort& operator=(const OwnPort&) = delete;
    ~OwnPort() {
        if (!kept_) GiveBackPort(name_);
    }
    const WideString& GetName() const noexcept { return name_; }
    void Keep() noexcept { kept_ = true; }

private:
    WideString name_;
    bool kept_ = false;
};

// What is left of a printer that had the port before would be taken for the new one's capabilities.
void ClearCaches(const WideString& port) {
    for (const HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) RegDeleteTreeW(hive, GetCachesKey(port).c_str());
}

void AddDriver(const ProductDescription& product, const WideString& driver) {
    WideString dataFile = product.file.string<WCHAR>();
    WideString files;
    for (const std::string& file : product.dependentFiles) files += WidenUtf8(file) + W('\0');
    files += WidenUtf8(product.workflowLibrary) + W('\0');
    WideString driverPath = W("mvcored.dll"), configFile = W("mvcoreui.dll");
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

void RemoveUnusedDriver(const WideString& driver) {
    // A driver that another printer uses stays.
    DeletePrinterDriverW(nullptr, nullptr, Writable(driver));
}

}  // namespace

WideString InstallPrinter(const WideString& name, const std::filesystem::path& productFile, const WideString& port) {
    const auto product = LoadProduct(std::filesystem::absolute(productFile));
    const WideString driver = WidenUtf8(product->modelName);
    const auto printers = ListPrinters();
    std::optional<OwnPort> made;
    if (port.empty()) made.emplace(printers);
    WideString ownPort = made ? made->GetName() : port;
    for (const PrinterRow& other : printers)
        if (SharesCaches(other.port, ownPort) && !EqualRegistryNames(other.driver, driver))
            throw std::runtime_error("The port " + Quoted(ownPort) + " is used by the printer " + Quoted(other.name) +
                                     " of another product; give another port or none");
    AddDriver(*product, driver);
    PRINTER_INFO_2W info{};
    info.pPrinterName = Writable(name);
    info.pPortName = Writable(ownPort);
    info.pDriverName = Writable(driver);
    const UniquePrinter printer(AddPrinterW(nullptr, 2, reinterpret_cast<LPBYTE>(&info)));
    if (!printer) {
        const DWORD error = GetLastError();
        RemoveUnusedDriver(driver);
        SetLastError(error);
        ThrowRefusal("The printer " + Quoted(name) + " cannot be added");
    }
    if (made) made->Keep();
    if (!IsPortUsed(printers, ownPort)) ClearCaches(ownPort);
    return ownPort;
}

void RemovePrinter(const WideString& name) {
    const auto printers = ListPrinters();
    const auto found = std::find_if(printers.begin(), printers.end(),
                                    [&](const PrinterRow& printer) { return EqualRegistryNames(printer.name, name); });
    if (found == printers.end()) throw std::runtime_error("There is no printer " + Quoted(name));
    const UniquePrinter printer = OpenPrinterByName(found->name);
    if (!printer) ThrowRefusal("The printer " + Quoted(name) + " cannot be opened");
    if (!DeletePrinter(printer.Get())) ThrowRefusal("The printer " + Quoted(name) + " cannot be removed");
    if (!IsPortUsed(ListPrinters(), found->port)) {
        ClearCaches(found->port);
        GiveBackPort(found->port);
    }
    RemoveUnusedDriver(found->driver);
}
