// What an operation asks the spooler, and that nothing of it is kept for the next one.
#include <support/printerfixture.h>
#include <support/userpapers.h>

#include <capabilitycaches.h>
#include <mvutil/datacache.h>
#include <mvutil/morvaneutilities.h>
#include <mvutil/printer.h>
#include <pathtext.h>
#include <registryrequests.h>
#include <spooler/printerlist.h>
#include <spooler/questioncount.h>
#include <store.h>
#include <subsystem/devmodemaker.h>
#include <subsystem/printsession.h>
#include <subsystem/registryexchange.h>
#include <subsystem/xmlfile.h>
#include <uniquehandle.h>

#include <gtest/gtest.h>

#include <cstdlib>

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
        const auto provider = GetOwnProvider().plugIn->MakeProvider();
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

// The value of a printer, or of the caches of its port, as a .reg file says it.
RegFile SetValue(const WideString& key, const WCHAR* name, DWORD type, const void* data, std::size_t size) {
    const auto* const bytes = static_cast<const BYTE*>(data);
    return {{HKEY_LOCAL_MACHINE, key, false, {{name, false, type, {bytes, bytes + size}}}}};
}
RegFile SetText(const WideString& key, const WCHAR* name, const WideString& text) {
    return SetValue(key, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(WCHAR));
}
RegFile SetCache(const TestPrinter& printer, const WCHAR* name, const ByteBuffer& blob) {
    const WideString key = kPrinterCachesKey + (W("\\") + printer.GetCacheKey().AsWideString());
    return SetValue(key, name, REG_BINARY, blob.getLpbyte(), blob.getDword());
}
ByteBuffer GetCache(const TestPrinter& printer, const WCHAR* name) {
    ByteBuffer blob;
    DataCache(printer.GetHandle(), HKEY_LOCAL_MACHINE, 0, false).GetCachedBytesValue(name, blob);
    return blob;
}

// A printer in a store on disk, its provider bound once.
class ChangingPrinter : public testing::Test {
protected:
    struct Store {
        explicit Store(const std::filesystem::path& folder) { OpenStore(PathToUtf8(folder)); }
        ~Store() { CloseStore(); }
    };

    void SetUp() override {
        for (const TestPrinter* each : {&press_, &office_}) RebuildCapabilityCaches(each->GetHandle());
        session_.emplace(press_.GetName());
        core_ = session_->GetCoreDriver().WriteCapabilities();
    }

    std::string Complete() const {
        const auto document = ReadDocumentBytes(core_, "the capabilities");
        session_->DeclareNamespaces(document.Get());
        EXPECT_EQ(session_->CallCapabilities(nullptr, document.Get()), S_OK);
        return FormatDocument(document.Get());
    }
    // In a process of its own.
    void RunHost(const std::string& arguments) const {
        const auto program = (std::filesystem::path(".") / "mvpthost").make_preferred();
        const std::string command =
            PathToUtf8(program) + " --store \"" + PathToUtf8(folder_ / "store") + "\" " + arguments;
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
    }
    void Import(const RegFile& file, bool elsewhere) const {
        if (!elsewhere) return ImportRegistry(file);
        RunHost("registry import \"" + PathToUtf8(folder_.Write("change.reg", FormatRegFile(file))) + "\"");
    }

    const TemporaryFolder folder_;
    const Store store_{folder_ / "store"};
    const ChangedProduct product_{kPress, {}};
    const TestPrinter press_{W("Press"), product_.GetFile()}, office_{kOffice, W("Office")};
    std::optional<PrintSession> session_;
    std::string core_;
};

TEST_F(ChangingPrinter, IsSeenByTheNextOperation) {
    const WideString key = W("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Press");
    const WideString driverKey = W(
        "SYSTEM\\CurrentControlSet\\Control\\Print\\Environments\\Windows x64\\Drivers\\Version-3\\Morvane Press 8434");
    const WideString port = Printer(press_.GetHandle()).GetPrinterPort().AsWideString();
    const auto cache = [&](const WCHAR* name, const TestPrinter& of) {
        return SetCache(press_, name, GetCache(of, name));
    };
    const struct {
        const char* what;
        RegFile change, back;
    } cases[] = {
        {"port", SetText(key, W("Port"), W("ELSE:")), SetText(key, W("Port"), port)},
        {"driver", SetText(key, W("Printer Driver"), W("None")),
         SetText(key, W("Printer Driver"), W("Morvane Press 8434"))},
        {"driver's file", SetText(driverKey, W("Data File"), W("none.toml")),
         SetText(driverKey, W("Data File"), product_.GetFile().string<WCHAR>())},
        {"media types", cache(kMediaCapsValue, office_), cache(kMediaCapsValue, press_)},
        {"papers", cache(kPaperCapsValue, office_), cache(kPaperCapsValue, press_)},
        {"limits", cache(kDeviceLimitsValue, office_), cache(kDeviceLimitsValue, press_)},
    };
    const std::string before = Complete();
    for (const auto& test : cases)
        for (const bool elsewhere : {false, true}) {
            Import(test.change, elsewhere);
            EXPECT_TRUE(Complete() != before) << test.what << elsewhere;
            Import(test.back, elsewhere);
            EXPECT_TRUE(Complete() == before) << test.what << elsewhere;
        }

    AddForm(press_.GetHandle(), W("Here"), 123000, 234000);
    RebuildCapabilityCaches(press_.GetHandle());
    EXPECT_NE(Complete().find(">Here<"), std::string::npos);
    RunHost("printer form add There --printer Press --width 123 --length 345");
    EXPECT_NE(Complete().find(">There<"), std::string::npos);
    const auto strings = product_.GetFile().parent_path() / "strings.toml";
    WriteTestFile(strings, "418 = \"How many\"\n");
    EXPECT_NE(Complete().find(">How many<"), std::string::npos) << "the product's file";
}

}  // namespace
