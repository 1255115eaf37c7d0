// What is held grows neither with conversions nor with providers; what is handed out is the caller's to free.
#include <livecounts.h>
#include <subsystem/xmlfile.h>
#include <windows.h>

#include <verify/binding.h>
#include <verify/check.h>
#include <verify/processuse.h>
#include <verify/testbench.h>

namespace {

// The allocator's own rounding, and what caches fill up with once.
constexpr std::size_t kHeapTolerance = std::size_t{256} * 1024;

struct Holdings {
    ProcessUse use = MeasureProcessUse();
    long domObjects = LiveDomObjectCount(), texts = LiveBstrCount();
};

void RequireNoMore(TestBench& bench, const Holdings& early, const std::string& what) {
    const Holdings late;
    const auto require = [&](bool holds, const char* of, auto before, auto after) {
        bench.Require(
            holds, what + " leave " + std::to_string(after) + " " + of + " where there were " + std::to_string(before));
    };
    require(late.domObjects <= early.domObjects, "DOM objects", early.domObjects, late.domObjects);
    require(late.texts <= early.texts, "BSTRs", early.texts, late.texts);
    require(late.use.openHandles <= early.use.openHandles, "open handles", early.use.openHandles, late.use.openHandles);
    require(late.use.heapBytes <= early.use.heapBytes + kHeapTolerance, "bytes", early.use.heapBytes,
            late.use.heapBytes);
}

template <class Action>
void Repeat(TestBench& bench, const char* what, std::size_t warmUp, std::size_t times, Action action) {
    constexpr std::size_t kStepEach = 64;
    std::size_t done = 0;
    const auto repeat = [&](std::size_t count) {
        for (std::size_t n = 0; n < count; ++n) {
            if (done++ % kStepEach == 0) bench.Step(std::string(what) + ", number " + std::to_string(done));
            action();
        }
    };
    repeat(warmUp);
    const Holdings early;
    repeat(times);
    RequireNoMore(bench, early, std::to_string(times) + " " + what);
}

void ConversionsLeaveNothing(TestBench& bench) {
    const auto session = bench.OpenSession();
    const DevmodeBuffer fresh = bench.MakeDevmode(*session);
    const std::string ticketText = FormatDocument(bench.MakeCoreTicket(*session, fresh).Get());
    // Two conversions each.
    Repeat(bench, "rounds of two conversions", 100, bench.Choose(1500, 500000), [&] {
        DevmodeBuffer devmode = fresh;
        const auto ticket = ReadDocumentBytes(ticketText, "the ticket");
        session->CallTicket(devmode, ticket.Get());
        session->CallApply(ticket.Get(), devmode);
    });
}

void CapabilitiesLeaveNothing(TestBench& bench) {
    const auto session = bench.OpenSession();
    const std::string text = FormatDocument(bench.MakeCoreCapabilities(*session).Get());
    Repeat(bench, "completed capabilities", 30, bench.Choose(200, 20000), [&] {
        const auto capabilities = ReadDocumentBytes(text, "the capabilities");
        session->CallCapabilities(nullptr, capabilities.Get());
        session->CallExpand(capabilities.Get());
        session->CallValidate(capabilities.Get());
    });
}

void FailuresLeaveNothing(TestBench& bench) {
    const auto session = bench.OpenSession();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    Repeat(bench, "failed conversions", 50, bench.Choose(1000, 20000), [&] {
        const auto other = ReadDocumentBytes("<other version='1'><a name='b:c'/></other>", "another document");
        session->CallTicket(devmode, other.Get());
        session->CallApply(other.Get(), devmode);
        session->CallCapabilities(other.Get(), other.Get());
        session->CallValidate(other.Get());
    });
}

void ProvidersLeaveNothing(TestBench& bench) {
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    Repeat(bench, "providers, made, bound and released", 20, bench.Choose(100, 5000), [&] {
        const auto provider = bench.MakeProvider();
        BindProvider(*provider.Get(), printer.Get());
    });
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Memory, "conversions", "thousands of conversions leave no BSTR, DOM object, handle or byte behind",
      ConversionsLeaveNothing}},
    {{CheckGroup::Memory, "capabilities", "completing capabilities many times leaves nothing behind",
      CapabilitiesLeaveNothing}},
    {{CheckGroup::Memory, "failures", "operations that fail leave nothing behind", FailuresLeaveNothing}},
    {{CheckGroup::Memory, "providers", "providers that are made, bound and released leave nothing behind",
      ProvidersLeaveNothing}},
};

}  // namespace
