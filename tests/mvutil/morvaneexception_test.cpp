// Exceptions: what they carry, and what the hooks are told.
#include <mvutil/morvaneexception.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

namespace {

// Records every throw and report while it lives, then restores what was installed before.
class Hooks {
public:
    Hooks() {
        debug_ = MorvaneException::SetDebugHook([this](const ExceptionTrace& trace) {
            traces.push_back(trace);
            return answer;
        });
        report_ = MorvaneException::SetReportHook([this](const ExceptionReport& report) { reports.push_back(report); });
    }
    ~Hooks() {
        MorvaneException::SetDebugHook(debug_);
        MorvaneException::SetReportHook(report_);
    }
    Hooks(const Hooks&) = delete;
    Hooks& operator=(const Hooks&) = delete;

    bool answer = true;
    std::vector<ExceptionTrace> traces;
    std::vector<ExceptionReport> reports;

private:
    MorvaneException::DebugHook debug_;
    MorvaneException::ReportHook report_;
};

const ExecutionContextStack& Contexts() { return UtilitiesDllPerThreadStorage::GetExecutionContextStack(); }

bool Announce() {
    return MorvaneException::AllowForExceptionDebug(W("X"), W("*Throwing* X: m"), W("unit"), 12, W("A::B"), Contexts(),
                                                    ExceptionCategories(3));
}

void Report(const std::exception* exception) {
    MorvaneException::DisplayExceptionMessage(false, false, exception, W("unit"), 34, W("C::D"), Contexts(), nullptr,
                                              CXString(), CXString());
}

TEST(Exceptions, CarryWhatTheirFactoryWasGiven) {
    const ExecutionContextLifetime step(BasicExecutionContext(9, W("convert"), W("unit")));
    try {
        throw GetMorvaneComException(W("m\u00E9"), W("unit"), 56, W("A::B"), Contexts(), E_FAIL);
    } catch (const std::exception& caught) {
        const auto& exception = dynamic_cast<const MorvaneComException&>(caught);
        EXPECT_EQ(exception.GetHresult(), E_FAIL);
        EXPECT_EQ(exception.GetLine(), 56);
        EXPECT_EQ(exception.GetMethodName(), W("A::B"));
        EXPECT_EQ(exception.GetSourceFile(), W("unit"));
        EXPECT_EQ(exception.GetContexts().GetContexts().at(0).GetId(), 9);
        EXPECT_STREQ(exception.what(), "m\xC3\xA9");
    }
}

TEST(Exceptions, AreNamedByTheirClassWhenTheyHaveNoMessage) {
#define EXPECT_CLASS(name) EXPECT_STREQ(Get##name(CXString(), W("unit"), 1, W("A::B"), Contexts()).what(), #name)
    EXPECT_CLASS(ExceptionInvalidArgumentNullPointer);
    EXPECT_CLASS(ExceptionInvalidPrinterHandle);
    EXPECT_CLASS(ExceptionWorkflowObjectNotInitialized);
    EXPECT_CLASS(ExceptionDelayLoadDllLoadFailure);
    EXPECT_CLASS(ExceptionPrinterFailure);
    EXPECT_CLASS(ExceptionPrintDriverFailure);
    EXPECT_CLASS(ExceptionDataCacheFailure);
}

TEST(Exceptions, TheDebugHookDecidesAndIsToldEverything) {
    EXPECT_FALSE(MorvaneException::HasDebugHook());
    EXPECT_FALSE(Announce());
    Hooks hooks;
    EXPECT_TRUE(MorvaneException::HasDebugHook());
    EXPECT_TRUE(Announce());
    hooks.answer = false;
    EXPECT_FALSE(Announce());
    ASSERT_EQ(hooks.traces.size(), 2u);
    const ExceptionTrace& trace = hooks.traces[0];
    EXPECT_EQ(trace.className, W("X"));
    EXPECT_EQ(trace.trace, W("*Throwing* X: m"));
    EXPECT_EQ(trace.sourceFile, W("unit"));
    EXPECT_EQ(trace.methodName, W("A::B"));
    EXPECT_EQ(trace.line, 12);
    EXPECT_EQ(trace.categories, 3u);
}

TEST(Exceptions, EachKindIsReportedOnceByItsOwnName) {
    Hooks hooks;
    const MorvaneComException com(W("why"), W("far"), 1, W("Far::Away"), Contexts(), E_POINTER);
    const std::bad_alloc memory;
    const std::runtime_error other("plain \xC3\xA9");
    const ExecutionContextLifetime step(BasicExecutionContext(4, W("step"), W("unit")));
    for (const std::exception* exception :
         {static_cast<const std::exception*>(&com), static_cast<const std::exception*>(&memory),
          static_cast<const std::exception*>(&other), static_cast<const std::exception*>(nullptr)}) {
        Report(exception);
    }
    ASSERT_EQ(hooks.reports.size(), 4u);
    EXPECT_EQ(hooks.reports[0].className, W("MorvaneComException"));
    EXPECT_EQ(hooks.reports[0].message, W("why"));
    EXPECT_EQ(hooks.reports[0].hresult, E_POINTER);
    EXPECT_EQ(hooks.reports[0].thrownFrom, W("Far::Away"));
    EXPECT_EQ(hooks.reports[0].methodName, W("C::D"));
    EXPECT_EQ(hooks.reports[0].line, 34);
    EXPECT_EQ(hooks.reports[0].contexts.GetContexts().at(0).GetName(), W("step"));
    EXPECT_EQ(hooks.reports[1].className, W("std::bad_alloc"));
    EXPECT_EQ(hooks.reports[2].className, W("std::exception"));
    EXPECT_EQ(hooks.reports[2].message, W("plain \u00E9"));
    EXPECT_TRUE(hooks.reports[3].className.IsEmpty());
    EXPECT_EQ(hooks.reports[3].hresult, 0);
}

TEST(Exceptions, AFailingHookIsNobodysFailure) {
    Hooks restore;
    MorvaneException::SetDebugHook([](const ExceptionTrace&) -> bool { throw 1; });
    MorvaneException::SetReportHook([](const ExceptionReport&) { throw std::bad_alloc(); });
    EXPECT_FALSE(Announce());
    EXPECT_NO_THROW(Report(nullptr));
    MorvaneException::SetReportHook(nullptr);
    const std::runtime_error endless(std::string(5000, 'x'));
    EXPECT_NO_THROW(Report(&endless));  // to the debugger, cut to its line
}

TEST(Contexts, AreEachThreadsOwnAndLastAsLongAsTheirScope) {
    const ExecutionContextLifetime outer(BasicExecutionContext(1, W("outer"), W("unit")));
    {
        const ExecutionContextLifetime inner(BasicExecutionContext(2, W("inner"), W("unit")));
        EXPECT_EQ(Contexts().GetContexts().size(), 2u);
        std::size_t elsewhere = 99;
        std::thread([&elsewhere] { elsewhere = Contexts().GetContexts().size(); }).join();
        EXPECT_EQ(elsewhere, 0u);
    }
    ASSERT_EQ(Contexts().GetContexts().size(), 1u);
    EXPECT_EQ(Contexts().GetContexts()[0].GetName(), W("outer"));
    ExecutionContextStack empty;
    empty.Pop();
    EXPECT_TRUE(empty.GetContexts().empty());
}

}  // namespace
