// What becomes of a job, as data for the page.
#include "jobdata.h"

#include <facts/units.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <map>

#include <subsystem/productpapers.h>

namespace {

using Json = nlohmann::ordered_json;

constexpr double kLongestSide = 260;  // of the drawing, in pixels
constexpr double kSheetOffset = 6;    // of a copy behind another, in pixels
constexpr int kMostSheets = 4;        // that are drawn

// The area of the page turned to the left.
PrintableArea Turn(const PrintableArea& area, LONG width) {
    return {area.top, width - area.left - area.width, area.height, area.width};
}

// "turned at the long edge", and the side of the drawing that is bound.
void DescribeSides(Json& sheet, const DEVMODEW& devmode, bool isWide) {
    const bool isDuplex = (devmode.dmFields & DM_DUPLEX) != 0 && devmode.dmDuplex != DMDUP_SIMPLEX;
    if (!isDuplex) {
        sheet["sides"] = "one side";
        return;
    }
    const bool isLongEdge = devmode.dmDuplex == DMDUP_VERTICAL;
    sheet["sides"] = isLongEdge ? "both sides, turned at the long edge" : "both sides, turned at the short edge";
    sheet[isLongEdge != isWide ? "boundLeft" : "boundTop"] = true;
}

std::string Pixels(double length) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", length);
    return text;
}

}  // namespace

nlohmann::ordered_json DescribeVerdicts(Explanation explanation) {
    SortByVerdict(explanation);
    Json settings = Json::array(), kept = Json::array(), counts = Json::array();
    std::map<Verdict, std::size_t> numbers;
    for (const SettingVerdict& row : explanation) {
        ++numbers[row.verdict];
        Json& rows = row.verdict == Verdict::Kept ? kept : settings;
        rows.push_back({{"setting", row.setting},
                        {"before", row.before.empty() ? "(none)" : row.before},
                        {"after", row.after.empty() ? "(none)" : row.after},
                        {"verdict", NameVerdict(row.verdict)},
                        {"reason", row.reason}});
    }
    for (const auto& [verdict, number] : numbers)
        counts.push_back({{"number", number}, {"verdict", NameVerdict(verdict)}});
    return {{"hasLosses", !settings.empty()},
            {"settings", std::move(settings)},
            {"hasKept", !kept.empty()},
            {"kept", std::move(kept)},
            {"counts", std::move(counts)}};
}

nlohmann::ordered_json DrawSheet(PrinterFacts& printer, const DEVMODEW& devmode) {
    const SelectedPaper paper = printer.GetPapers().Select(devmode);
    const short copies = (devmode.dmFields & DM_COPIES) != 0 ? std::max<short>(devmode.dmCopies, 1) : short{1};
    Json sheet = {{"paper", paper.Describe()},
                  {"copies", std::to_string(copies) + (copies == 1 ? " copy" : " copies")}};
    const bool isWide = (devmode.dmFields & DM_ORIENTATION) != 0 && devmode.dmOrientation == DMORIENT_LANDSCAPE;
    sheet["orientation"] = isWide ? "landscape" : "portrait";
    DescribeSides(sheet, devmode, isWide);
    if (paper.width <= 0 || paper.length <= 0) return sheet;

    LONG width = paper.width, length = paper.length;
    PrintableArea area = FindPrintableArea(printer.GetSession(), static_cast<WORD>(devmode.dmPaperSize));
    if (isWide) {
        area = Turn(area, width);
        std::swap(width, length);
    }
    Json& drawing = sheet["drawing"];
    drawing = {{"width", DescribeMillimetres(width)}, {"length", DescribeMillimetres(length)}};
    const double scale = kLongestSide / std::max(width, length);
    drawing["pixelsWide"] = Pixels(width * scale);
    drawing["pixelsLong"] = Pixels(length * scale);
    drawing["behind"] = Json::array();
    for (int sheets = std::min<int>(copies, kMostSheets) - 1; sheets > 0; --sheets)
        drawing["behind"].push_back(
            {{"offset", Pixels(sheets * kSheetOffset / scale / facts::kMicrometresPerMillimetre)}});
    if (area.width > 0 && area.height > 0)
        drawing["area"] = {{"left", DescribeMillimetres(area.left)},
                           {"top", DescribeMillimetres(area.top)},
                           {"width", DescribeMillimetres(area.width)},
                           {"length", DescribeMillimetres(area.height)}};
    return sheet;
}
