// What became of each setting of a DEVMODE or a ticket, and why.
#include "explanation.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>

#include <subsystem/jsontext.h>

namespace {

constexpr Verdict kVerdicts[] = {Verdict::Lost, Verdict::Ignored, Verdict::Overruled, Verdict::Changed, Verdict::Kept};

std::string DescribeValues(const SettingVerdict& row) {
    std::string before = row.before.empty() ? "(none)" : row.before;
    if (row.verdict == Verdict::Kept && (row.after.empty() || row.after == row.before)) return before;
    return before + " -> " + (row.after.empty() ? "(none)" : row.after);
}

}  // namespace

const char* NameVerdict(Verdict verdict) {
    switch (verdict) {
        case Verdict::Lost:
            return "lost";
        case Verdict::Ignored:
            return "ignored";
        case Verdict::Overruled:
            return "overruled";
        case Verdict::Changed:
            return "changed";
        case Verdict::Kept:
            break;
    }
    return "kept";
}

void SortByVerdict(Explanation& rows) {
    std::stable_sort(rows.begin(), rows.end(), [](const SettingVerdict& a, const SettingVerdict& b) {
        return static_cast<int>(a.verdict) < static_cast<int>(b.verdict);
    });
}

std::string FormatAsJson(const Explanation& rows) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const SettingVerdict& row : rows)
        array.push_back({{"setting", row.setting},
                         {"before", row.before},
                         {"after", row.after},
                         {"verdict", NameVerdict(row.verdict)},
                         {"reason", row.reason}});
    return FormatJson(array);
}

void PrintExplanation(const Explanation& rows, std::ostream& out) {
    constexpr std::size_t kColumn = 11;
    for (const SettingVerdict& row : rows) {
        std::string verdict = NameVerdict(row.verdict);
        verdict.resize(kColumn, ' ');
        out << verdict << row.setting << ": " << DescribeValues(row);
        if (row.verdict == Verdict::Kept) {
            out << " (" << row.reason << ")\n";
        } else {
            out << '\n' << std::string(kColumn, ' ') << row.reason << '\n';
        }
    }
    std::string summary;
    for (const Verdict verdict : kVerdicts) {
        const auto count = std::count_if(rows.begin(), rows.end(),
                                         [verdict](const SettingVerdict& row) { return row.verdict == verdict; });
        if (count != 0) summary += (summary.empty() ? "" : ", ") + std::to_string(count) + ' ' + NameVerdict(verdict);
    }
    out << (summary.empty() ? "there is no setting" : summary) << '\n';
}

std::vector<std::string> ListLosses(const Explanation& rows) {
    std::vector<std::string> lines;
    for (const SettingVerdict& row : rows)
        if (row.verdict == Verdict::Lost || row.verdict == Verdict::Ignored)
            lines.push_back(std::string(NameVerdict(row.verdict)) + ": " + row.setting + ": " + DescribeValues(row) +
                            ": " + row.reason);
    return lines;
}
