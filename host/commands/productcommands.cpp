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

Json DescribeProduct(const std::filesystem::path& file) {
    const auto product = LoadProduct(file);
    const auto found = product->capabilities.find(facts::kDriverCapabilityFlags);
    return {{"name", NameProduct(file)},
            {"model", product->modelName},
            {"controllerFamily", product->controllerFamily},
            {"capabilityWord", found == product->capabilities.end() ? 0 : found->second},
            {"file", PathToUtf8(file)}};
}

// What a user has added and does not see in the list.
void ReportUnlisted(std::ostream& err, const KnownProducts& products) {
    for (const std::filesystem::path& folder : products.missing)
        err << "'" << PathToUtf8(folder) << "' of $" << kProductsVariable << " is no folder\n";
    for (const std::filesystem::path& file : products.hiding)
        err << "'" << NameProduct(file) << "' is '" << PathToUtf8(file)
            << "'; another product of that name is not used\n";
}

void ListProducts(HostContext& context, bool json) {
    Json rows = Json::array();
    const KnownProducts products = FindKnownProducts();
    for (const std::filesystem::path& file : products.files) {
        try {
            rows.push_back(DescribeProduct(file));
        } catch (const ProductError& error) {  // one of the user's own; the others are there
            context.err << "not listed: " << error.what() << '\n';
            context.exitStatus = kExitFailed;
        }
    }
    ReportUnlisted(context.err, products);
    if (json) {
        context.out << FormatJson(rows) << '\n';
        return;
    }
    for (const Json& row : rows)
        context.out << row["name"].get<std::string>() << "  " << row["controllerFamily"].get<DWORD>() << "  "
                    << FormatHex(row["capabilityWord"].get<ULONGLONG>(), 3) << "  " << row["model"].get<std::string>()
                    << '\n';
}

}  // namespace

void AddProductCommands(Command app, HostContext& context) {
    const auto json = std::make_shared<bool>(false);
    const Command product = app.AddGroup("product", "The products that a printer can be made of");
    AddProductCheckCommand(product, context);
    AddProductNewCommand(product, context);
    AddProductPackCommand(product, context);
    AddProductShowCommand(product, context);
    product
        .AddCommand("list", "One line a product: name, controller family, capability word, model",
                    [&context, json] { ListProducts(context, *json); })
        .AddFlag("--json", *json, kJsonRows);
}
