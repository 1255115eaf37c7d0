// A printer of a product in the store that is open.
#include "throwawayprinter.h"

#include <capabilitycaches.h>
#include <printerinstall.h>

#include <algorithm>

#include <subsystem/installedprinter.h>

CXString NameThrowawayPrinter(const ProductDescription& product) {
    std::string name = product.modelName;
    std::replace_if(
        name.begin(), name.end(), [](char unit) { return unit == '\\' || unit == ',' || unit == '!'; }, ' ');
    return CXString::FromUtf8(name);
}

CXString InstallThrowawayPrinter(const std::filesystem::path& productFile) {
    CXString name = NameThrowawayPrinter(*LoadProduct(productFile));
    InstallThrowawayPrinter(productFile, name);
    return name;
}

void InstallThrowawayPrinter(const std::filesystem::path& productFile, const CXString& name) {
    InstallPrinter(name.AsWideString(), productFile, WideString(), {}, name.AsWideString());
    RebuildCapabilityCaches(OpenInstalledPrinter(name).Get());
}
