// product new: a product to start from.
#include <memory>
#include <ostream>

#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/productcheck.h>
#include <subsystem/productcopy.h>
#include <subsystem/productfiles.h>
#include <subsystem/productkeys.h>
#include "commands.h"

namespace {

namespace fs = std::filesystem;

struct NewOptions {
    std::string name, from, folder;
};

void RunNew(HostContext& context, const NewOptions& options) {
    RequireProductName(options.name);
    const fs::path from = FindProductFile(options.from);
    const fs::path folder = PathFromUtf8(options.folder) / PathFromUtf8(options.name);
    std::error_code error;
    if (fs::exists(folder, error))
        throw InputError("there is a '" + PathToUtf8(folder) + "' already; take another name or folder");
    FlatFiles files = CopyProduct(from, options.name);
    std::string& text = files[options.name + ".toml"];
    text = ExplainProductFile(ReplaceProductValue(text, "", "model", '"' + options.name + '"'));
    MakeFolder(folder);
    try {
        for (const auto& [name, bytes] : files) WriteWholeFile(folder / PathFromUtf8(name), bytes);
    } catch (const HostError&) {
        fs::remove_all(folder, error);  // half a product is of no use
        throw;
    }
    const fs::path file = folder / PathFromUtf8(options.name + ".toml");
    context.out << PathToUtf8(file) << '\n';
    const ProductFaults faults = CheckProductFiles(file);
    for (const std::string& fault : faults) context.err << fault << '\n';
    if (!faults.empty()) context.exitStatus = kExitFailed;
}

}  // namespace

void AddProductNewCommand(Command product, HostContext& context) {
    const auto options = std::make_shared<NewOptions>();
    const Command added = product.AddCommand(
        "new", "Makes a product to start from, a folder with another one's files, each key of them explained",
        [&context, options] { RunNew(context, *options); });
    added.AddOption("NAME", options->name, "The new product's name, that of its folder and file").Required();
    added.AddOption("--from", options->from, "The product that it starts as ('product list') or its file")
        .Takes(kProductValue)
        .Required();
    added.AddOption(kFolderValue, options->folder, "Folder that the product's own is made in").Required().NotEmpty();
}
