// The generator of job tickets: when there is a ticket, where its texts and numbers come from, and who writes it.
#include <renbase.h>
#include <renidentification.h>
#include <support/jobdevmode.h>
#include <support/printerfixture.h>
#include <xdevmode.h>
#include <xoempdev.h>

#include <mvutil/datacache.h>
#include <mvutil/executioncontext.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/printjob.h>

#include <gtest/gtest.h>

#include <fstream>

namespace {

class TestProduct final : public ProductData {
public:
    DWORD GetControllerFamily() const override { return 8434; }
    CXString GetInfo(int) const override { return CXString(); }
    CXString GetPath(int) const override { return CXString(); }
    CXString GetModelName() const override { return W("Test"); }
};

class RenBaseTest : public testing::Test {
protected:
    // The ticket, or "false" when there is none.
    std::string Generate(TestDevmode& devmode, ULONGLONG flags = 0x400, HANDLE printer = nullptr) {
        XDevmode xdevmode(devmode.Get());
        return Generate(devmode, xdevmode, flags, printer);
    }
    std::string Generate(TestDevmode& devmode, XDevmode& xdevmode, ULONGLONG flags = 0x400, HANDLE printer = nullptr) {
        RenMvjtForXps generator;
        ByteBuffer buffer;
        const bool result = generator.GenerateMvjt(printer ? printer : printer_.GetHandle(), devmode.Get(), pdev_,
                                                   xdevmode, buffer, flags, TestProduct());
        EXPECT_TRUE(UtilitiesDllPerThreadStorage::GetExecutionContextStack().GetContexts().empty());
        const std::string text(reinterpret_cast<const char*>(buffer.getLpbyte()), buffer.getDword());
        EXPECT_TRUE(result || text.empty());
        return result ? text : "false";
    }
    void StoreDeviceSettings(const SettingsMaker& make) {
        AttributeBytesIndexedList list;
        make(list);
        AttributeBytesRawList raw;
        raw.ImportFromIndexedList(list);
        const ByteBuffer image = MakeAttributeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), raw);
        ASSERT_TRUE(DataCache(printer_.GetHandle(), printer_.GetCacheKey(), 0, true)
                        .SetCachedValue(W("XDeviceSettings"), image, false));
    }

    TestStore store_;
    TestPrinter printer_{kPress};
    XOemPdev pdev_;
};

bool Has(const std::string& ticket, const std::string& line) { return ticket.find(line + "\n") != std::string::npos; }

TEST_F(RenBaseTest, MakesNoTicketUnlessTheDevmodeAsksForIt) {
    TestDevmode absent = MakeJobDevmode([](auto& list) { list.RemoveAttributeBytes(AttributeBytesFeatureId(286)); });
    TestDevmode off = MakeJobDevmode([](auto& list) { SetBoolean(list, 286, false); });
    TestDevmode another = MakeJobDevmode([](auto& list) { SetInteger(list, 286, 1); });
    TestDevmode damaged = MakeJobDevmode();
    damaged.Block()[100] ^= 1;
    TestDevmode none(16);
    for (TestDevmode* devmode : {&absent, &off, &another, &damaged, &none}) {
        // No model is made: the printer is not even looked at.
        EXPECT_EQ(Generate(*devmode, 0x400, INVALID_HANDLE_VALUE), "false");
    }
    TestDevmode asks = MakeJobDevmode();
    EXPECT_THROW(Generate(asks, 0x400, INVALID_HANDLE_VALUE), MorvaneException);
    EXPECT_TRUE(Generate(asks).starts_with("%MVNbegin: 001.0300\n"));
}

TEST_F(RenBaseTest, MakesNoTicketForAModelWithoutItsFeatures) {
    const TestPrinter office(kOffice, W("Office"));
    TestDevmode devmode = MakeJobDevmode();
    EXPECT_EQ(Generate(devmode, 0x400, office.GetHandle()), "false");
}

TEST_F(RenBaseTest, TakesTheTextsFromWhereTheFlagsSay) {
    const struct {
        bool title, sender, recipient;
        const char* lines;
    } cases[] = {
        {false, false, false, "%MVNtitle: own title\n%MVNsenderName: own sender\n%MVNrecipientName: own recipient\n"},
        {true, false, false, "%MVNtitle: document\n%MVNsenderName: own sender\n%MVNrecipientName: own recipient\n"},
        {false, true, false, "%MVNtitle: own title\n%MVNsenderName: owner\n%MVNrecipientName: own recipient\n"},
        {false, false, true, "%MVNtitle: own title\n%MVNsenderName: own sender\n%MVNrecipientName: owner\n"},
    };
    pdev_.SetPropertyString(7, W("document"));
    for (const auto& test : cases) {
        TestDevmode devmode = MakeJobDevmode([&](auto& list) {
            SetText(list, 78, W("own title"));
            SetText(list, 82, W("own sender"));
            SetText(list, 83, W("own recipient"));
            SetBoolean(list, 438, test.title);
            SetBoolean(list, 439, test.sender);
            SetBoolean(list, 440, test.recipient);
        });
        EXPECT_NE(Generate(devmode).find(test.lines), std::string::npos) << test.lines << Generate(devmode);
    }
}

