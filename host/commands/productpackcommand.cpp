// product pack: the folder from which Windows installs products.
#include <kitversion.h>

#include <memory>
#include <ostream>

#include <subsystem/driverpackage.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/productfiles.h>
#include "commands.h"

namespace {

struct PackOptions {
    std::vector<std::string> products;
    std::string folder;
    PackageSettings settings{.version = MV_KIT_VERSION, .date = MV_KIT_DATE, .manufacturer = "Morvane"};
};

void RunPack(HostContext& context, const PackOptions& options) {
    std::vector<std::filesystem::path> products;
    for (const std::string& product : options.products) products.push_back(FindProductFile(product));
    DriverPackage package = MakeDriverPackage(products, options.settings);
    const std::filesystem::path folder = PathFromUtf8(options.folder);
    MakeFolder(folder);
    const auto inf = package.files.extract(kInfFile);  // last: what it names is there then
    for (const auto& [name, bytes] : package.files) WriteWholeFile(folder / PathFromUtf8(name), bytes);
    WriteWholeFile(folder / kInfFile, inf.mapped());
    context.out << PathToUtf8(folder / kInfFile) << '\n';
    for (const std::string& library : package.libraries) {
        std::error_code error;
        if (std::filesystem::is_regular_file(folder / PathFromUtf8(library), error)) continue;
        context.err << "missing: '" << library << "', which the INF names; lay it beside\n";
        context.exitStatus = kExitFailed;
    }
}

}  // namespace

void AddProductPackCommand(Command product, HostContext& context) {
    const auto options = std::make_shared<PackOptions>();
    const Command pack = product.AddCommand(
        "pack", "Makes the folder that Windows installs products from: mvptpc.inf and all files but the libraries",
        [&context, options] { RunPack(context, *options); });
    pack.AddArguments(kProductValue, options->products, "The products' names ('product list') or their files");
    pack.AddOption("-o,--out", options->folder, "Folder, with the driver's libraries for Windows or for them")
        .Required()
        .NotEmpty();
    pack.AddOption("--driver-version", options->settings.version, "The driver's version (default: the kit's)")
        .Takes("VERSION");
    pack.AddOption("--date", options->settings.date, "The driver's date, as 2026-01-31 (default: the kit's)")
        .Takes("DATE");
    pack.AddOption("--manufacturer", options->settings.manufacturer, "Whose printers these are (default: Morvane)")
        .Takes("COMPANY")
        .NotEmpty();
}
