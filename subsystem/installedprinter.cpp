// InstalledPrinter: an open printer with the product that it was made of.
#include "installedprinter.h"

#include <mvutil/morvaneexception.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <winspool.h>

#include "hosterror.h"
#include "hosttext.h"

void CloseSpoolerHandle::operator()(HANDLE printer) const noexcept { ClosePrinter(printer); }

UniqueHandle<HANDLE, CloseSpoolerHandle> OpenInstalledPrinter(const CXString& name) {
    WideString text(name.AsWideString());
    UniqueHandle<HANDLE, CloseSpoolerHandle> handle;
    // An empty name would open the print server.
    if (text.empty() || !OpenPrinterW(text.data(), handle.Put(), nullptr))
        throw InputError("there is no printer '" + name.ToUtf8() +
                         "'; 'printer list' shows those that there are, 'printer add' installs one");
    return handle;
}

namespace {

std::shared_ptr<const ProductDescription> LoadProductOf(HANDLE printer, const CXString& name) {
    CXString file;
    try {
        file = PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer);
    } catch (const ExceptionPrintDriverFailure&) {
        throw OperationError("the printer '" + name.ToUtf8() +
                             "' has no driver with a product; remove it and add it again");
    }
    return LoadProduct(file.AsWideString());
}

}  // namespace

InstalledPrinter::InstalledPrinter(const CXString& name)
    : name_(name),
      handle_(OpenInstalledPrinter(name)),
      port_(Printer(GetHandle()).GetPrinterPort()),
      product_(LoadProductOf(GetHandle(), name)) {}

bool IsPostScript(const ProductDescription& product) {
    constexpr DWORD kDriverFlagsCapability = 1984;
    constexpr ULONGLONG kPostScriptFlag = 0x200;
    const auto flags = product.capabilities.find(kDriverFlagsCapability);
    return flags != product.capabilities.end() && (flags->second & kPostScriptFlag) != 0;
}

std::vector<PrinterRow> ListInstalledPrinters() {
    std::vector<BYTE> buffer;
    DWORD needed = 0, count = 0;
    while (!EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, buffer.data(), static_cast<DWORD>(buffer.size()), &needed,
                          &count)) {
        const DWORD error = GetLastError();
        if (error != ERROR_INSUFFICIENT_BUFFER) throw OperationError("EnumPrintersW", HRESULT_FROM_WIN32(error));
        buffer.resize(needed);
    }
    const auto text = [](LPCWSTR field) { return field ? ToUtf8(field) : std::string(); };
    std::vector<PrinterRow> rows;
    const auto* printers = reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data());
    for (DWORD index = 0; index < count; ++index)
        rows.push_back(
            {text(printers[index].pPrinterName), text(printers[index].pPortName), text(printers[index].pDriverName)});
    return rows;
}
