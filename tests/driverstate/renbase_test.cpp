// The generator of job tickets: where their texts and numbers come from, and who writes it.
#include <renbase.h>
#include <renidentification.h>
#include <support/jobdevmode.h>
#include <support/printerfixture.h>
#include <xdevmode.h>
#include <xoempdev.h>

#include <mvutil/datacache.h>
#include <mvutil/executioncontext.h>

#include <gtest/gtest.h>

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
    std::string Generate(TestDevmode& devmode) {
        XDevmode xdevmode(devmode.Get());
        ByteBuffer buffer;
        EXPECT_TRUE(RenMvjtForXps().GenerateMvjt(printer_.GetHandle(), devmode.Get(), pdev_, xdevmode, buffer, 0x400,
                                                 TestProduct()));
        EXPECT_TRUE(UtilitiesDllPerThreadStorage::GetExecutionContextStack().GetContexts().empty());
        return {reinterpret_cast<const char*>(buffer.getLpbyte()), buffer.getDword()};
    }

    TestStore store_;
    TestPrinter printer_{kPress};
    XOemPdev pdev_;
};

void ExpectLines(const std::string& ticket, const std::vector<std::string>& lines) {
    for (const std::string& line : lines)
        EXPECT_NE(ticket.find("\n%MVN" + line + "\n"), std::string::npos) << line << " in\n" << ticket;
}

TEST_F(RenBaseTest, TakesEachTextFromWhereItsFlagSays) {
    pdev_.SetPropertyString(7, W("document"));
    for (DWORD system = 437; system <= 440; ++system) {
        TestDevmode devmode = MakeJobDevmode([&](auto& list) {
            SetText(list, 78, W("own title"));
            SetText(list, 82, W("own sender"));
            SetText(list, 83, W("own recipient"));
            for (const DWORD flag : {438, 439, 440}) SetBoolean(list, flag, flag == system);
        });
        ExpectLines(Generate(devmode), {system == 438 ? "title: document" : "title: own title",
                                        system == 439 ? "senderName: owner" : "senderName: own sender",
                                        system == 440 ? "recipientName: owner" : "recipientName: own recipient"});
    }
}

TEST_F(RenBaseTest, FitsTheSettingsToTheDevmodeAndThePaper) {
    const struct {
        DWORD copiesFrom, collationFrom;
        short copies;
        DWORD mediaType;
        std::vector<std::string> lines;
    } cases[] = {
        {5400, 8090, 7, 6800, {"copyCount: 7", "requirements: uncollated", "requirements: duplex"}},
        {5400, 8091, -5, 6800, {"copyCount: 1", "requirements: collated", "requirements: duplex"}},
        {5401, 8091, 7, 6800, {"copyCount: 3", "requirements: collated", "requirements: duplex"}},
        {5400, 8090, 1, 6801, {"copyCount: 1", "requirements: simplex", "paperType-opacity: transparency"}},
    };
    for (const auto& test : cases) {
        TestDevmode devmode = MakeJobDevmode([&](auto& list) {
            SetInteger(list, 43, 3);
            SetOption(list, 44, test.copiesFrom);
            SetOption(list, 415, test.collationFrom);
            SetOption(list, 46, 5421);
            SetOption(list, 175, test.mediaType);
        });
        devmode.Get()->dmCopies = test.copies;
        devmode.Get()->dmCollate = DMCOLLATE_FALSE;
        ExpectLines(Generate(devmode), test.lines);
    }
}

TEST_F(RenBaseTest, LetsTheLibraryWriteUnlessTheSettingNamesTheOwnWriter) {
    AttributeBytesIndexedList list;
    SetOption(list, 546, 8700);
    AttributeBytesRawList raw;
    raw.ImportFromIndexedList(list);
    const ByteBuffer image =
        PersistentAttributes::MakeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), raw);
    ASSERT_TRUE(DataCache(printer_.GetHandle(), printer_.GetCacheKey(), 0, true)
                    .SetCachedValue(W("XDeviceSettings"), image, false));
    TestDevmode devmode = MakeJobDevmode([](auto& settings) { SetText(settings, 84, W("a message")); });
    const std::string ticket = Generate(devmode);
    ExpectLines(ticket, {"message: a message"});
    EXPECT_EQ(ticket.find("%MVNtitle"), std::string::npos) << "the library's writer has no default texts";
}

TEST(Identification, ComesFromTheDeviceOrFromTheJob) {
    // Mode, source (0: not delivered), the job's items 29 and 15 and whether it has any, family.
    const struct {
        DWORD mode, source;
        LONG identified, kindItem;
        DWORD family, wantedMode, wantedKind;
        const char* wantedTexts;
    } cases[] = {
        {7621, 0, 0, 0, 8434, 5001, 5001, "||||"},
        {7620, 7640, 0, 0, 8434, 5001, 5001, "||||"},
        {7621, 7641, 1, 0, 8434, 5001, 5001, "||||"},
        {7621, 7641, 0, 0, 8434, 7621, 7680, "13|14|25|26|27"},
        {7621, 7641, 0, 2, 8434, 7621, 7682, "13|14|25|26|27"},
        {7622, 7641, 1, 1, 8434, 7622, 5001, "13|14|25|26|27"},
        {7621, 7640, 1, 1, 8434, 7621, 7681, "|245|606|604|605"},
        {7622, 7640, 0, 1, 8433, 7622, 5001, "441|245|606|604|605"},
    };
    for (const auto& test : cases) {
        TestDevmode devmode = MakeJobDevmode([&](auto& list) {
            SetOption(list, 239, test.mode);
            if (test.source) SetOption(list, 240, test.source);
            for (const DWORD id : {245, 441, 604, 605, 606}) SetText(list, id, CXString::FromUtf8(std::to_string(id)));
            SetText(list, 244, W(""));
            SetOption(list, 246, 7681);
        });
        XDevmode settings(devmode.Get());
        XOemPdev pdev;
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
