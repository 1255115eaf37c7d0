// What tickets of unusual shapes cost to be read and applied, beside one of the ordinary shape: the time for a byte
// stays within twice the ordinary one's.
#include <benchmark/benchmark.h>

#include <printsubsystem/printschema.h>

#include <subsystem/devmodemaker.h>
#include "benchmarks.h"

namespace {

constexpr const char* kScored = "<psf:ScoredProperty name='psk:MediaSizeWidth'><psf:Value xsi:type='xsd:integer'>";
constexpr const char* kScoredEnd = "</psf:Value></psf:ScoredProperty>";

std::string Times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

// Each "#" of the text becomes the number of the copy.
std::string Numbered(int count, std::string_view text) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        for (const char c : text) all += c == '#' ? std::to_string(i) : std::string(1, c);
    }
    return all;
}

std::string Ticket(const std::string& attributes, const std::string& content) {
    const auto declare = [](const char* prefix, const WCHAR* uri) {
        return std::string(" xmlns:") + prefix + "='" + CXString(uri).ToUtf8() + '\'';
    };
    return "<psf:PrintTicket version='1'" + declare("psf", kFrameworkNamespace) + declare("psk", kKeywordsNamespace) +
           declare("xsi", kXmlSchemaInstanceNamespace) + declare("xsd", kXmlSchemaNamespace) + attributes + '>' +
           content + "</psf:PrintTicket>";
}

std::string MakeOrdinary() {
    return Ticket("", Numbered(18000, "<psf:Feature name='psk:F#'><psf:Option name='psk:X'>" + std::string(kScored) +
                                          '#' + kScoredEnd + "</psf:Option></psf:Feature>"));
}

std::string MakeNestedFeatures() {
    constexpr int kDepth = 200;
    return Ticket("", Times(kDepth, "<psf:Feature name='psk:PageMediaSize'>") + "<psf:Option name='psk:X'>" +
                          Numbered(20000, kScored + std::string("#") + kScoredEnd) + "</psf:Option>" +
                          Times(kDepth, "</psf:Feature>"));
}

std::string MakeManyDeclarations() {
    return Ticket(Numbered(40000, " xmlns:ns#='u'"), Numbered(1000, "<psf:Feature name='psk:F#'/>"));
}

std::string MakeInterleavedOptions() {
    return Ticket("", "<psf:Feature name='psk:PageMediaSize'>" +
                          Numbered(40000,
                                   "<psf:Option name='psk:X#'/><psf:ScoredProperty name='psk:OptionName'>"
                                   "<psf:Value>psk:X#</psf:Value></psf:ScoredProperty>") +
                          "</psf:Feature>");
}

std::string MakeManyAttributes() {
    return Ticket(Numbered(100000, " a#='1'"), "<psf:Feature name='psk:PageMediaSize'/>");
}

// Reads the ticket and applies it to a fresh DEVMODE.
class TicketReading {
public:
    PrintSession::Document Apply(const std::string& text) {
        DevmodeBuffer devmode = MakeDevmode(session_.GetCoreDriver().GetProduct(), W("press8434"), {});
        auto document = ReadDocumentBytes(text, "the benchmark's document");
        session_.ApplyTicket(document.Get(), devmode);
        return document;
    }

private:
    PrintSession session_{CXString(W("press8434"))};
};

double MeasureOrdinary(TicketReading& reading) {
    const std::string text = MakeOrdinary();
    constexpr int kRuns = 5;
    const auto start = std::chrono::steady_clock::now();
    for (int run = 0; run < kRuns; ++run) reading.Apply(text);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count() / kRuns / static_cast<double>(text.size());
}

void ApplyShape(benchmark::State& state, std::string (*make)()) {
    const std::string text = make();
    TicketReading reading;
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) benchmark::DoNotOptimize(reading.Apply(text));
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    const double forByte = elapsed.count() / static_cast<double>(state.iterations()) / static_cast<double>(text.size());
    state.counters["bytes"] = static_cast<double>(text.size());
    state.counters["vs_ordinary"] = forByte / MeasureOrdinary(reading);
}

}  // namespace

void RegisterDocumentBenchmarks() {
    const std::pair<const char*, std::string (*)()> shapes[] = {
        {"ordinary", MakeOrdinary},
        {"nested features", MakeNestedFeatures},
        {"40,000 declarations", MakeManyDeclarations},
        {"interleaved options", MakeInterleavedOptions},
        {"100,000 attributes", MakeManyAttributes},
    };
    for (const auto& [name, make] : shapes)
        benchmark::RegisterBenchmark((std::string("documents/") + name).c_str(),
                                     [make = make](benchmark::State& state) { ApplyShape(state, make); });
}
