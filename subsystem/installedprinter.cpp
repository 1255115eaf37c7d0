// InstalledPrinter: an open printer with the product that it was made of.
#include "installedprinter.h"

#include <facts/drivercapabilities.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>

#include "hosterror.h"
#include "hosttext.h"
#include "nearestname.h"

UniquePrinter OpenInstalledPrinter(const CXString& name) {
    UniquePrinter printer = OpenPrinterByName(name.AsWideString());
    if (printer) return printer;
    std::vector<std::string> names;
    for (const PrinterRow& row : ListPrinters()) names.push_back(ToUtf8(row.name));
    throw NotFoundError("there is no printer '" + name.ToUtf8() +
                        "'; 'printer list' shows those that there are, 'printer add' installs one" +
                        SuggestName(name.ToUtf8(), names));
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
    const auto flags = product.capabilities.find(facts::kDriverCapabilityFlags);
    return flags != product.capabilities.end() && (flags->second & facts::kPostScriptDeviceFlag) != 0;
}
