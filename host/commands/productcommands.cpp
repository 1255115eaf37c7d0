// product list
#include <facts/drivercapabilities.h>
#include <products/reader/productdescription.h>

#include <ostream>

#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/productfiles.h>
#include "commands.h"

namespace {

void ListProducts(std::ostream& out) {
    for (const std::filesystem::path& file : FindOwnProductFiles()) {
        const auto product = LoadProduct(file);
        const auto flags = product->capabilities.find(facts::kDriverCapabilityFlags);
        out << PathToUtf8(file.filename()) << "  " << product->controllerFamily << "  "
            << FormatHex(flags == product->capabilities.end() ? 0 : flags->second, 3) << "  " << product->modelName
            << '\n';
    }
}

}  // namespace

void AddProductCommands(Command app, HostContext& context) {
    app.AddGroup("product", "The products that a printer can be made of")
        .AddCommand("list", "One line a product: file, controller family, capability word, model",
                    [&context] { ListProducts(context.out); });
}
