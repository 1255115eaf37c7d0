// InstalledPrinter: an open printer with the product that it was made of.
#include "installedprinter.h"

#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <winspool.h>

#include "hosterror.h"

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

InstalledPrinter::InstalledPrinter(const CXString& name)
    : name_(name),
      handle_(OpenInstalledPrinter(name)),
      port_(Printer(GetHandle()).GetPrinterPort()),
      product_(LoadProduct(PrintDriver::GetMorvaneDriverDataFilePathFromHandle(GetHandle()).AsWideString())) {}