TEST_F(RenBaseTest, TakesCopiesAndCollationFromTheDevmode) {
    TestDevmode devmode = MakeJobDevmode([](auto& list) { SetInteger(list, 43, 3); });
    devmode.Get()->dmCopies = 7;
    devmode.Get()->dmCollate = DMCOLLATE_FALSE;
    std::string ticket = Generate(devmode);
    EXPECT_TRUE(Has(ticket, "%MVNcopyCount: 7")) << ticket;
    EXPECT_TRUE(Has(ticket, "%MVNrequirements: uncollated")) << ticket;
    devmode.Get()->dmCopies = -5;
    EXPECT_TRUE(Has(Generate(devmode), "%MVNcopyCount: 1")) << "moved into the range";

    TestDevmode own = MakeJobDevmode([](auto& list) {
        SetInteger(list, 43, 3);
        SetOption(list, 44, 5401);
        SetOption(list, 415, 8091);
    });
    own.Get()->dmCopies = 7;
    own.Get()->dmCollate = DMCOLLATE_FALSE;
    ticket = Generate(own);
    EXPECT_TRUE(Has(ticket, "%MVNcopyCount: 3")) << ticket;
    EXPECT_TRUE(Has(ticket, "%MVNrequirements: collated")) << ticket;
}

TEST_F(RenBaseTest, PrintsTransparenciesOnOneSide) {
    TestDevmode devmode = MakeJobDevmode([](auto& list) {
        AttributeBytesIndexedList stock, paper;
        AttributeBytesRawList raw;
        SetOption(stock, 175, 6801);
        raw.ImportFromIndexedList(stock);
        paper.SetAttributeBytes(AttributeBytesFeatureId(210), AttributeBytesListValue(1, raw));
        raw.ImportFromIndexedList(paper);
        list.SetAttributeBytes(AttributeBytesFeatureId(477), AttributeBytesListValue(1, raw));
        SetOption(list, 46, 5421);
    });
    const std::string ticket = Generate(devmode);
    EXPECT_TRUE(Has(ticket, "%MVNpaperType-opacity: transparency")) << ticket;
    EXPECT_TRUE(Has(ticket, "%MVNrequirements: simplex")) << ticket;
}

// Attributes without the block that holds them.
class AttributesAlone final : public XDevmode {
public:
    explicit AttributesAlone(DEVMODEW* devmode) : XDevmode(devmode) {
        SetBoolean(list_, 286, true);
        SetText(list_, 78, W("title"));
    }
    AttributeBytesIndexedList* GetDocPropAttributeBytesIndexedList() override { return &list_; }

private:
    AttributeBytesIndexedList list_;
};

TEST_F(RenBaseTest, ImportsNothingWithoutTheAttributeState) {
    TestDevmode devmode(MakePrivateBlock({}));
    devmode.Get()->dmCopies = 4;
    AttributesAlone xdevmode(devmode.Get());
    const std::string ticket = Generate(devmode, xdevmode);
    EXPECT_TRUE(Has(ticket, "%MVNtitle: Default job")) << ticket;
    EXPECT_TRUE(Has(ticket, "%MVNcopyCount: 4")) << ticket;
    EXPECT_TRUE(Has(ticket, "%MVNrequirements: uncollated")) << ticket;
}

TEST_F(RenBaseTest, LetsTheLibraryWriteUnlessTheSettingNamesTheOwnWriter) {
    TestDevmode devmode = MakeJobDevmode([](auto& list) { SetText(list, 84, W("a message")); });
    EXPECT_TRUE(Has(Generate(devmode), "%MVNtitle: Default job"));
    StoreDeviceSettings([](auto& list) { SetOption(list, 546, 8700); });
    const std::string ticket = Generate(devmode);
    EXPECT_FALSE(Has(ticket, "%MVNtitle: Default job")) << "the library's writer has no default texts";
    EXPECT_TRUE(Has(ticket, "%MVNmessage: a message")) << ticket;
}

