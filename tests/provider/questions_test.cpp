// What an operation asks the spooler, and that nothing of it is kept for the next one.
#include <support/printerfixture.h>

#include <capabilitycaches.h>
#include <morvaneptprovider.h>
#include <registryrequests.h>
#include <spooler/printerlist.h>
#include <spooler/questioncount.h>
#include <subsystem/devmodemaker.h>
#include <subsystem/printsession.h>
#include <uniquehandle.h>

#include <gtest/gtest.h>

namespace {

std::array<std::size_t, kSpoolerQuestionCount> CountQuestions() {
    std::array<std::size_t, kSpoolerQuestionCount> counts;
    for (std::size_t index = 0; index < counts.size(); ++index)
        counts[index] = GetSpoolerQuestionCount(static_cast<SpoolerQuestion>(index));
    return counts;
}

// What the call asks of the spooler, and the requests to the registry that come of it.
struct Asked {
    std::array<std::size_t, kSpoolerQuestionCount> questions;
    std::size_t registry;

    std::size_t operator[](SpoolerQuestion question) const { return questions[static_cast<std::size_t>(question)]; }
};

template <class Call>
Asked CountQuestionsOf(Call call) {
    const auto before = CountQuestions();
    const std::size_t registryBefore = GetRegistryRequestCount();
    call();
    Asked asked{CountQuestions(), GetRegistryRequestCount() - registryBefore};
    for (std::size_t index = 0; index < before.size(); ++index) asked.questions[index] -= before[index];
    return asked;
}

// Changes nothing that a printer has to do with.
void ChangeTheStore() {
    UniqueKey key;
    ASSERT_EQ(
        RegCreateKeyExW(HKEY_CURRENT_USER, W("Software\\Other"), 0, nullptr, 0, KEY_WRITE, nullptr, key.Put(), nullptr),
        ERROR_SUCCESS);
    ASSERT_EQ(RegSetValueExW(key.Get(), nullptr, 0, REG_SZ, nullptr, 0), ERROR_SUCCESS);
}

TEST(Questions, AnOperationAsksForThePrinterAndItsDriverOnce) {
    const TestStore store;
    const TestPrinter printer(kPress);
    RebuildCapabilityCaches(printer.GetHandle());
    const PrintSession session(printer.GetName());
    const CoreDriver& core = session.GetCoreDriver();
    DevmodeBuffer devmode = MakeDevmode(core.GetProduct(), printer.GetName().AsWideString(), {});
    const auto ticket = session.MakeTicket(devmode), capabilities = session.MakeCapabilities();
    const auto openAndBind = [&] {
        const UniquePrinter opened = OpenPrinterByName(printer.GetName().AsWideString());
        OEMPTOPTS options{};
        INT count = 0;
        BSTR* namespaces = nullptr;
        const auto provider = ComPtr<MorvanePtProvider>::Adopt(new MorvanePtProvider);
        const HRESULT bound = provider->BindPrinter(opened.Get(), 1, &options, &count, &namespaces);
        for (INT i = 0; i < count; ++i) SysFreeString(namespaces[i]);
        CoTaskMemFree(namespaces);
        return bound;
    };
    const struct {
        const char* operation;
        std::function<HRESULT()> call;
        std::size_t deviceCapabilities, cacheReads, registry;
    } cases[] = {
        {"open and bind", openAndBind, 0, 0, 15},
        {"ticket", [&] { return session.CallTicket(devmode, ticket.Get()); }, 3, 1, 25},
        {"apply", [&] { return session.CallApply(ticket.Get(), devmode); }, 3, 1, 25},
        {"capabilities", [&] { return session.CallCapabilities(nullptr, capabilities.Get()); }, 4, 2, 40},
    };
    for (const auto& test : cases)
        for (const bool isChanged : {true, false}) {
            SCOPED_TRACE(test.operation);
            if (isChanged) ChangeTheStore();
            const Asked asked = CountQuestionsOf([&] { EXPECT_EQ(test.call(), S_OK); });
            EXPECT_LE(asked[SpoolerQuestion::Printer], 2u);
            EXPECT_LE(asked[SpoolerQuestion::Driver], 1u);
            EXPECT_EQ(asked[SpoolerQuestion::Capabilities], test.deviceCapabilities);
            EXPECT_EQ(asked[SpoolerQuestion::CacheRead], isChanged ? test.cacheReads : 0);
            EXPECT_LE(asked.registry, test.registry);
        }
}

}  // namespace
