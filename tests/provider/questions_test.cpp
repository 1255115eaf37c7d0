// What an operation asks the spooler, and that nothing of it is kept for the next one.
#include <support/printerfixture.h>

#include <capabilitycaches.h>
#include <spooler/questioncount.h>
#include <subsystem/devmodemaker.h>
#include <subsystem/printsession.h>

#include <gtest/gtest.h>

namespace {

std::array<std::size_t, kSpoolerQuestionCount> CountQuestions() {
    std::array<std::size_t, kSpoolerQuestionCount> counts;
    for (std::size_t index = 0; index < counts.size(); ++index)
        counts[index] = GetSpoolerQuestionCount(static_cast<SpoolerQuestion>(index));
    return counts;
}

// What the call asks.
template <class Call>
std::array<std::size_t, kSpoolerQuestionCount> CountQuestionsOf(Call call) {
    const auto before = CountQuestions();
    call();
    auto asked = CountQuestions();
    for (std::size_t index = 0; index < asked.size(); ++index) asked[index] -= before[index];
    return asked;
}

TEST(Questions, AnOperationAsksForThePrinterAndItsDriverOnce) {
    const TestStore store;
    const TestPrinter printer(kPress);
    RebuildCapabilityCaches(printer.GetHandle());
    const PrintSession session(printer.GetName());
    const CoreDriver& core = session.GetCoreDriver();
    DevmodeBuffer devmode = MakeDevmode(core.GetProduct(), printer.GetName().AsWideString(), {});
    const auto ticket = session.MakeTicket(devmode), capabilities = session.MakeCapabilities();

    const struct {
        const char* operation;
        std::function<HRESULT()> call;
        std::size_t deviceCapabilities, cacheReads;
    } cases[] = {
        {"ticket", [&] { return session.CallTicket(devmode, ticket.Get()); }, 3, 1},
        {"apply", [&] { return session.CallApply(ticket.Get(), devmode); }, 3, 1},
        {"capabilities", [&] { return session.CallCapabilities(nullptr, capabilities.Get()); }, 4, 2},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.operation);
        const auto asked = CountQuestionsOf([&] { EXPECT_EQ(test.call(), S_OK); });
        const auto count = [&](SpoolerQuestion question) { return asked[static_cast<std::size_t>(question)]; };
        EXPECT_LE(count(SpoolerQuestion::Printer), 2u);
        EXPECT_LE(count(SpoolerQuestion::Driver), 1u);
        EXPECT_EQ(count(SpoolerQuestion::Capabilities), test.deviceCapabilities);
    }
}

}  // namespace
