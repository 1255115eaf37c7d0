// What the benchmarks share: timing a provider's call, beside libxml2 alone on the document that it leaves.
#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <string>

#include <spooler/questioncount.h>
#include <subsystem/printsession.h>
#include <subsystem/xmlfile.h>

void RegisterPaperBenchmarks();
void RegisterDocumentBenchmarks();
void RegisterPrinterBenchmarks();

// A fresh document with the device's namespace declared, as a conversion finds it.
inline PrintSession::Document ReadForBenchmark(const PrintSession& session, const std::string& text) {
    auto document = ReadDocumentBytes(text, "the benchmark's document");
    session.DeclareNamespaces(document.Get());
    return document;
}

std::string ToText(const PrintSession::Document& document);

// Sets the counters of a run: the ratio to libxml2 on the document, its bytes, how often a block was parsed, a list
// decoded and a product file read, and how often one call asked the spooler and the registry.
class RunCounters {
public:
    RunCounters();
    void Set(benchmark::State& state, double seconds, const PrintSession::Document& last) const;

private:
    std::size_t parsedBlocks_, decodedLists_, readProducts_;
    std::array<std::size_t, kSpoolerQuestionCount> questions_;
    std::size_t registryRequests_;
};

// Times the provider's call alone: the operation is handed a function that it calls with that call, and returns the
// document that it leaves.
template <class Operation>
void Run(benchmark::State& state, Operation operation) {
    PrintSession::Document last;
    double seconds = 0;
    const auto timed = [&](auto call) {
        const auto start = std::chrono::steady_clock::now();
        const HRESULT result = call();
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        seconds += elapsed.count();
        state.SetIterationTime(elapsed.count());
        if (FAILED(result)) state.SkipWithError("the provider failed");
    };
    const RunCounters counters;
    for (auto _ : state) last = operation(timed);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
    if (state.threads() == 1 && last) counters.Set(state, seconds, last);
}
