// What a product offers, as data.
#include "productdata.h"

#include <nlohmann/json.hpp>

#include <subsystem/explain/paperwords.h>
#include <subsystem/productpapers.h>
#include <subsystem/settingnames.h>

namespace {

using Json = nlohmann::ordered_json;

Json DescribePapers(const PrintSession& session) {
    Json rows = Json::array();
    for (const ProductPaper& paper : session.GetPrinter().GetProduct()->papers) {
        Json& row = rows.emplace_back(Json{{"name", paper.name}, {"keyword", paper.keyword}, {"number", paper.number}});
        if (paper.type == facts::PageSizeType::Custom) continue;
        const PrintableArea area = FindPrintableArea(session, paper.number);
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
            if (feature.kind == facts::FeatureKind::Dimension) row["unit"] = "micrometres";
        }
        if (feature.kind == facts::FeatureKind::String) row["longest"] = feature.maximum;
        row["default"] = IsProtectedFeature(feature.id) ? Json("") : DescribeDefault(feature, product);
    }
    return rows;
}

}  // namespace

std::string DescribeNumber(const Json& feature, const Json& number) {
    if (number.is_string()) return number.get<std::string>();
    return feature.contains("unit") ? DescribeMillimetres(number.get<LONG>()) + " mm" : number.dump();
}

nlohmann::ordered_json DescribeProduct(const std::string& name, const PrintSession& session) {
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
            {"papers", DescribePapers(session)},
            {"trays", DescribeTrays(product)},
            {"mediaTypes", std::move(mediaTypes)},
            {"resolutions", std::move(resolutions)},
            {"features", DescribeFeatures(product)}};
}
