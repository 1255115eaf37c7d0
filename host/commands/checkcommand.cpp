// check: which rules of a Print Schema document a file breaks.
#include <subsystem/schemacheck/schemacheck.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <set>

#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/jsontext.h>
#include "commands.h"

namespace {

using Json = nlohmann::ordered_json;

struct CheckOptions {
    std::string file;
    bool json = false;
};

std::string CountOf(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::vector<SchemaFinding> CheckFile(const std::string& file) {
    const std::string bytes = ReadWholeFile(PathFromUtf8(file));
    try {
        return CheckSchemaDocument(bytes);
    } catch (const InputError& error) {
        throw InputError(NameInput(PathFromUtf8(file)) + ": " + error.what());
    }
}

// Of one rule the first places are listed and the others counted.
void PrintFindings(HostContext& context, const std::string& file, const std::vector<SchemaFinding>& findings) {
    constexpr std::size_t kTold = 10;
    std::map<std::pair<SchemaRule, bool>, std::size_t> counts, told;  // by rule and whether they are notes
    for (const SchemaFinding& finding : findings) ++counts[{finding.rule, finding.isNote}];
    std::set<SchemaRule> broken;
    std::size_t breaks = 0, notes = 0;
    for (const SchemaFinding& finding : findings) {
        ++(finding.isNote ? notes : breaks);
        if (!finding.isNote) broken.insert(finding.rule);
        const std::pair<SchemaRule, bool> kind(finding.rule, finding.isNote);
        const std::size_t number = ++told[kind];
        if (number > kTold + 1) continue;
        context.out << file << ':' << finding.line << ": " << (finding.isNote ? "note: " : "");
        if (number <= kTold) {
            context.out << finding.sentence << ".\n";
        } else {
            context.out << "... and " << counts[kind] - kTold << " more of this rule, from here on.\n";
        }
    }
    context.out << file << ": "
                << (breaks == 0 ? "no rule is broken"
                                : CountOf(broken.size(), "rule is broken, in ", "rules are broken, in ") +
                                      CountOf(breaks, "place", "places"))
                << (notes == 0 ? "" : "; " + CountOf(notes, "note", "notes")) << ".\n";
}

// All of them.
std::string FormatAsJson(const std::vector<SchemaFinding>& findings) {
    Json rows = Json::array();
    for (const SchemaFinding& finding : findings)
        rows.push_back({{"line", finding.line},
                        {"rule", NameRule(finding.rule)},
                        {"note", finding.isNote},
                        {"sentence", finding.sentence}});
    return FormatJson(rows);
}

void RunCheck(HostContext& context, const CheckOptions& options) {
    const std::vector<SchemaFinding> findings = CheckFile(options.file);
    if (options.json) {
        context.out << FormatAsJson(findings) << '\n';
    } else {
        PrintFindings(context, NameInput(PathFromUtf8(options.file)), findings);
    }
    if (std::any_of(findings.begin(), findings.end(), [](const SchemaFinding& finding) { return !finding.isNote; }))
        context.exitStatus = kExitFailed;
}

}  // namespace

void AddCheckCommand(Command app, HostContext& context) {
    const auto options = std::make_shared<CheckOptions>();
    const Command check = app.AddCommand("check", "Shows which rules a PrintTicket or a PrintCapabilities breaks",
                                         [&context, options] { RunCheck(context, *options); });
    check.AddOption("FILE", options->file, "The document").Required();
    check.AddFlag("--json", options->json, kJsonRows);
}
