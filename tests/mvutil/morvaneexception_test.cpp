// Exceptions: what they carry, and what the hooks are handed.
#include <mvutil/morvaneexception.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

namespace {

const ExecutionContextStack& Contexts() { return UtilitiesDllPerThreadStorage::GetExecutionContextStack(); }

void Report(const std::exception* exception) {
    MorvaneException::DisplayExceptionMessage(false, false, exception, W("unit"), 34, W("C::D"), Contexts(), nullptr,
                                              CXString(), CXString());
}

TEST(Exceptions, EachKindIsReportedOnceByItsOwnName) {
    std::vector<ExceptionReport> reports;
    const auto before =
        MorvaneException::SetReportHook([&](const ExceptionReport& report) { reports.push_back(report); });
    const MorvaneComException com(W("why"), W("far"), 1, W("Far::Away"), Contexts(), E_POINTER);
    const std::bad_alloc memory;
    const std::runtime_error other("plain \xC3\xA9");
    const ExecutionContextLifetime step(BasicExecutionContext(4, W("step"), W("unit")));
    const struct {
        const std::exception* exception;
        const WCHAR *className, *message, *thrownFrom;
        HRESULT hresult;
    } cases[] = {{&com, W("MorvaneComException"), W("why"), W("Far::Away"), E_POINTER},
                 {&memory, W("std::bad_alloc"), nullptr, W(""), 0},
                 {&other, W("std::exception"), W("plain \u00E9"), W(""), 0},
                 {nullptr, W(""), W(""), W(""), 0}};
    for (const auto& item : cases) {
        Report(item.exception);
        const ExceptionReport& report = reports.back();
        EXPECT_EQ(report.className, item.className);
        if (item.message) {
            EXPECT_EQ(report.message, item.message);
        }
        EXPECT_EQ(report.thrownFrom, item.thrownFrom);
        EXPECT_EQ(report.hresult, item.hresult);
        EXPECT_EQ(report.methodName, W("C::D"));
        EXPECT_EQ(report.contexts.GetContexts().at(0).GetName(), W("step"));
    }
    EXPECT_EQ(reports.size(), std::size(cases));
    MorvaneException::SetReportHook(before);
}

TEST(Exceptions, AFailingHookIsNobodysFailure) {
    const auto debug = MorvaneException::SetDebugHook([](const ExceptionTrace&) -> bool { throw 1; });
    const auto report = MorvaneException::SetReportHook([](const ExceptionReport&) { throw std::bad_alloc(); });
    EXPECT_FALSE(MorvaneException::AllowForExceptionDebug(W("X"), W("*Throwing* X: m"), W("unit"), 12, W("A::B"),
                                                          Contexts(), ExceptionCategories(0)));
    EXPECT_NO_THROW(Report(nullptr));
    MorvaneException::SetDebugHook(debug);
    MorvaneException::SetReportHook(report);
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
}

}  // namespace
