// How CompletePrintCapabilities grows with the printer's paper sizes, beside what libxml2 alone takes for the result.
#include <sys/resource.h>

#include <benchmark/benchmark.h>

#include <capabilityblob.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/printer.h>
#include <printsubsystem/capabilityrecords.h>

#include "benchmarks.h"

namespace {

constexpr DWORD kMediaTypes = 70;

// A paper database in which every third record shares its number with another one, so that the rule for doubled papers
// has work to do.
ByteBuffer MakePapers(DWORD count) {
    CapabilityBlob<PaperCapsHeader> blob;
    for (DWORD index = 0; index < count; ++index) {
        _tag_FormsInfoRec record{};
        record.msPaperId = static_cast<WORD>(1000 + index / 3 * 2 + index % 2);
        record.width = static_cast<LONG>(1000 + index);
        record.length = static_cast<LONG>(1500 + index);
        record.pageSizeValue = 7000 + index;
        record.displayUnits = 7491;
        record.pageSizeType = index % 3 == 0 ? 25003 : 25005;
        CXString name;
        name.Format(W("Paper %u"), index);
        SetNameField(record.name, name.AsWideString());
        blob.Append(record);
    }
    PaperCapsHeader header{};
    header.count = blob.GetCount();
    return blob.Finish(*FindCapabilityGroup(2), header);
}

ByteBuffer MakeMediaTypes() {
    CapabilityBlob<ListCapsHeader> blob;
    for (DWORD index = 0; index < kMediaTypes; ++index) {
        const bool isUserDefined = index >= 11 && index <= 19;  // 6811 to 6819 have no option name
        MediaCapsRecord record{isUserDefined ? 9636 + index : 6800 + index, {}};
        CXString name;
        name.Format(W("Media type %u"), index);
        SetNameField(record.name, name.AsWideString());
        blob.Append(record);
    }
    return blob.Finish(*FindCapabilityGroup(35), {0, blob.GetCount()});
}

void CompleteCapabilities(benchmark::State& state) {
    const CXString printer(W("press8434"));
    PrintSession session(printer);
    DataCache cache(
        session.GetPrinter().GetHandle(), HKEY_LOCAL_MACHINE,
        MorvaneUtilities::ConvertPortNameToRegistryKey(Printer(session.GetPrinter().GetHandle()).GetPrinterPort()),
        kCapabilityCacheCrcStart, true);
    cache.SetCachedValue(kPaperCapsValue, MakePapers(static_cast<DWORD>(state.range(0))), false);
    cache.SetCachedValue(kMediaCapsValue, MakeMediaTypes(), false);
    const std::string core = session.GetCoreDriver().WriteCapabilities();
    Run(state, [&](auto timed) {
        auto document = ReadForBenchmark(session, core);
        timed([&] { return session.CallCapabilities(nullptr, document.Get()); });
        return document;
    });
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["peak_MiB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}

}  // namespace

void RegisterPaperBenchmarks() {
    benchmark::RegisterBenchmark("capabilities/papers", CompleteCapabilities)
        ->Arg(20)
        ->Arg(200)
        ->Arg(2000)
        ->UseManualTime();
}
