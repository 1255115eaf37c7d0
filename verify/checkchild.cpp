// The child's side of a check.
#include "checkchild.h"

#include <mvutil/morvaneexception.h>

#include <nlohmann/json.hpp>

#include <algorithm>

#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include "childprocess.h"

namespace {

using Json = nlohmann::json;

void WriteResult(const ChildResult& result, const std::filesystem::path& file) {
    const Json object = {{"hasBench", result.hasBench},
                         {"outcome", static_cast<int>(result.outcome)},
                         {"found", result.found},
                         {"notes", result.notes}};
    WriteWholeFile(file, object.dump(-1, ' ', false, Json::error_handler_t::replace));
}

Check FindCheck(const std::string& name) {
    for (const Check& check : ListChecks())
        if (name == check.name) return check;
    throw InputError("there is no check '" + name + "'");
}

ChildResult RunCheck(const Check& check, TestBench& bench) {
    ChildResult result;
    try {
        check.run(bench);
    } catch (const CheckNotApplicable& reason) {
        result.outcome = CheckOutcome::NotApplicable;
        result.found = reason.what();
    } catch (const std::exception& failure) {
        result.outcome = CheckOutcome::Failed;
        result.found = failure.what();
    }
    result.notes = bench.GetNotes();
    return result;
}

}  // namespace

void RunCheckHere(const std::string& name, const std::function<TestBench()>& makeBench,
                  const std::filesystem::path& resultFile) {
    PrepareForCrashes();
    const Check check = FindCheck(name);
    ChildResult result;
    std::optional<TestBench> bench;
    try {
        bench.emplace(makeBench());
    } catch (const HostError& error) {
        result.hasBench = false;
        result.found = error.what();
    }
    if (bench) result = RunCheck(check, *bench);
    WriteResult(result, resultFile);
}

std::optional<ChildResult> ReadChildResult(const std::filesystem::path& resultFile) {
    std::error_code error;
    if (!std::filesystem::exists(resultFile, error)) return std::nullopt;
    const Json object = Json::parse(ReadWholeFile(resultFile));
    return ChildResult{object["hasBench"], static_cast<CheckOutcome>(object["outcome"].get<int>()), object["found"],
                       object["notes"]};
}
