// product show: what a product offers, for reading in a terminal or for programs.
#include <nlohmann/json.hpp>

#include <memory>
#include <ostream>

#include <convert/throwawayprinter.h>
#include <report/productdata.h>
#include <subsystem/explain/paperwords.h>
#include <subsystem/hosttext.h>
#include <subsystem/jsontext.h>
#include <subsystem/productfiles.h>
#include "commands.h"

namespace {

using Json = nlohmann::ordered_json;

struct ShowOptions {
    std::string name;
    bool json = false;
};

std::string Text(const Json& value) { return value.is_string() ? value.get<std::string>() : value.dump(); }

// The name in a column; names are UTF-8, whose characters count.
std::string Column(const Json& row) {
    constexpr std::size_t kColumn = 36;
    std::string name = row.at("name").get<std::string>();
    const std::size_t units = ToWide(name).value_or(WideString()).size();
    return name.append(units < kColumn ? kColumn - units : 1, ' ');
}

void PrintPapers(const Json& papers, std::ostream& out) {
    out << "\npapers: size; imageable area from the upper left corner\n";
    for (const Json& paper : papers) {
        out << "  " << Column(paper);
        if (!paper.contains("area")) {
            out << "sides are the user's\n";
            continue;
        }
        const auto side = [](const Json& of, const char* key) { return of.at(key).get<LONG>(); };
        const Json& area = paper.at("area");
        out << DescribeSize(side(paper, "width"), side(paper, "length")) << "; "
            << DescribeSize(side(area, "width"), side(area, "length")) << " at "
            << DescribeSize(side(area, "left"), side(area, "top")) << '\n';
    }
}

void PrintTrays(const Json& trays, std::ostream& out) {
    out << "\ntrays\n";
    for (const Json& tray : trays) {
        out << "  " << Column(tray);
        if (tray.contains("paper")) out << Text(tray["paper"]);
        if (tray.contains("width")) out << ' ' << DescribeSize(tray["width"].get<LONG>(), tray["length"].get<LONG>());
        if (tray.contains("media")) out << ", " << Text(tray["media"]);
        out << '\n';
    }
}

void PrintFeatures(const Json& features, std::ostream& out) {
    out << "\nfeatures: values; the default in brackets\n";
    for (const Json& feature : features) {
        out << "  " << Column(feature);
        const char* between = "";
        for (const Json& value : feature.value("values", Json::array())) {
            out << between << Text(value);
            between = ", ";
        }
        if (feature.contains("minimum"))
            out << DescribeNumber(feature, feature["minimum"]) << " to " << DescribeNumber(feature, feature["maximum"]);
        if (feature.contains("longest")) out << "at most " << feature["longest"] << " characters";
        out << " [" << DescribeNumber(feature, feature["default"]) << "]\n";
    }
}

void Print(const Json& product, std::ostream& out) {
    out << Text(product["model"]) << " (" << Text(product["name"]) << "), controller family "
        << product["controllerFamily"] << '\n';
    PrintPapers(product["papers"], out);
    PrintTrays(product["trays"], out);
    out << "\npaper types\n";
    for (const Json& media : product["mediaTypes"]) out << "  " << Text(media["name"]) << '\n';
    out << "\nresolutions\n";
    for (const Json& resolution : product["resolutions"])
        out << "  " << Column(resolution) << resolution["x"] << " x " << resolution["y"] << " dpi"
            << (resolution["default"].get<bool>() ? ", the default" : "") << '\n';
    PrintFeatures(product["features"], out);
}

void RunShow(HostContext& context, const ShowOptions& options) {
    const std::filesystem::path file = FindProductFile(options.name);
    context.UseThrowawayStore();
    const PrintSession session(InstallThrowawayPrinter(file));
    const Json product = DescribeProduct(NameProduct(file), session);
    if (options.json) {
        context.out << FormatJson(product) << '\n';
    } else {
        Print(product, context.out);
    }
}

}  // namespace

void AddProductShowCommand(Command product, HostContext& context) {
    const auto options = std::make_shared<ShowOptions>();
    const Command show = product.AddCommand("show", "Lists what a product offers: papers, trays, paper types, features",
                                            [&context, options] { RunShow(context, *options); });
    show.AddOption(kProductValue, options->name, "The product's name ('product list') or its file").Required();
    show.AddFlag("--json", options->json, kJson);
}
