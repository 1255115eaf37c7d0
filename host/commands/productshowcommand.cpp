// product show: what a product offers, for reading in a terminal or for programs.
#include <nlohmann/json.hpp>

#include <iomanip>
#include <memory>
#include <ostream>

#include <subsystem/explain/paperwords.h>
#include <subsystem/hosttext.h>
#include <subsystem/jsontext.h>
#include <subsystem/productfiles.h>
#include <subsystem/productpapers.h>
#include <subsystem/settingnames.h>
#include "commands.h"
#include "throwawayprinter.h"

namespace {

using Json = nlohmann::ordered_json;

struct ShowOptions {
    std::string name;
    bool json = false;
};

Json DescribePapers(const ProductDescription& product, const std::vector<PrintableArea>& areas) {
    Json rows = Json::array();
    for (std::size_t index = 0; index < product.papers.size(); ++index) {
        const ProductPaper& paper = product.papers[index];
        const PrintableArea& area = areas[index];
        Json& row = rows.emplace_back(Json{{"name", paper.name}, {"keyword", paper.keyword}, {"number", paper.number}});
        if (paper.type == facts::PageSizeType::Custom) continue;
        row["width"] = paper.width;
        row["length"] = paper.length;
        row["area"] = {{"left", area.left}, {"top", area.top}, {"width", area.width}, {"length", area.height}};
    }
    return rows;
}

// What stands in the lists under a value.
template <class Entry>
std::string NameOf(const std::vector<Entry>& entries, DWORD value) {
    for (const Entry& entry : entries)
        if (entry.value == value) return entry.name;
    return std::string();
}

Json DescribeTrays(const ProductDescription& product) {
    Json rows = Json::array();
    for (const ProductTray& tray : product.trays) {
        Json& row = rows.emplace_back(Json{{"name", tray.name}, {"number", tray.number}});
        if (tray.heldSize == facts::value::kNotSet) continue;
        row["paper"] = NameOf(product.papers, tray.heldSize);
        if (tray.heldWidth != 0) {
            row["width"] = tray.heldWidth;
            row["length"] = tray.heldLength;
        }
        if (const std::string media = NameOf(product.mediaTypes, tray.heldMediaType); !media.empty())
            row["media"] = media;
    }
    return rows;
}

// The value that a feature starts from.
Json DescribeDefault(const ProductFeature& feature, const ProductDescription& product) {
    switch (feature.kind) {
        case facts::FeatureKind::Boolean:
            return feature.defaultNumber != 0;
        case facts::FeatureKind::String:
            return feature.defaultText;
        case facts::FeatureKind::Option:
            return NameValue(static_cast<DWORD>(feature.defaultNumber), product);
        default:
            return feature.defaultNumber;
    }
}

Json DescribeFeatures(const ProductDescription& product) {
    Json rows = Json::array();
    for (const ProductFeature& feature : product.features) {
        if (feature.kind == facts::FeatureKind::List || feature.kind == facts::FeatureKind::Resolution) continue;
        Json& row = rows.emplace_back(Json{{"name", NameFeature(feature.id)}, {"number", feature.id}});
        for (const DWORD value : feature.values) row["values"].push_back(NameValue(value, product));
        if (feature.kind == facts::FeatureKind::Integer || feature.kind == facts::FeatureKind::Dimension) {
            row["minimum"] = feature.minimum;
            row["maximum"] = feature.maximum;
        }
        if (feature.kind == facts::FeatureKind::String) row["longest"] = feature.maximum;
        row["default"] = IsProtectedFeature(feature.id) ? Json("") : DescribeDefault(feature, product);
    }
    return rows;
}

Json DescribeProduct(const std::string& name, const PrintSession& session) {
    const ProductDescription& product = *session.GetPrinter().GetProduct();
    Json mediaTypes = Json::array(), resolutions = Json::array();
    for (const ProductMediaType& media : product.mediaTypes)
        mediaTypes.push_back({{"name", media.name}, {"number", media.number}});
    for (const ProductResolution& resolution : product.resolutions)
        resolutions.push_back({{"name", resolution.name},
                               {"x", resolution.crossFeed},
                               {"y", resolution.feed},
                               {"default", resolution.isDefault}});
    return {{"name", name},
            {"model", product.modelName},
            {"controllerFamily", product.controllerFamily},
            {"papers", DescribePapers(product, ReadPrintableAreas(session))},
            {"trays", DescribeTrays(product)},
            {"mediaTypes", std::move(mediaTypes)},
            {"resolutions", std::move(resolutions)},
            {"features", DescribeFeatures(product)}};
}

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
        if (feature.contains("minimum")) out << feature["minimum"] << " to " << feature["maximum"];
        if (feature.contains("longest")) out << "at most " << feature["longest"] << " characters";
        out << " [" << Text(feature["default"]) << "]\n";
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
    const PrintSession session(InstallThrowawayPrinter(context, file));
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
    show.AddOption("NAME", options->name, "The product's name ('product list') or its file").Required();
    show.AddFlag("--json", options->json, kJson);
}
