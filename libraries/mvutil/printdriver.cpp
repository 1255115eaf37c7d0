// PrintDriver: the files of a printer's driver, and what its data file says.
#include <mvutil/printdriver.h>

#include <mvutil/formatting.h>

#include <mvutil/lackofmemory.h>
#include <mvutil/printer.h>
#include <mvutil/productofprinter.h>
#include <mvutil/throwfailure.h>
#include <products/reader/productdescription.h>

#include <sizedread.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

namespace {

constexpr int kMainFiles = 1;
constexpr int kDependentFiles = 8;

[[noreturn]] void ThrowPrintDriverFailure(const WCHAR* methodName, DWORD error, LONG line = __builtin_LINE()) {
    ThrowIfLackOfMemory(error);
    CXString message;
    message.Format(W("The print spooler answered with error %u for the printer's driver"), error);
    ThrowFailure(GetExceptionPrintDriverFailure, message, methodName, W("printdriver"), line);
}

DWORD ReadDriver(HANDLE printer, SizedBytes& record) {
    if (!Printer::IsValidHandle(printer)) return ERROR_INVALID_HANDLE;
    const DWORD error = record.ReadWithLastError([&](BYTE* buffer, DWORD size, DWORD* needed) {
        return GetPrinterDriverW(printer, nullptr, 3, buffer, size, needed);
    });
    return error == ERROR_SUCCESS && !record.As<DRIVER_INFO_3W>() ? ERROR_INVALID_DATA : error;
}

}  // namespace

ULONGLONG PrintDriver::GetDriverCapability(HANDLE printer, int capability) const {
    const auto product = LoadProductOfPrinter(printer);
    if (!product) return 0;
    const auto found = product->capabilities.find(static_cast<DWORD>(capability));
    return found == product->capabilities.end() ? 0 : found->second;
}

CXString PrintDriver::GetDriverFiles(HANDLE printer, int kind, const CXString& filter) const {
    SizedBytes record;
    const DWORD error = ReadDriver(printer, record);
    if (error != ERROR_SUCCESS) ThrowPrintDriverFailure(W("PrintDriver::GetDriverFiles"), error);
    const DRIVER_INFO_3W& driver = *record.As<DRIVER_INFO_3W>();
    std::vector<CXString> files;
    if (kind & kMainFiles) {
        for (const WCHAR* file : {driver.pDriverPath, driver.pDataFile, driver.pConfigFile})
            files.push_back(record.Text<CXString>(file));
    }
    if (kind & kDependentFiles) {
        for (const CXString& file : record.Texts<CXString>(driver.pDependentFiles)) files.push_back(file);
    }
    CXString wanted = filter;
    wanted.MakeLower();
    CXString text;
    for (CXString& file : files) {
        file.MakeLower();
        if (!file.IsEmpty() && file.Find(wanted) >= 0) text += file + W("\n");
    }
    return text;
}

std::vector<CXString> PrintDriver::GetDriverDependentFiles(HANDLE printer) const {
    SizedBytes record;
    const DWORD error = ReadDriver(printer, record);
    if (error != ERROR_SUCCESS) ThrowPrintDriverFailure(W("PrintDriver::GetDriverDependentFiles"), error);
    std::vector<CXString> names;
    for (const CXString& file : record.Texts<CXString>(record.As<DRIVER_INFO_3W>()->pDependentFiles)) {
        const std::size_t folder = file.AsWideString().find_last_of(W("\\/"));
        names.push_back(folder == WideString::npos ? file : CXString(file.AsWideString().substr(folder + 1)));
    }
    return names;
}

CXString PrintDriver::GetMorvaneDriverDataFilePathFromHandle(HANDLE printer) {
    constexpr const WCHAR* kMethod = W("PrintDriver::GetMorvaneDriverDataFilePathFromHandle");
    SizedBytes record;
    const DWORD error = ReadDriver(printer, record);
    if (error != ERROR_SUCCESS) ThrowPrintDriverFailure(kMethod, error);
    CXString file = record.Text<CXString>(record.As<DRIVER_INFO_3W>()->pDataFile);
    if (file.IsEmpty()) ThrowPrintDriverFailure(kMethod, ERROR_FILE_NOT_FOUND);
    return file;
}

int PrintDriver::GetInstallationStateFromHandle(HANDLE printer) {
    SizedBytes record;
    switch (const DWORD error = ReadDriver(printer, record)) {
        case ERROR_SUCCESS:
            break;
        case ERROR_INVALID_HANDLE:
        case ERROR_INVALID_PRINTER_NAME:
            return 0;
        case ERROR_UNKNOWN_PRINTER_DRIVER:
            return 1;
        default:
            ThrowPrintDriverFailure(W("PrintDriver::GetInstallationStateFromHandle"), error);
    }
    const CXString file = record.Text<CXString>(record.As<DRIVER_INFO_3W>()->pDataFile);
    if (file.IsEmpty()) return 2;
    return LoadProductFile(file) ? kInstallationComplete : 3;
}
