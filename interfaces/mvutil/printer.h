// Printer: what the driver family reads and writes of a printer through the spooler.
#pragma once

#include <mvutil/bytebuffer.h>

class MVUTIL_API Printer {
public:
    explicit Printer(HANDLE printer);  // the handle stays the caller's

    static bool IsValidHandle(HANDLE printer) noexcept;  // neither null nor all ones

    HANDLE GetHandle() const noexcept { return printer_; }
    // All of these throw ExceptionPrinterFailure when the spooler refuses.
    CXString GetPrinterName() const;
    CXString GetPrinterPort() const;
    // False when the value does not exist; else its registry type and bytes.
    bool GetPrinterDataW(const CXString& name, DWORD& type, ByteBuffer& value) const;
    void SetPrinterDataW(const CXString& name, DWORD type, const void* value, DWORD bytes) const;

    // Tells every process that DEVMODEs which it keeps of this printer are out of date: counts the printer data
    // "XDevmodeCacheStamp" (REG_DWORD) up. Whoever keeps a DEVMODE keeps the stamp beside it and drops both when the
    // printer's differs. Nothing happens when the caller may not change the printer. Never throws.
    void ClearDevmode1stLevelCache() const noexcept;

private:
    HANDLE printer_;
};
