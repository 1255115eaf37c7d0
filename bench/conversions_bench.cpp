// How long the conversions take on each product, beside what libxml2 alone takes to parse and serialise the resulting
// document, and how their throughput grows with threads that have a provider each.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <iostream>
#include <string_view>

#include <capabilitycaches.h>
#include <domdocument.h>
#include <mvutil/globalcaches.h>
#include <registryrequests.h>
#include <spooler/printerinstall.h>
#include <store.h>

#include <subsystem/devmodemaker.h>
#include <subsystem/productfiles.h>
#include "benchmarks.h"
#include "quicktable.h"

namespace {

using Clock = std::chrono::steady_clock;

// One product as a printer, with the documents that a conversion starts from.
class Workload {
public:
    explicit Workload(const CXString& printer)
        : session_(printer),
          devmode_(MakeDevmode(session_.GetCoreDriver().GetProduct(), printer.AsWideString(), {})),
          coreTicket_(session_.GetCoreDriver().WriteTicket(devmode_.CopyPublicPart())),
          coreCapabilities_(session_.GetCoreDriver().WriteCapabilities()),
          ticket_(ToText(session_.MakeTicket(devmode_))) {}

    // The document that the operation leaves. What lies before and behind the provider's own call is not timed.
    template <class Timed>
    PrintSession::Document Ticket(Timed timed) {
        auto document = ReadForBenchmark(session_, coreTicket_);
        timed([&] { return session_.CallTicket(devmode_, document.Get()); });
        return document;
    }
    template <class Timed>
    PrintSession::Document Apply(Timed timed) {
        auto document = ReadForBenchmark(session_, ticket_);
        timed([&] { return session_.CallApply(document.Get(), devmode_); });
        return document;
    }
    template <class Timed>
    PrintSession::Document Capabilities(Timed timed) {
        auto document = ReadForBenchmark(session_, coreCapabilities_);
        timed([&] { return session_.CallCapabilities(nullptr, document.Get()); });
        return document;
    }

private:
    PrintSession session_;
    DevmodeBuffer devmode_;
    std::string coreTicket_, coreCapabilities_, ticket_;
};

// Seconds that libxml2 takes to parse the text and serialise it again.
double MeasureLibxml2(const std::string& text) {
    constexpr int kRuns = 200;
    const auto start = Clock::now();
    for (int run = 0; run < kRuns; ++run) {
        xmlDoc* document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, XML_PARSE_NONET);
        xmlChar* bytes = nullptr;
        int length = 0;
        xmlDocDumpMemory(document, &bytes, &length);
        xmlFree(bytes);
        xmlFreeDoc(document);
    }
    return std::chrono::duration<double>(Clock::now() - start).count() / kRuns;
}

template <class Operation>
void Register(const std::string& name, const CXString& printer, Operation operation) {
    const auto run = [printer, operation](benchmark::State& state) {
        Workload workload(printer);
        Run(state, [&](auto timed) { return operation(workload, timed); });
    };
    benchmark::RegisterBenchmark((name + '/' + printer.ToUtf8()).c_str(), run)->UseManualTime();
    benchmark::RegisterBenchmark((name + '/' + printer.ToUtf8() + "/many").c_str(), run)
        ->ThreadRange(1, 4)
        ->UseRealTime();
}

void RegisterProducts() {
    for (const auto& file : FindKnownProducts().files) {
        const CXString printer = CXString(file.stem().string().c_str());
        InstallPrinter(printer, file, CXString());
        RebuildCapabilityCaches(PrintSession(printer).GetPrinter().GetHandle());
        Register("ticket", printer, [](Workload& work, auto timed) { return work.Ticket(timed); });
        Register("apply", printer, [](Workload& work, auto timed) { return work.Apply(timed); });
        Register("capabilities", printer, [](Workload& work, auto timed) { return work.Capabilities(timed); });
    }
}

// In the order of SpoolerQuestion.
constexpr const char* kQuestionNames[kSpoolerQuestionCount] = {"GetPrinterW", "GetPrinterDriverW",   "GetPrinterDataW",
                                                               "EnumFormsW",  "DeviceCapabilitiesW", "read_caches"};

std::array<std::size_t, kSpoolerQuestionCount> CountQuestions() {
    std::array<std::size_t, kSpoolerQuestionCount> counts;
    for (std::size_t index = 0; index < counts.size(); ++index)
        counts[index] = GetSpoolerQuestionCount(static_cast<SpoolerQuestion>(index));
    return counts;
}

}  // namespace

std::string ToText(const PrintSession::Document& document) {
    std::string text;
    SerialiseDomDocument(document.Get(), &text);
    return text;
}

RunCounters::RunCounters()
    : parsedBlocks_(GlobalCaches::GetCounters().propertyBagMisses),
      decodedLists_(GlobalCaches::GetCounters().listMisses),
      readProducts_(GetProductReadCount()),
      questions_(CountQuestions()),
      registryRequests_(GetRegistryRequestCount()) {}

void RunCounters::Set(benchmark::State& state, double seconds, const PrintSession::Document& last) const {
    const std::string text = ToText(last);
    const auto after = GlobalCaches::GetCounters();
    state.counters["vs_libxml2"] = seconds / static_cast<double>(state.iterations()) / MeasureLibxml2(text);
    state.counters["bytes"] = static_cast<double>(text.size());
    state.counters["parsed_blocks"] = static_cast<double>(after.propertyBagMisses - parsedBlocks_);
    state.counters["decoded_lists"] = static_cast<double>(after.listMisses - decodedLists_);
    state.counters["read_products"] = static_cast<double>(GetProductReadCount() - readProducts_);
    const auto perCall = [&](std::size_t count) {
        return static_cast<double>(count) / static_cast<double>(state.iterations());
    };
    const auto asked = CountQuestions();
    for (std::size_t index = 0; index < asked.size(); ++index)
        state.counters[kQuestionNames[index]] = perCall(asked[index] - questions_[index]);
    state.counters["registry"] = perCall(GetRegistryRequestCount() - registryRequests_);
}

int main(int argc, char** argv) {
    OpenStore(":memory:");
    RegisterProducts();
    RegisterPaperBenchmarks();
    RegisterDocumentBenchmarks();
    RegisterPrinterBenchmarks();
    const bool isQuick = argc > 1 && std::string_view(argv[1]) == "--quick";
    benchmark::Initialize(&argc, argv);
    if (!isQuick && benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    const int status = isQuick ? RunQuickTable(std::cout) : 0;
    if (!isQuick) benchmark::RunSpecifiedBenchmarks();
    CloseStore();
    return status;
}
