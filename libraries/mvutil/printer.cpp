// Printer: name, port and printer data through the spooler.
#include <mvutil/printer.h>

#include <mvutil/formatting.h>

#include <mvutil/lackofmemory.h>
#include <mvutil/throwfailure.h>

#include "operationmemory.h"

#include <sizedread.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

namespace {

[[noreturn]] void ThrowPrinterFailure(const WCHAR* methodName, DWORD error, LONG line = __builtin_LINE()) {
    ThrowIfLackOfMemory(error);
    CXString message;
    message.Format(W("The print spooler answered with error %u"), error);
    ThrowFailure(GetExceptionPrinterFailure, message, methodName, W("printer"), line);
}

OperationMemory::Record AskForPrinter(HANDLE printer, const WCHAR* methodName) {
    const auto record = std::make_shared<SizedBytes>();
    const DWORD error = record->ReadWithLastError(
        [&](BYTE* buffer, DWORD size, DWORD* needed) { return GetPrinterW(printer, 5, buffer, size, needed); });
    if (error != ERROR_SUCCESS) ThrowPrinterFailure(methodName, error);
    if (!record->As<PRINTER_INFO_5W>()) ThrowPrinterFailure(methodName, ERROR_INVALID_DATA);
    return record;
}

CXString ReadText(HANDLE printer, LPWSTR PRINTER_INFO_5W::*field, const WCHAR* methodName) {
    if (!Printer::IsValidHandle(printer)) ThrowPrinterFailure(methodName, ERROR_INVALID_HANDLE);
    const auto record =
        RememberedOr(&OperationMemory::printers, printer, [&] { return AskForPrinter(printer, methodName); });
    return record->Text<CXString>(record->As<PRINTER_INFO_5W>()->*field);
}

}  // namespace

Printer::Printer(HANDLE printer) : printer_(printer) {}

bool Printer::IsValidHandle(HANDLE printer) noexcept { return printer && printer != INVALID_HANDLE_VALUE; }

CXString Printer::GetPrinterName() const {
    return ReadText(printer_, &PRINTER_INFO_5W::pPrinterName, W("Printer::GetPrinterName"));
}

CXString Printer::GetPrinterPort() const {
    return ReadText(printer_, &PRINTER_INFO_5W::pPortName, W("Printer::GetPrinterPort"));
}

bool Printer::GetPrinterDataW(const CXString& name, DWORD& type, ByteBuffer& value) const {
    constexpr const WCHAR* kMethod = W("Printer::GetPrinterDataW");
    if (!IsValidHandle(printer_)) ThrowPrinterFailure(kMethod, ERROR_INVALID_HANDLE);
    SizedBytes bytes;
    DWORD valueType = REG_NONE;
    const DWORD error = bytes.Read([&](BYTE* buffer, DWORD size, DWORD* needed) {
        return ::GetPrinterDataW(printer_, const_cast<LPWSTR>(name.GetString()), &valueType, buffer, size, needed);
    });
    if (error == ERROR_FILE_NOT_FOUND) return false;
    if (error != ERROR_SUCCESS) ThrowPrinterFailure(kMethod, error);
    type = valueType;
    value.setWithLpbyte(bytes.Get().data(), bytes.Get().size());
    return true;
}

void Printer::SetPrinterDataW(const CXString& name, DWORD type, const void* value, DWORD bytes) const {
    constexpr const WCHAR* kMethod = W("Printer::SetPrinterDataW");
    if (!IsValidHandle(printer_)) ThrowPrinterFailure(kMethod, ERROR_INVALID_HANDLE);
    const auto data = const_cast<LPBYTE>(static_cast<const BYTE*>(value));
    const DWORD error = ::SetPrinterDataW(printer_, const_cast<LPWSTR>(name.GetString()), type, data, bytes);
    if (error != ERROR_SUCCESS) ThrowPrinterFailure(kMethod, error);
}

void Printer::ClearDevmode1stLevelCache() const noexcept {
    constexpr const WCHAR* kStamp = W("XDevmodeCacheStamp");
    try {
        DWORD type = REG_NONE;
        ByteBuffer value;
        const bool isStamped = GetPrinterDataW(kStamp, type, value) && type == REG_DWORD;
        const DWORD stamp = isStamped ? static_cast<DWORD>(value.getAsLongValue()) + 1 : 1;
        SetPrinterDataW(kStamp, REG_DWORD, &stamp, sizeof stamp);
    } catch (...) {  // a user without the right: kept DEVMODEs stay until their processes end
    }
}
