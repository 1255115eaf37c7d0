// PrintDriver: the files of a printer's driver, and what its data file says.
#include <mvutil/printdriver.h>

#include <mvutil/formatting.h>

#include <mvutil/lackofmemory.h>
#include <mvutil/printer.h>
#include <mvutil/productofprinter.h>
#include <mvutil/throwfailure.h>
#include <products/reader/productdescription.h>

#include "operationmemory.h"

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

// A driver's record, or why there is none.
struct DriverAnswer {
    OperationMemory::Record record;
    DWORD error = ERROR_SUCCESS;

    const DRIVER_INFO_3W& operator*() const { return *record->As<DRIVER_INFO_3W>(); }
    CXString Text(const WCHAR* text) const { return record->Text<CXString>(text); }
    std::vector<CXString> Texts(const WCHAR* list) const { return record->Texts<CXString>(list); }
};

DriverAnswer ReadDriver(HANDLE printer) {
    DriverAnswer answer;
    if (!Printer::IsValidHandle(printer)) return {nullptr, ERROR_INVALID_HANDLE};
    answer.record = RememberedOr(&OperationMemory::drivers, printer, [&]() -> OperationMemory::Record {
        const auto record = std::make_shared<SizedBytes>();
        answer.error = record->ReadWithLastError([&](BYTE* buffer, DWORD size, DWORD* needed) {
            return GetPrinterDriverW(printer, nullptr, 3, buffer, size, needed);
        });
        if (answer.error == ERROR_SUCCESS && !record->As<DRIVER_INFO_3W>()) answer.error = ERROR_INVALID_DATA;
        return answer.error == ERROR_SUCCESS ? record : nullptr;
    });
    return answer;
}

DriverAnswer RequireDriver(HANDLE printer, const WCHAR* methodName) {
    DriverAnswer answer = ReadDriver(printer);
    if (answer.error != ERROR_SUCCESS) ThrowPrintDriverFailure(methodName, answer.error);
    return answer;
}

}  // namespace

ULONGLONG PrintDriver::GetDriverCapability(HANDLE printer, int capability) const {
    const auto product = LoadProductOfPrinter(printer);
    if (!product) return 0;
    const auto found = product->capabilities.find(static_cast<DWORD>(capability));
    return found == product->capabilities.end() ? 0 : found->second;
}

CXString PrintDriver::GetDriverFiles(HANDLE printer, int kind, const CXString& filter) const {
    const DriverAnswer driver = RequireDriver(printer, W("PrintDriver::GetDriverFiles"));
    const DRIVER_INFO_3W& info = *driver;
    std::vector<CXString> files;
    if (kind & kMainFiles) {
        for (const WCHAR* file : {info.pDriverPath, info.pDataFile, info.pConfigFile})
            files.push_back(driver.Text(file));
    }
    if (kind & kDependentFiles) {
        for (const CXString& file : driver.Texts(info.pDependentFiles)) files.push_back(file);
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
    const DriverAnswer driver = RequireDriver(printer, W("PrintDriver::GetDriverDependentFiles"));
    std::vector<CXString> names;
    for (const CXString& file : driver.Texts((*driver).pDependentFiles)) {
        const std::size_t folder = file.AsWideString().find_last_of(W("\\/"));
        names.push_back(folder == WideString::npos ? file : CXString(file.AsWideString().substr(folder + 1)));
    }
    return names;
}

CXString PrintDriver::GetMorvaneDriverDataFilePathFromHandle(HANDLE printer) {
    constexpr const WCHAR* kMethod = W("PrintDriver::GetMorvaneDriverDataFilePathFromHandle");
    const DriverAnswer driver = RequireDriver(printer, kMethod);
    CXString file = driver.Text((*driver).pDataFile);
    if (file.IsEmpty()) ThrowPrintDriverFailure(kMethod, ERROR_FILE_NOT_FOUND);
    return file;
}

int PrintDriver::GetInstallationStateFromHandle(HANDLE printer) {
    const DriverAnswer driver = ReadDriver(printer);
    switch (driver.error) {
        case ERROR_SUCCESS:
            break;
        case ERROR_INVALID_HANDLE:
        case ERROR_INVALID_PRINTER_NAME:
            return 0;
        case ERROR_UNKNOWN_PRINTER_DRIVER:
            return 1;
        default:
            ThrowPrintDriverFailure(W("PrintDriver::GetInstallationStateFromHandle"), driver.error);
    }
    const CXString file = driver.Text((*driver).pDataFile);
    if (file.IsEmpty()) return 2;
    return LoadProductFile(file) ? kInstallationComplete : 3;
}
