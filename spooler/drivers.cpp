// Printer drivers: adding, deleting and listing them, and the folder of their files.
#include "infopacker.h"
#include "printerhandles.h"
#include "questioncount.h"
#include "spoolerregistry.h"
#include "storedfields.h"

#include <algorithm>

namespace {

// A list of texts as a caller hands it in, each text with its NUL; the empty text ends it.
WideString CopyTexts(const WCHAR* texts) {
    WideString copy;
    for (const WCHAR* text = texts; text && *text; text += std::char_traits<WCHAR>::length(text) + 1) {
        copy += text;
        copy += W('\0');
    }
    return copy;
}

void RequireEnvironment(const WCHAR* environment) {
    Require(!environment || !*environment || EqualRegistryNames(environment, kEnvironment), ERROR_INVALID_ENVIRONMENT);
}

// The folder that the store names, else "drivers" beside the program.
std::string GetDriverDirectory() {
    if (const UniqueKey key = OpenKey(kPrintKey))
        if (const WideString directory = ReadText(key, W("DriverDirectory")); !directory.empty())
            return NarrowToAnsi(directory);
    std::string path(32768, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path.resize(path.find_last_of("\\/") == std::string::npos ? 0 : path.find_last_of("\\/") + 1);
    return path + "drivers";
}

}  // namespace

BOOL WINAPI AddPrinterDriverW(LPWSTR server, DWORD level, LPBYTE information) {
    return AnswerGuarded([&] {
        Require(level == 3, ERROR_INVALID_LEVEL);
        Require(information && (!server || !*server), ERROR_INVALID_PARAMETER);
        const auto& info = *reinterpret_cast<const DRIVER_INFO_3W*>(information);
        RequireEnvironment(info.pEnvironment);
        StoredDriver driver;
        driver.name = TextOrEmpty(info.pName);
        for (const auto& text : kDriverTexts) driver.*text.member = TextOrEmpty(info.*text.field);
        driver.dependentFiles = CopyTexts(info.pDependentFiles);
        Require(info.cVersion == kDriverVersion && IsDriverName(driver.name) && !driver.driverPath.empty() &&
                    !driver.dataFile.empty() && !driver.configFile.empty(),
                ERROR_INVALID_PARAMETER);
        WriteDriver(driver);
    });
}

BOOL WINAPI DeletePrinterDriverW(LPWSTR server, LPWSTR environment, LPWSTR driver) {
    return AnswerGuarded([&] {
        Require(driver && (!server || !*server), ERROR_INVALID_PARAMETER);
        RequireEnvironment(environment);
        Require(ReadDriver(driver).has_value(), ERROR_UNKNOWN_PRINTER_DRIVER);
        Require(!IsDriverUsed(driver), ERROR_PRINTER_DRIVER_IN_USE);
        RemoveStoredDriver(driver);
    });
}

BOOL WINAPI GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD bytes,
                              LPDWORD needed) {
    CountQuestion(SpoolerQuestion::Driver);
    return AnswerGuarded([&] {
        const StoreState state = GetStoreState();
        const WideString name = GetPrinterBriefOf(printer, state).driver;
        Require(level == 3, ERROR_INVALID_LEVEL);
        RequireEnvironment(environment);
        const auto driver = ReadDriver(name, state);
        Require(driver.has_value(), ERROR_UNKNOWN_PRINTER_DRIVER);
        InfoPacker<DRIVER_INFO_3W> packer;
        DRIVER_INFO_3W info{};
        info.cVersion = kDriverVersion;
        packer.AddItem(info);
        packer.AddText(&DRIVER_INFO_3W::pName, driver->name);
        packer.AddText(&DRIVER_INFO_3W::pEnvironment, kEnvironment);
        for (const auto& text : kDriverTexts) packer.AddText(text.field, (*driver).*text.member);
        packer.AddText(&DRIVER_INFO_3W::pDependentFiles, driver->dependentFiles);
        packer.Pack(buffer, bytes, needed);
    });
}

BOOL WINAPI GetPrinterDriverDirectoryA(LPSTR server, LPSTR environment, DWORD level, LPBYTE buffer, DWORD bytes,
                                       LPDWORD needed) {
    return AnswerGuarded([&] {
        Require(level == 1, ERROR_INVALID_LEVEL);
        Require(needed && (!server || !*server), ERROR_INVALID_PARAMETER);
        Require(!environment || !*environment || WidenUtf8(environment) == kEnvironment, ERROR_INVALID_ENVIRONMENT);
        const std::string directory = GetDriverDirectory();
        *needed = static_cast<DWORD>(directory.size() + 1);
        Require(buffer && bytes >= *needed, ERROR_INSUFFICIENT_BUFFER);
        std::copy_n(directory.c_str(), directory.size() + 1, reinterpret_cast<char*>(buffer));
    });
}
