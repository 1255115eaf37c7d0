// The forms of a report.
#include "checkreport.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <ostream>

#include <subsystem/jsontext.h>
#include <subsystem/schematext.h>

namespace {

std::string Pad(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::ptrdiff_t Count(const std::vector<CheckReport>& reports, CheckOutcome outcome) {
    return std::count_if(reports.begin(), reports.end(),
                         [&](const CheckReport& report) { return report.outcome == outcome; });
}

std::string Attribute(const char* name, std::string_view value) {
    return std::string(" ") + name + "=\"" + schematext::Escape(value) + "\"";
}

std::string FormatSeconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.3f", seconds);
    return text;
}

std::string FormatCase(const CheckReport& report) {
    std::string text = "    <testcase" + Attribute("classname", NameOfGroup(report.check.group)) +
                       Attribute("name", report.check.name) + Attribute("time", FormatSeconds(report.seconds));
    if (report.outcome == CheckOutcome::Passed) return text + "/>\n";
    text += ">\n      ";
    if (report.outcome == CheckOutcome::NotApplicable) {
        text += "<skipped" + Attribute("message", report.found) + "/>\n";
    } else {
        text +=
            "<failure" + Attribute("message", report.found) + ">" + schematext::Escape(report.input) + "</failure>\n";
    }
    return text + "    </testcase>\n";
}

}  // namespace

const char* NameOfOutcome(CheckOutcome outcome) {
    switch (outcome) {
        case CheckOutcome::Passed:
            return "passed";
        case CheckOutcome::Failed:
            return "failed";
        case CheckOutcome::NotApplicable:
            return "not applicable";
    }
    return "";
}

void PrintReport(const CheckReport& report, std::ostream& out) {
    out << Pad(NameOfOutcome(report.outcome), 16) << Pad(NameOfGroup(report.check.group), 13) << report.check.name
        << '\n';
    const auto line = [&](const char* label, const std::string& text) {
        out << std::string(16, ' ') << label << text << '\n';
    };
    for (const std::string& note : report.notes) line("", note);
    if (report.outcome == CheckOutcome::NotApplicable) line("", report.found);
    if (report.outcome != CheckOutcome::Failed) return;
    line("tried: ", report.check.what);
    line("found: ", report.found);
    line("input: ", report.input);
}

void PrintCounts(const VerifiedPrinter& printer, std::ostream& out) {
    out << printer.name << ": " << printer.reports.size() << " checks, " << Count(printer.reports, CheckOutcome::Passed)
        << " passed, " << Count(printer.reports, CheckOutcome::Failed) << " failed, "
        << Count(printer.reports, CheckOutcome::NotApplicable) << " not applicable\n";
}

std::string FormatAsJson(const std::vector<VerifiedPrinter>& printers) {
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (const VerifiedPrinter& printer : printers) {
        for (const CheckReport& report : printer.reports) {
            nlohmann::ordered_json row = {{"group", NameOfGroup(report.check.group)},
                                          {"name", report.check.name},
                                          {"outcome", NameOfOutcome(report.outcome)},
                                          {"what", report.check.what}};
            if (printers.size() > 1) row["printer"] = printer.name;
            if (report.outcome == CheckOutcome::Failed) {
                row["found"] = report.found;
                row["input"] = report.input;
            }
            rows.push_back(std::move(row));
        }
    }
    return FormatJson(rows);
}

std::string FormatAsJunit(const std::vector<VerifiedPrinter>& printers) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
    for (const VerifiedPrinter& printer : printers) {
        text += "  <testsuite" + Attribute("name", printer.name) +
                Attribute("tests", std::to_string(printer.reports.size())) +
                Attribute("failures", std::to_string(Count(printer.reports, CheckOutcome::Failed))) +
                Attribute("skipped", std::to_string(Count(printer.reports, CheckOutcome::NotApplicable))) + ">\n";
        for (const CheckReport& report : printer.reports) text += FormatCase(report);
        text += "  </testsuite>\n";
    }
    return text + "</testsuites>\n";
}
