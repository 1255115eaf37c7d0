// A printer of a product in the store in memory.
#include "throwawayprinter.h"

#include <capabilitycaches.h>
#include <printerinstall.h>
#include <products/reader/productdescription.h>

#include <algorithm>

#include <subsystem/installedprinter.h>

CXString InstallThrowawayPrinter(HostContext& context, const std::filesystem::path& productFile) {
    const auto product = LoadProduct(productFile);
    std::string name = product->modelName;
    std::replace_if(
        name.begin(), name.end(), [](char unit) { return unit == '\\' || unit == ',' || unit == '!'; }, ' ');
    CXString printer = CXString::FromUtf8(name);
    context.UseThrowawayStore();
    InstallPrinter(printer.AsWideString(), productFile, WideString());
    RebuildCapabilityCaches(OpenInstalledPrinter(printer).Get());
    return printer;
}
