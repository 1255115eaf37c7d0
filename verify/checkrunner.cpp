// The parent's side of the checks.
#include "checkrunner.h"

#include <chrono>
#include <memory>
#include <optional>
#include <thread>

#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/printerfilename.h>
#include "checkchild.h"
#include "childprocess.h"
#include "stepnote.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kLook{5};  // between two looks at the children

// A folder that goes with its owner.
class ScratchFolder {
public:
    ScratchFolder() : path_(MakeTemporaryFolder("mvpthost-verify-")) {}
    ~ScratchFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::filesystem::path GetFile(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

std::vector<std::string> AddArguments(std::vector<std::string> arguments, std::initializer_list<std::string> more) {
    arguments.insert(arguments.end(), more);
    return arguments;
}

// A check under way.
class RunningCheck {
public:
    RunningCheck(const CheckRun& run, const Check& check, const ScratchFolder& folder)
        : run_(run),
          check_(check),
          result_(folder.GetFile(std::string(check.name) + ".result")),
          noteFile_(folder.GetFile(std::string(check.name) + ".note")),
          note_(noteFile_),
          child_(AddArguments(run.arguments, {kChildOption, check.name, kNoteOption, PathToUtf8(noteFile_),
                                              kResultOption, PathToUtf8(result_)})) {}

    // Nothing while it goes on.
    std::optional<CheckReport> Poll() {
        const std::optional<std::string> end = child_.Poll();
        if (end) return Report(*end);
        const std::uint64_t steps = note_.CountSteps();
        if (steps != steps_) {
            steps_ = steps;
            lastStep_ = Clock::now();
        }
        if (Clock::now() - lastStep_ < std::chrono::seconds(run_.seconds)) return std::nullopt;
        child_.Kill();
        return Fail("hangs: no answer for " + std::to_string(run_.seconds) + " s");
    }

private:
    CheckReport Report(const std::string& end) {
        const std::optional<ChildResult> result = ReadChildResult(result_);
        if (!result) return Fail("crashes: the process ended with " + (end.empty() ? "exit status 0" : end));
        if (!result->hasBench) throw InputError(result->found);
        CheckReport report = Make(result->outcome, result->found);
        report.notes = result->notes;
        if (report.outcome == CheckOutcome::Failed) NameInput(report);
        // What goes wrong when the process ends, a leak that a sanitizer finds say, is the provider's too.
        if (report.outcome != CheckOutcome::Failed && !end.empty())
            return Fail("the process ended with " + end + " after the check");
        return report;
    }
    CheckReport Fail(const std::string& found) {
        CheckReport report = Make(CheckOutcome::Failed, found);
        NameInput(report);
        return report;
    }
    CheckReport Make(CheckOutcome outcome, const std::string& found) const {
        return {check_, outcome, found, "", {}, std::chrono::duration<double>(Clock::now() - start_).count()};
    }
    // Keeps the input that the note holds; without one, the step is what shows the failure.
    void NameInput(CheckReport& report) const {
        const std::string step = note_.GetStep();
        if (!step.empty()) report.found += " (" + step + ")";
        report.input = step;
        const NotedInput input = note_.GetInput();
        if (input.extension.empty()) return;
        std::error_code error;
        std::filesystem::create_directories(run_.keep, error);
        const std::filesystem::path file =
            run_.keep / PathFromUtf8(MakePrinterFileName(ArgumentToWide(run_.subject),
                                                         std::string("-") + check_.name + "." + input.extension));
        WriteWholeFile(file, input.bytes);
        report.input = PathToUtf8(file);
    }

    const CheckRun& run_;
    Check check_;
    std::filesystem::path result_, noteFile_;
    StepNote note_;
    ChildProcess child_;
    Clock::time_point start_ = Clock::now(), lastStep_ = start_;
    std::uint64_t steps_ = 0;
};

// Those that measure times come last and alone; of the others several go on at once.
class Schedule {
public:
    Schedule(const CheckRun& run, const std::function<void(const CheckReport&)>& finished)
        : run_(run), finished_(finished), reports_(run.checks.size()), running_(run.checks.size()) {}

    std::vector<CheckReport> Run() {
        const std::size_t atOnce = std::max(1u, std::thread::hardware_concurrency());
        RunThose(false, atOnce);
        RunThose(true, 1);
        std::vector<CheckReport> reports;
        for (std::optional<CheckReport>& report : reports_) reports.push_back(std::move(*report));
        return reports;
    }

private:
    void RunThose(bool alone, std::size_t atOnce) {
        std::size_t next = 0, going = 0;
        for (;;) {
            while (next < run_.checks.size() && (going < atOnce || run_.checks[next].isAlone != alone)) {
                if (run_.checks[next].isAlone == alone) {
                    running_[next] = std::make_unique<RunningCheck>(run_, run_.checks[next], folder_);
                    ++going;
                }
                ++next;
            }
            if (going == 0) return;
            going -= Collect();
            std::this_thread::sleep_for(kLook);
        }
    }
    // How many have ended.
    std::size_t Collect() {
        std::size_t ended = 0;
        for (std::size_t index = 0; index < running_.size(); ++index) {
            if (!running_[index]) continue;
            reports_[index] = running_[index]->Poll();
            if (!reports_[index]) continue;
            running_[index].reset();
            ++ended;
        }
        for (; shown_ < reports_.size() && reports_[shown_]; ++shown_) finished_(*reports_[shown_]);
        return ended;
    }

    const CheckRun& run_;
    const std::function<void(const CheckReport&)>& finished_;
    const ScratchFolder folder_;
    std::vector<std::optional<CheckReport>> reports_;
    std::vector<std::unique_ptr<RunningCheck>> running_;
    std::size_t shown_ = 0;
};

}  // namespace

std::vector<CheckReport> RunChecks(const CheckRun& run, const std::function<void(const CheckReport&)>& finished) {
    return Schedule(run, finished).Run();
}
