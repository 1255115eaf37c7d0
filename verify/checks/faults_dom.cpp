// A DOM that gives up at any one call, by a failure or by an exception: the operation answers, holds nothing
// afterwards, and works as ever with the next document.
#include <livecounts.h>

#include <algorithm>

#include <verify/check.h>
#include <verify/failingdom.h>
#include <verify/operationtrial.h>

namespace {

constexpr std::size_t kFewCalls = 400;

// A DomCallPlan that fails at the call.
struct FailureKind {
    const char* what;
    HRESULT result;
    bool throws;
};

class FailingTrial {
public:
    FailingTrial(TestBench& bench, const PrintSession& session, OperationKind kind, const FailureKind& failure)
        : bench_(bench), trial_(bench, session, kind), failure_(failure) {}

    // Of very many calls some, in the short form.
    void TryEachCall() {
        const std::size_t calls = static_cast<std::size_t>(CountCalls());
        const std::size_t tried = std::min(calls, bench_.Choose(kFewCalls, calls));
        for (std::size_t index = 0; index < tried; ++index) TryCall(static_cast<long>(1 + index * calls / tried));
        trial_.RequireAsEver();
    }

private:
    long CountCalls() {
        DomCallPlan plan;
        const auto document = trial_.ReadDocument();
        trial_.Call(document.Get(), MakeFailingDocument(document.Get(), &plan).Get());
        return plan.calls;
    }
    void TryCall(long number) {
        const std::string step = std::string(trial_.GetCall()) + ", DOM call " + std::to_string(number) + failure_.what;
        bench_.Step(step);
        DomCallPlan plan;
        plan.failAt = number;
        plan.failure = failure_.result;
        plan.throws = failure_.throws;
        const auto document = trial_.ReadDocument();
        const long held = LiveDomObjectCount(), texts = LiveBstrCount();
        trial_.Call(document.Get(), MakeFailingDocument(document.Get(), &plan).Get());
        bench_.Require(LiveDomObjectCount() == held,
                       step + ": " + std::to_string(LiveDomObjectCount() - held) + " DOM objects are kept");
        bench_.Require(LiveBstrCount() == texts,
                       step + ": " + std::to_string(LiveBstrCount() - texts) + " BSTRs are kept");
        constexpr long kLookEach = 10;
        if (number % kLookEach == 0) trial_.RequireAsEver();
    }

    TestBench& bench_;
    OperationTrial trial_;
    FailureKind failure_;
};

void TryFailures(TestBench& bench, const FailureKind& failure) {
    const auto session = bench.OpenSession();
    for (const OperationKind kind : ListOperationKinds()) FailingTrial(bench, *session, kind, failure).TryEachCall();
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Faults, "dom-calls-fail", "the n-th DOM call of each operation fails, for every n",
      [](TestBench& bench) {
          TryFailures(bench, {" failing", E_FAIL, false});
      }}},
    {{CheckGroup::Faults, "dom-out-of-memory", "the n-th DOM call of each operation has no memory, for every n",
      [](TestBench& bench) {
          TryFailures(bench, {" without memory", E_OUTOFMEMORY, false});
      }}},
    {{CheckGroup::Faults, "dom-calls-throw", "the n-th DOM call of each operation throws, for every n",
      [](TestBench& bench) {
          TryFailures(bench, {" throwing", E_FAIL, true});
      }}},
};

}  // namespace
