// Memory, texts, registry and spooler that give out at any one call: the provider answers, and works as ever with the
// next call.
#include <livecounts.h>
#include <subsystem/hresultnames.h>

#include <algorithm>

#include <verify/binding.h>
#include <verify/check.h>
#include <verify/failingfunctions.h>
#include <verify/operationtrial.h>

namespace {

constexpr std::size_t kFewCalls = 200;

void RequireStandIn() {
    if (!GetFailingFunctions())
        throw CheckNotApplicable("the system's own functions cannot be made to fail on this host");
}

// Calls the function so that its n-th call below fails, for n up to the number of calls; of very many some.
template <class Trial>
void ForEachCall(TestBench& bench, const std::string& what, Trial trial) {
    const std::size_t calls = static_cast<std::size_t>(trial(0));
    const std::size_t tried = std::min(calls, bench.Choose(kFewCalls, calls));
    for (std::size_t index = 0; index < tried; ++index) {
        const long n = static_cast<long>(1 + index * calls / tried);
        bench.Step(what + " with call " + std::to_string(n) + " of " + std::to_string(calls) + " below it failing");
        trial(n);
    }
}

// Calls with the n-th call of the function below failing; stores how many there were.
CallSurroundings Failing(FailingFunction function, long n, long* calls) {
    return [function, n, calls](const std::function<HRESULT()>& call) {
        FailingFunctions& functions = *GetFailingFunctions();
        functions.Arm(function, n);
        try {
            const HRESULT result = call();
            *calls = functions.Disarm(function);
            return result;
        } catch (...) {
            functions.Disarm(function);
            throw;
        }
    };
}

void TryOperations(TestBench& bench, FailingFunction function) {
    RequireStandIn();
    const auto session = bench.OpenSession();
    for (const OperationKind kind : ListOperationKinds()) {
        const OperationTrial trial(bench, *session, kind);
        ForEachCall(bench, trial.GetCall(), [&](long n) {
            long calls = 0;
            const auto document = trial.ReadDocument();
            const long held = LiveDomObjectCount(), texts = LiveBstrCount();
            trial.Call(document.Get(), nullptr, Failing(function, n, &calls));
            bench.Require(LiveDomObjectCount() == held, "DOM objects are kept");
            bench.Require(LiveBstrCount() == texts, "BSTRs are kept");
            trial.RequireAsEver();
            return calls;
        });
    }
}

// A provider whose bind failed is bound by the next call, and then converts.
void TryBinding(TestBench& bench, FailingFunction function) {
    RequireStandIn();
    const auto session = bench.OpenSession();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const std::string expected = FormatDocument(session->MakeTicket(devmode).Get());
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    ForEachCall(bench, "BindPrinter", [&](long n) {
        const auto provider = bench.MakeProvider();
        long calls = 0;
        const BindAnswer answer = BindProvider(*provider.Get(), printer.Get(), 1, Failing(function, n, &calls));
        const BindAnswer again = FAILED(answer.result) ? BindProvider(*provider.Get(), printer.Get()) : answer;
        bench.RequireResult("BindPrinter after a failed one", again.result, S_OK);
        if (FAILED(answer.result) || n == 0) {
            const auto ticket = bench.MakeCoreTicket(*session, devmode);
            provider->ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), 0, nullptr, ticket.Get());
            bench.Require(FormatDocument(ticket.Get()) == expected, "the ticket after a failed bind is another one");
        }
        return calls;
    });
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Faults, "memory-gives-out", "the n-th allocation of each operation fails, for every n",
      [](TestBench& bench) { TryOperations(bench, FailingFunction::Memory); }}},
    {{CheckGroup::Faults, "texts-give-out", "the n-th BSTR of each operation cannot be had, for every n",
      [](TestBench& bench) { TryOperations(bench, FailingFunction::Text); }}},
    {{CheckGroup::Faults, "registry-fails", "the n-th look into the registry of each operation fails, for every n",
      [](TestBench& bench) { TryOperations(bench, FailingFunction::Registry); }}},
    {{CheckGroup::Faults, "spooler-fails", "the n-th question to the spooler of each operation fails, for every n",
      [](TestBench& bench) { TryOperations(bench, FailingFunction::Spooler); }}},
    {{CheckGroup::Faults, "memory-gives-out-while-binding", "the n-th allocation of BindPrinter fails, for every n",
      [](TestBench& bench) { TryBinding(bench, FailingFunction::Memory); }}},
    {{CheckGroup::Faults, "spooler-fails-while-binding", "the n-th question to the spooler of BindPrinter fails",
      [](TestBench& bench) { TryBinding(bench, FailingFunction::Spooler); }}},
};

}  // namespace