// What a job sets shows by what happens when the model lacks it: no ticket.
TEST_F(RenBaseTest, SetsWhatTheJobAndThePrinterAskFor) {
    std::ifstream file(ProductFile(kPress));
    const std::string product{std::istreambuf_iterator<char>(file), {}};
    const struct {
        DWORD without;
        ULONGLONG flags;
        bool identifies;
        bool hasTicket;
    } cases[] = {{236, 0x400, false, true},  {236, 0x40, false, false}, {236, 0x80, false, false},
                 {236, 0x200, false, false}, {79, 0x400, false, true},  {79, 0x400, true, false},
                 {80, 0x400, true, false},   {716, 0x400, true, true},  {575, 0x400, false, false},
                 {78, 0x400, false, false},  {44, 0x400, false, true},  {43, 0x400, false, false}};
    pdev_.SetPropertyLong(16, 17);  // the job's number, for feature 716
    for (const auto& test : cases) {
        const std::string name = "press-without-" + std::to_string(test.without) + "-" + std::to_string(test.flags) +
                                 (test.identifies ? "-identifies" : "");
        SCOPED_TRACE(name);
        std::string less = product;
        const std::size_t line = less.find("\n" + std::to_string(test.without) + " = ");
        ASSERT_NE(line, std::string::npos);
        less.erase(line, less.find('\n', line + 1) - line);
        if (test.identifies)
            less.insert(less.find("[settings]\n") + 11, "239 = { option = 7622 }\n240 = { option = 7640 }\n");
        const auto copy = ProductFile(kPress).parent_path() / (name + ".toml");
        std::ofstream(copy) << less;
        const TestPrinter printer(CXString::FromUtf8(name), copy);
        TestDevmode devmode = MakeJobDevmode();
        EXPECT_EQ(Generate(devmode, test.flags, printer.GetHandle()) != "false", test.hasTicket);
        std::filesystem::remove(copy);
    }
    EXPECT_TRUE(PrintJob::GetLumeoPrintJobIDkey(TestPrinter(kPress, W("A/B")).GetHandle(), 17, W("me")) ==
                CXString(W("A_B/17/me")));
    EXPECT_EQ(RenMvjtForXps().RenderPages(), E_NOTIMPL);
}

// Settings by number.
class Settings final : public AttributeBytesReader {
public:
    AttributeBytesIndexedList list;

    AttributeBytesIndexedList* GetDocPropAttributeBytesIndexedList() override { return &list; }
    void OnPrivateDataCommitted() override {}
    AttributeBytesIndexedList* GetAttributeBytesIndexedList(const AttributeBytesNameSpaceId&) override { return &list; }
    AttributeBytesIndexedList* GetAttributeBytesIndexedList(DWORD) override { return &list; }
};

TEST(Identification, ComesFromTheDeviceOrFromTheJob) {
    // Mode, source (0: not delivered), the job's items 29 and 15 and whether it has any, setting 244, family.
    const struct {
        DWORD mode, source;
        LONG identified, kindItem;
        const WCHAR* first244;
        DWORD family;
        DWORD wantedMode, wantedKind;
        const char* wantedTexts;
    } cases[] = {
        {0, 7640, 0, 0, W("a"), 8434, 5001, 5001, "||||"},
        {7621, 0, 0, 0, W("a"), 8434, 5001, 5001, "||||"},
        {7620, 7640, 0, 0, W("a"), 8434, 5001, 5001, "||||"},
        {7621, 7641, 1, 0, W("a"), 8434, 5001, 5001, "||||"},
        {7621, 7641, 0, 0, W("a"), 8434, 7621, 7680, "13|14|25|26|27"},
        {7621, 7641, 0, 1, W("a"), 8434, 7621, 7681, "13|14|25|26|27"},
        {7621, 7641, 0, 2, W("a"), 8434, 7621, 7682, "13|14|25|26|27"},
        {7621, 7641, 0, 3, W("a"), 8434, 7621, 5001, "13|14|25|26|27"},
        {7621, 7641, 0, -1, W("a"), 8434, 7621, 5001, "13|14|25|26|27"},
        {7622, 7641, 1, 1, W("a"), 8434, 7622, 5001, "13|14|25|26|27"},
        {7621, 7640, 1, 1, W("a"), 8434, 7621, 7681, "a|245|606|604|605"},
        {7622, 7640, 0, 1, W("a"), 8434, 7622, 5001, "a|245|606|604|605"},
        {7622, 7640, 0, 1, W(""), 8434, 7622, 5001, "|245|606|604|605"},
        {7622, 7640, 0, 1, W(""), 8433, 7622, 5001, "441|245|606|604|605"},
        {7622, 7640, 0, 1, W("a"), 8433, 7622, 5001, "a|245|606|604|605"},
    };
    for (const auto& test : cases) {
        Settings settings;
        XOemPdev pdev;
        if (test.mode) SetOption(settings.list, 239, test.mode);
        if (test.source) SetOption(settings.list, 240, test.source);
        SetText(settings.list, 244, test.first244);
        for (const DWORD id : {245, 441, 604, 605, 606})
            SetText(settings.list, id, CXString::FromUtf8(std::to_string(id)));
        SetOption(settings.list, 246, 7681);
        for (const LONG key : {13, 14, 25, 26, 27})
            pdev.SetPropertyString(key, CXString::FromUtf8(std::to_string(key)));
        pdev.SetPropertyLong(15, test.kindItem);
        if (test.identified) pdev.SetPropertyLong(29, test.identified);
        const IdentificationSettings found = ReadIdentificationSettings(settings, pdev, test.family);
        std::string texts = found.first.ToUtf8() + "|" + found.second.ToUtf8();
        for (const CXString& text : found.further) texts += "|" + text.ToUtf8();
        EXPECT_EQ(found.mode, test.wantedMode) << test.wantedTexts;
        EXPECT_EQ(found.kind, test.wantedKind) << test.wantedTexts;
        EXPECT_EQ(texts, test.wantedTexts);
    }
}

}  // namespace
