// A page that shows what a printer offers and what becomes of a job.
#include "report.h"

#include <kainjow/mustache.hpp>
#include <nlohmann/json.hpp>

#include <stdexcept>

#include "jobdata.h"
#include "paperdata.h"
#include "productdata.h"

extern const char kReportTemplate[];

namespace {

using Json = nlohmann::ordered_json;
using Mustache = kainjow::mustache::mustache;
using Data = kainjow::mustache::data;

// The template's data, which has texts, truths, lists and objects alone. Texts are escaped where they are shown.
Data ToData(const Json& value) {
    if (value.is_object()) {
        Data object{Data::type::object};
        for (const auto& [key, member] : value.items()) object.set(key, ToData(member));
        return object;
    }
    if (value.is_array()) {
        Data list{Data::type::list};
        for (const Json& entry : value) list.push_back(ToData(entry));
        return list;
    }
    if (value.is_boolean()) return Data(value.get<bool>());
    return Data(value.is_string() ? value.get<std::string>() : value.dump());
}

// What is set where the job says so, and what a feature can be, as marked options or as a range.
void MarkFeature(Json& feature, const std::optional<ReportedJob>& job) {
    const std::string name = feature["name"].get<std::string>();
    std::string set;
    if (job)
        for (const SettingVerdict& row : job->explanation)
            if (row.setting == name || row.setting == name + " (driver setting)") set = row.after;
    const Json standard = feature["default"];
    Json options = Json::array();
    for (const Json& value : feature.value("values", Json::array()))
        options.push_back({{"name", value}, {"default", value == standard}, {"set", !set.empty() && value == set}});
    if (options.empty()) {
        std::string range;
        if (feature.contains("minimum"))
            range = DescribeNumber(feature, feature["minimum"]) + " to " + DescribeNumber(feature, feature["maximum"]);
        if (feature.contains("longest")) range = "a text of at most " + feature["longest"].dump() + " characters";
        if (standard.is_boolean()) range = "on or off";
        const std::string shown = !standard.is_boolean() ? DescribeNumber(feature, standard)
                                  : standard.get<bool>() ? "on"
                                                         : "off";
        feature["range"] = range;
        feature["standard"] = shown.empty() ? "(empty)" : shown;
    }
    feature["hasOptions"] = !options.empty();
    feature["options"] = std::move(options);
    if (!set.empty()) feature["set"] = set;
}

}  // namespace

std::string MakeReport(PrinterFacts& printer, const std::string& title, const std::string& product,
                       const std::optional<ReportedJob>& job) {
    Json page = DescribeProduct(product, printer.GetSession());
    page["title"] = title;
    page["groups"] = DrawPapers(printer, page["papers"]);
    for (Json& feature : page["features"]) MarkFeature(feature, job);
    if (job) {
        page["job"] = DescribeVerdicts(job->explanation);
        page["job"]["sheet"] = DrawSheet(printer, job->devmode);
    }
    Mustache layout(kReportTemplate);
    if (!layout.is_valid()) throw std::logic_error("the page's template is bad: " + layout.error_message());
    return layout.render(ToData(page));
}
