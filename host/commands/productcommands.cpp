// product list
#include <facts/drivercapabilities.h>
#include <products/reader/productdescription.h>

#include <nlohmann/json.hpp>

#include <memory>
#include <ostream>

#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/jsontext.h>
#include <subsystem/productfiles.h>
#include "commands.h"

namespace {

using Json = nlohmann::ordered_json;

void ListProducts(std::ostream& out, bool json) {
    Json rows = Json::array();
    for (const std::filesystem::path& file : FindOwnProductFiles()) {
        const auto product = LoadProduct(file);
        const auto found = product->capabilities.find(facts::kDriverCapabilityFlags);
        const ULONGLONG flags = found == product->capabilities.end() ? 0 : found->second;
        rows.push_back({{"name", NameProduct(file)},
                        {"model", product->modelName},
                        {"controllerFamily", product->controllerFamily},
                        {"capabilityWord", flags},
                        {"file", PathToUtf8(file)}});
        if (!json)
            out << NameProduct(file) << "  " << product->controllerFamily << "  " << FormatHex(flags, 3) << "  "
                << product->modelName << '\n';
    }
    if (json) out << FormatJson(rows) << '\n';
}

}  // namespace

void AddProductCommands(Command app, HostContext& context) {
    const auto json = std::make_shared<bool>(false);
    const Command product = app.AddGroup("product", "The products that a printer can be made of");
    AddProductCheckCommand(product, context);
    AddProductNewCommand(product, context);
    AddProductShowCommand(product, context);
    product
        .AddCommand("list", "One line a product: name, controller family, capability word, model",
                    [&context, json] { ListProducts(context.out, *json); })
        .AddFlag("--json", *json, kJsonRows);
}
