// What an operation asks the spooler, and that nothing of it is kept for the next one.
#include <provider/boundprovider.h>

#include <spooler/questioncount.h>

namespace {

struct Questions {
    std::size_t printer, driver, capabilities, cacheReads;

    static Questions Ask() {
        const auto count = [](SpoolerQuestion question) { return GetSpoolerQuestionCount(question); };
        using enum SpoolerQuestion;
        return {count(Printer), count(Driver), count(Capabilities), count(CacheRead)};
    }
};

// What the call asks.
template <class Call>
Questions Count(Call call) {
    const Questions before = Questions::Ask();
    call();
    const Questions after = Questions::Ask();
    return {after.printer - before.printer, after.driver - before.driver, after.capabilities - before.capabilities,
            after.cacheReads - before.cacheReads};
}

TEST(Questions, AnOperationAsksForThePrinterAndItsDriverOnce) {
    const TestStore store;
    const BoundProvider press(kPress);
    TestDevmode devmode = MakeTestDevmode();
    ComPtr<IXMLDOMDocument2> ticket = LoadUsual("PrintTicket", "");
    const auto capabilities = LoadUsual("PrintCapabilities", "");
    const struct {
        const char* operation;
        std::function<void()> call;
        std::size_t deviceCapabilities;
    } cases[] = {
        {"ticket", [&] { EXPECT_EQ(press.ToTicket(devmode, ticket), S_OK); }, 3},
        {"apply", [&] { EXPECT_EQ(press.ToDevmode(ticket, devmode), S_OK); }, 3},
        {"capabilities", [&] { press->CompletePrintCapabilities(nullptr, capabilities.Get()); }, 4},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.operation);
        const Questions asked = Count(test.call);
                    asked.cacheReads);
                    EXPECT_LE(asked.printer, 2u);
                    EXPECT_LE(asked.driver, 1u);
                    EXPECT_EQ(asked.capabilities, test.deviceCapabilities);
    }
}

}  // namespace
