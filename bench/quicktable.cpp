// The quick table, collected by a reporter of its own.
#include "quicktable.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr const char* kOperations[] = {"ticket", "apply", "capabilities"};
constexpr const char* kProducts[] = {"office8430", "press8434", "script8432"};

// The values of a benchmark's counter, one a repetition, by the benchmark's name and the counter's.
class Collector : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            failed_ |= run.error_occurred;
            for (const auto& [name, counter] : run.counters)
                values_[run.run_name.str() + ' ' + name].push_back(counter.value);
        }
    }

    bool HasFailed() const noexcept { return failed_; }
    // The median; 0 where nothing was measured.
    double Get(const std::string& benchmark, const std::string& counter) {
        std::vector<double>& values = values_[benchmark + ' ' + counter];
        if (values.empty()) return 0;
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }

private:
    std::map<std::string, std::vector<double>> values_;
    bool failed_ = false;
};

void PrintRatios(Collector& runs, std::ostream& out) {
    out << "over libxml2's own reading and writing of the result\n";
    for (const char* product : kProducts) {
        out << "  " << std::left << std::setw(12) << product << std::right;
        for (const std::string operation : kOperations)
            out << "  " << operation << std::setw(6)
                << runs.Get(operation + '/' + product + "/manual_time", "vs_libxml2");
        out << '\n';
    }
    for (const std::string papers : {"20", "200", "2000"})
        out << "  " << std::setw(5) << papers << " papers  capabilities" << std::setw(6)
            << runs.Get("capabilities/papers/" + papers + "/manual_time", "vs_libxml2") << '\n';
}

void PrintThreads(Collector& runs, std::ostream& out) {
    out << "conversions a second of two threads, beside those of one\n";
    for (const char* product : kProducts) {
        out << "  " << std::left << std::setw(12) << product << std::right;
        for (const std::string operation : kOperations) {
            const std::string name = operation + '/' + product + "/many/real_time/threads:";
            const double one = runs.Get(name + '1', "items_per_second");
            out << "  " << operation << std::setw(6) << (one > 0 ? runs.Get(name + '2', "items_per_second") / one : 0);
        }
        out << '\n';
    }
}

// On the press, which asks most.
void PrintQuestions(Collector& runs, std::ostream& out) {
    out << "questions to the spooler and to the registry, for one conversion of the press\n";
    for (const std::string operation : kOperations) {
        out << "  " << std::left << std::setw(12) << operation << std::right;
        for (const char* question : {"GetPrinterW", "GetPrinterDriverW", "DeviceCapabilitiesW", "registry"})
            out << "  " << question << ' ' << runs.Get(operation + "/press8434/manual_time", question);
        out << '\n';
    }
}

}  // namespace

int RunQuickTable(std::ostream& out) {
    benchmark::SetDefaultTimeUnit(benchmark::kMicrosecond);
    Collector runs;
    benchmark::RunSpecifiedBenchmarks(
        &runs, "(ticket|apply|capabilities)/(papers/.*|[a-z0-9]*/manual_time|[a-z0-9]*/many/real_time/threads:[12])");
    out << std::fixed << std::setprecision(1);
    PrintRatios(runs, out);
    out << std::setprecision(2);
    PrintThreads(runs, out);
    out << std::setprecision(0);
    PrintQuestions(runs, out);
    if (runs.HasFailed()) std::cerr << "a benchmark failed\n";
    return runs.HasFailed() ? 1 : 0;
}
