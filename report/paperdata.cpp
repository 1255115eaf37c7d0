// Drawings of papers, as data for the page.
#include "paperdata.h"

#include <facts/units.h>
#include <namefield.h>
#include <products/pagesizes.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include <subsystem/hosttext.h>
#include <subsystem/productpapers.h>

namespace {

using Json = nlohmann::ordered_json;

constexpr double kMicrometresPerInch = 25400;
// Of a drawing: pixels for a millimetre, and the largest drawing of a group, to which its other ones keep their scale.
constexpr double kScale = 0.4, kWidest = 300, kLongest = 480;

enum class Family { IsoA, IsoB, NorthAmerica, Japan, Envelopes, Other, Product, User };
constexpr std::array<const char*, 8> kFamilies = {"ISO A",     "ISO B",       "North America",     "Japan",
                                                  "Envelopes", "Other sizes", "The product's own", "The user's own"};

Family FindFamily(const std::string& keyword) {
    if (keyword.empty()) return Family::Product;
    if (keyword.find("Envelope") != std::string::npos) return Family::Envelopes;
    if (keyword.starts_with("ISOA")) return Family::IsoA;
    if (keyword.starts_with("ISOB")) return Family::IsoB;
    const PageSizeRow* row = FindPageSizeByName(keyword);
    if (row && row->family == PageSizeFamily::NorthAmerica) return Family::NorthAmerica;
    if (row && (row->family == PageSizeFamily::Jis || row->family == PageSizeFamily::Japan)) return Family::Japan;
    return Family::Other;
}

// With two decimals at most.
std::string DescribeInches(LONG micrometres) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", micrometres / kMicrometresPerInch);
    std::string shown = text;
    shown.erase(shown.find_last_not_of('0') + 1);
    if (shown.ends_with('.')) shown.pop_back();
    return shown;
}

Json Draw(const std::string& name, LONG width, LONG length, const PrintableArea& area) {
    Json drawing = {{"name", name},
                    {"width", DescribeMillimetres(width)},
                    {"length", DescribeMillimetres(length)},
                    {"inches", DescribeInches(width) + " x " + DescribeInches(length) + " in"},
                    {"wide", width},
                    {"long", length}};
    if (area.width > 0 && area.height > 0)
        drawing["area"] = {{"left", DescribeMillimetres(area.left)},
                           {"top", DescribeMillimetres(area.top)},
                           {"width", DescribeMillimetres(area.width)},
                           {"length", DescribeMillimetres(area.height)}};
    return drawing;
}

// Gives the drawings of a group their sides in pixels.
void Scale(Json& drawings) {
    double widest = 1, longest = 1;
    for (const Json& drawing : drawings) {
        widest = std::max(widest, drawing["wide"].get<double>() / facts::kMicrometresPerMillimetre);
        longest = std::max(longest, drawing["long"].get<double>() / facts::kMicrometresPerMillimetre);
    }
    const double scale = std::min({kScale, kWidest / widest, kLongest / longest});
    for (Json& drawing : drawings)
        for (const auto& [side, pixels] : {std::pair{"wide", "pixelsWide"}, {"long", "pixelsLong"}}) {
            char text[32];
            std::snprintf(text, sizeof text, "%.2f",
                          drawing[side].get<double>() / facts::kMicrometresPerMillimetre * scale);
            drawing[pixels] = text;
        }
}

// The user's forms and custom sizes, which the product does not list.
Json DrawUsersPapers(PrinterFacts& printer) {
    Json drawings = Json::array();
    for (const _tag_FormsInfoRec& record : printer.GetPapers().GetRecords()) {
        if (printer.GetProduct().FindPaper(record.msPaperId) || record.width <= 0 || record.length <= 0) continue;
        drawings.push_back(Draw(ToUtf8(GetNameField(record.name)), record.width * facts::kMicrometresPerTenth,
                                record.length * facts::kMicrometresPerTenth,
                                FindPrintableArea(printer.GetSession(), record.msPaperId)));
    }
    return drawings;
}

}  // namespace

nlohmann::ordered_json DrawPapers(PrinterFacts& printer, const nlohmann::ordered_json& papers) {
    std::array<Json, kFamilies.size()> drawings;
    drawings.fill(Json::array());
    for (const Json& paper : papers) {
        if (!paper.contains("area")) continue;
        const Json& area = paper["area"];
        const auto side = [](const Json& of, const char* key) { return of[key].get<LONG>(); };
        drawings[static_cast<std::size_t>(FindFamily(paper["keyword"].get<std::string>()))].push_back(
            Draw(paper["name"].get<std::string>(), side(paper, "width"), side(paper, "length"),
                 {side(area, "left"), side(area, "top"), side(area, "width"), side(area, "length")}));
    }
    drawings[static_cast<std::size_t>(Family::User)] = DrawUsersPapers(printer);
    Json groups = Json::array();
    for (std::size_t family = 0; family < kFamilies.size(); ++family) {
        if (drawings[family].empty()) continue;
        Scale(drawings[family]);
        groups.push_back({{"family", kFamilies[family]}, {"papers", std::move(drawings[family])}});
    }
    return groups;
}
