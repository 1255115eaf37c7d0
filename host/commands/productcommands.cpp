// product list
#include <products/reader/productdescription.h>

#include <ostream>

#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/productfiles.h>
#include "commands.h"

namespace {

constexpr int kDriverFlagsCapability = 1984;

void ListProducts(std::ostream& out) {
    for (const std::filesystem::path& file : FindOwnProductFiles()) {
        const auto product = LoadProduct(file);
        const auto flags = product->capabilities.find(kDriverFlagsCapability);
        out << PathToUtf8(file.filename()) << "  " << product->controllerFamily << "  "
            << FormatHex(flags == product->capabilities.end() ? 0 : flags->second, 3) << "  " << product->modelName
            << '\n';
    }
}

}  // namespace

void AddProductCommands(CLI::App& app, HostContext& context) {
    CLI::App* product = app.add_subcommand("product", "The products that a printer can be made of");
    product->require_subcommand(1);
    product->add_subcommand("list", "One line a product: file, controller family, capability word, model")
        ->callback([&context] { context.action = [&context] { ListProducts(context.out); }; });
}
