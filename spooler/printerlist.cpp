// The printers that the spooler has.
#include "printerlist.h"

#include <sizedread.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

void CloseSpoolerHandle::operator()(HANDLE printer) const noexcept { ClosePrinter(printer); }

UniquePrinter OpenPrinterByName(const WideString& name) {
    UniquePrinter printer;
    SetLastError(ERROR_INVALID_PRINTER_NAME);
    // An empty name would open the print server.
    if (!name.empty()) OpenPrinterW(const_cast<WCHAR*>(name.c_str()), printer.Put(), nullptr);
    return printer;
}

std::vector<PrinterRow> ListPrinters() {
    SizedBytes records;
    DWORD count = 0;
    const DWORD error = records.ReadWithLastError([&](BYTE* buffer, DWORD bytes, DWORD* needed) {
        return EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, buffer, bytes, needed, &count);
    });
    if (error != ERROR_SUCCESS)
        throw SpoolerFailure("The printers cannot be listed: the spooler failed with error " + std::to_string(error));
    std::vector<PrinterRow> rows;
    const auto* const printers = records.As<PRINTER_INFO_2W>();
    for (std::size_t index = 0; index < records.CountRecords<PRINTER_INFO_2W>(count); ++index) {
        const PRINTER_INFO_2W& printer = printers[index];
        rows.push_back({records.Text<WideString>(printer.pPrinterName), records.Text<WideString>(printer.pPortName),
                        records.Text<WideString>(printer.pDriverName)});
    }
    return rows;
}
