// What the operations cost: time, how it grows with the document, and questions to the spooler.
#include <questioncount.h>
#include <subsystem/xmlfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include <verify/check.h>
#include <verify/operationtrial.h>
#include <verify/threadtime.h>

namespace {

using SpoolerQuestions = std::array<std::size_t, kSpoolerQuestionCount>;

SpoolerQuestions CountQuestions() {
    SpoolerQuestions counts;
    for (std::size_t index = 0; index < counts.size(); ++index)
        counts[index] = GetSpoolerQuestionCount(static_cast<SpoolerQuestion>(index));
    return counts;
}

// The document with that many features of another maker's more.
std::string AddFeatures(const std::string& document, std::size_t count) {
    std::string features;
    for (std::size_t number = 0; number < count; ++number)
        features += "<psf:Feature name=\"psk:PageOdd" + std::to_string(number) +
                    "\"><psf:Option name=\"psk:None\"/></psf:Feature>";
    std::string longer = document;
    return longer.insert(longer.rfind("</"), features);
}

// One call on the document, and what it cost.
struct Cost {
    double seconds;
    SpoolerQuestions questions;
};

Cost Measure(const OperationTrial& trial, const std::string& text) {
    const auto document = ReadDocumentBytes(text, "the document");
    Cost cost{};
    trial.Call(document.Get(), nullptr, [&](const std::function<HRESULT()>& call) {
        const SpoolerQuestions before = CountQuestions();
        const double start = GetThreadSeconds();
        const HRESULT result = call();
        cost.seconds = GetThreadSeconds() - start;
        cost.questions = CountQuestions();
        for (std::size_t index = 0; index < before.size(); ++index) cost.questions[index] -= before[index];
        return result;
    });
    return cost;
}

double MeasureLeast(const OperationTrial& trial, const std::string& text, int times) {
    double least = Measure(trial, text).seconds;
    for (int time = 1; time < times; ++time) least = std::min(least, Measure(trial, text).seconds);
    return least;
}

std::string FormatMicroseconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.0f us", seconds * 1e6);
    return text;
}

// A call that an application waits for this long is a fault on any machine.
constexpr double kTooLongSeconds = 0.5;

void ReportsTimes(TestBench& bench) {
    const auto session = bench.OpenSession();
    for (const OperationKind kind : ListOperationKinds()) {
        const OperationTrial trial(bench, *session, kind);
        const double least = MeasureLeast(trial, trial.GetDocument(), 2);
        bench.Require(least < kTooLongSeconds,
                      std::string(trial.GetCall()) + " takes " + FormatMicroseconds(least) + " each time");
        std::vector<double> times;
        for (std::size_t number = 0; number < bench.Choose(100, 5000); ++number) {
            bench.Step(std::string(trial.GetCall()) + ", number " + std::to_string(number));
            times.push_back(Measure(trial, trial.GetDocument()).seconds);
        }
        std::sort(times.begin(), times.end());
        bench.Note(std::string(trial.GetCall()) + ": median " + FormatMicroseconds(times[times.size() / 2]) +
                   ", 99 of 100 within " + FormatMicroseconds(times[times.size() * 99 / 100]));
    }
}

// Time may grow with the document as n log n does, not as its square: eight times the document, at most so much more
// time. What is below the least time is too short to say.
void GrowsWithTheDocument(TestBench& bench) {
    constexpr std::size_t kFeatures = 500, kFactor = 8;
    constexpr double kMostGrowth = 27, kLeastSeconds = 0.002;  // 8 to the power of 1.6
    const auto session = bench.OpenSession();
    for (const OperationKind kind : ListOperationKinds()) {
        const OperationTrial trial(bench, *session, kind);
        const std::string small = AddFeatures(trial.GetDocument(), kFeatures),
                          large = AddFeatures(trial.GetDocument(), kFactor * kFeatures);
        bench.SetInput("xml", large);
        double growth = 0;
        // A busy machine makes one measurement long, not every one.
        for (int attempt = 0; attempt < 3; ++attempt) {
            bench.Step(std::string(trial.GetCall()) + " on a document of " + std::to_string(kFactor * kFeatures) +
                       " features");
            const double before = MeasureLeast(trial, small, 5), after = MeasureLeast(trial, large, 2);
            growth = after / std::max(before, kLeastSeconds / kFactor);
            if (after < kLeastSeconds || growth <= kMostGrowth) break;
        }
        bench.Require(growth <= kMostGrowth,
                      std::string(trial.GetCall()) + " takes " + std::to_string(static_cast<long>(growth)) +
                          " times as long for a document that is " + std::to_string(kFactor) + " times as long");
    }
}

void AsksTheSpoolerSeldom(TestBench& bench) {
    static constexpr const char* kNames[] = {"printer", "driver", "printer data", "forms", "capabilities", "caches"};
    static_assert(std::size(kNames) == kSpoolerQuestionCount);
    const auto session = bench.OpenSession();
    for (const OperationKind kind : ListOperationKinds()) {
        const OperationTrial trial(bench, *session, kind);
        bench.Step(std::string(trial.GetCall()) + ", questions to the spooler");
        Measure(trial, trial.GetDocument());
        const SpoolerQuestions few = Measure(trial, trial.GetDocument()).questions;
        const SpoolerQuestions again = Measure(trial, trial.GetDocument()).questions;
        const SpoolerQuestions many = Measure(trial, AddFeatures(trial.GetDocument(), 200)).questions;
        std::string note;
        for (std::size_t index = 0; index < few.size(); ++index) {
            const std::string name = kNames[index];
            if (few[index] != 0) note += ", " + name + " " + std::to_string(few[index]);
            bench.Require(again[index] <= few[index], std::string(trial.GetCall()) + " asks the spooler for " + name +
                                                          " more often with every call");
            bench.Require(many[index] <= few[index], std::string(trial.GetCall()) + " asks the spooler for " + name +
                                                         " " + std::to_string(many[index]) +
                                                         " times for a longer document and " +
                                                         std::to_string(few[index]) + " times for a short one");
        }
        bench.Note(std::string(trial.GetCall()) + " asks the spooler for " +
                   (note.empty() ? "nothing" : note.substr(2)));
    }
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Time, "times", "no operation takes half a second; the median and the 99th percentile of each",
      ReportsTimes, true}},
    {{CheckGroup::Time, "growth", "time grows with the document, not with its square", GrowsWithTheDocument, true}},
    {{CheckGroup::Time, "spooler-questions",
      "questions to the spooler do not grow with the document or from call to call", AsksTheSpoolerSeldom}},
};

}  // namespace
