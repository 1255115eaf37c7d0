// product check: what is wrong with product files.
#include <nlohmann/json.hpp>

#include <memory>
#include <ostream>

#include <convert/throwawayprinter.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>
#include <subsystem/jsontext.h>
#include <subsystem/productcheck.h>
#include <subsystem/productfiles.h>
#include "commands.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

struct CheckOptions {
    std::string file;
    bool json = false;
};

// The product files that a user means: one, that of a product's folder, or those of a folder of products.
std::vector<fs::path> FindFiles(const std::string& named) {
    std::error_code error;
    const fs::path path = fs::absolute(PathFromUtf8(named), error).lexically_normal();
    if (!fs::is_directory(path, error)) return {FindProductFile(named)};
    const fs::path folder = path.has_filename() ? path : path.parent_path();
    if (const fs::path own = folder / (folder.filename() += ".toml"); fs::is_regular_file(own, error)) return {own};
    std::vector<fs::path> files = FindProductFiles(folder);
    if (files.empty())
        throw NotFoundError("the folder '" + named +
                            "' holds no product; one is a file NAME.toml in it or NAME/NAME.toml below it");
    return files;
}

// What the component makes of it is tried when the files are good.
ProductFaults CheckProduct(HostContext& context, const fs::path& file) {
    ProductFaults faults = CheckProductFiles(file);
    if (!faults.empty()) return faults;
    context.UseThrowawayStore();
    return CheckProductPapers(PrintSession(InstallThrowawayPrinter(file)));
}

void RunCheck(HostContext& context, const CheckOptions& options) {
    Json rows = Json::array();
    for (const fs::path& file : FindFiles(options.file)) {
        const ProductFaults faults = CheckProduct(context, file);
        if (!faults.empty()) context.exitStatus = kExitFailed;
        rows.push_back({{"name", NameProduct(file)}, {"file", PathToUtf8(file)}, {"faults", faults}});
        if (options.json) continue;
        for (const std::string& fault : faults) context.out << fault << '\n';
        context.out << NameProduct(file) << ": "
                    << (faults.empty()       ? "no fault"
                        : faults.size() == 1 ? "1 fault"
                                             : std::to_string(faults.size()) + " faults")
                    << '\n';
    }
    if (options.json) context.out << FormatJson(rows) << '\n';
}

}  // namespace

void AddProductCheckCommand(Command product, HostContext& context) {
    const auto options = std::make_shared<CheckOptions>();
    const Command check =
        product.AddCommand("check", "Shows what is wrong with a product's files, all at once, with file and line",
                           [&context, options] { RunCheck(context, *options); });
    check
        .AddOption(kProductValue, options->file,
                   "A product's file, its folder, a folder of products, or the name of one here")
        .Required();
    check.AddFlag("--json", options->json, kJsonRows);
}
