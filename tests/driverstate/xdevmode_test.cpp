// What XDevmode finds, reads and writes in the private block of a DEVMODE.
#include <support/privatedevmode.h>
#include <xdevmode.h>
#include <xoempdev.h>

#include <mvutil/morvaneexception.h>

#include <gtest/gtest.h>

using namespace privateblock;

namespace {

// A state of document properties: feature 43 with that value.
ByteBuffer DocPropState(LONG value) {
    AttributeBytesRawList list;
    list.Append(AttributeBytesFeatureId(43), AttributeBytesIntegerValue(value));
    return PersistentAttributes::MakeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list);
}
// Feature 43 as the object reads it; -1 when it is not there.
LONG Feature43(XDevmode& xdevmode) {
    LONG value = -1;
    xdevmode.GetIntegerValueFromAttributeBytes(43, value);
    return value;
}
ByteBuffer Bytes(std::size_t length, int fill) {
    const std::vector<BYTE> bytes(length, static_cast<BYTE>(fill));
    return ByteBuffer(bytes.data(), length);
}

TEST(XDevmodeTest, FindsTheBlockWhereTheDriverExtraAreaSays) {
    const std::vector<BYTE> block = MakePrivateBlock({{2, TextBytes(W("app.exe"))}});
    // Good blocks lie at 200 and behind that, as far as they fit; "altered" is a byte of the first that is another.
    const auto expect = [&](const char* what, std::size_t extra, WORD firstForm, WORD secondForm, std::ptrdiff_t wanted,
                            std::ptrdiff_t altered = -1) {
        SCOPED_TRACE(what);
        TestDevmode devmode(extra);
        WriteWord(devmode.Extra() + 114, firstForm);
        WriteWord(devmode.Extra() + 8, secondForm);
        for (std::size_t at = 200; at < extra; at += kBytes)
            std::copy_n(block.begin(), std::min(kBytes, extra - at), devmode.Extra() + at);
        if (altered >= 0) devmode.Block()[altered] ^= 1;
        BYTE* const found = XDevmode::GetOemDevmodeFromDevmode(devmode.Get());
        EXPECT_EQ(found ? found - devmode.Extra() : -1, wanted);
        XDevmode xdevmode(devmode.Get());
        EXPECT_EQ(xdevmode.GetProperty(2) != nullptr, found != nullptr);
        EXPECT_EQ(xdevmode.GetPrivateDataSize(), found ? 62u + 18 : 62u);
        EXPECT_TRUE(xdevmode.GetDocPropAttributeBytesIndexedList()->IsEmpty());
    };
    expect("first form", 200 + kBytes, 200, 0, 200);
    expect("first form, area one byte short", 199 + kBytes, 200, 0, -1);
    expect("second form", 200 + kBytes, 0, 200, 200);
    expect("second form, area one byte short", 199 + kBytes, 0, 200, -1);
    expect("both forms: the first counts", 200 + 2 * kBytes, 200, 200 + kBytes, 200);
    expect("first form beyond the area: the second counts", 200 + kBytes, 0xFFFF, 200, 200);
    expect("another size", 200 + kBytes, 200, 0, -1, kSizeOffset + 3);
    expect("another signature", 200 + kBytes, 200, 0, -1, kSignatureOffset);
    EXPECT_THROW(XDevmode(nullptr), ExceptionInvalidArgumentNullPointer);
    EXPECT_THROW(XDevmode::GetOemDevmodeFromDevmode(nullptr), ExceptionInvalidArgumentNullPointer);
}

TEST(XDevmodeTest, ReadsWholeEntriesOnceAndKeepsTheFirstOfTwo) {
    TestDevmode devmode(MakePrivateBlock({{1, DocPropState(7)},
                                          {2, TextBytes(W("one.exe"))},
                                          {2, TextBytes(W("two.exe"))},
                                          {9, {}},
                                          {4, TextBytes(W("Anna"))}}));
    WriteWord(devmode.Block() + XDevmode(devmode.Get()).GetPrivateDataSize() - 10, 0xFFFF);  // "Anna" has no end
    devmode.RestoreChecksum();
    GlobalCaches::Clear();
    for (std::size_t round = 0; round < 3; ++round) {
        XDevmode xdevmode(devmode.Get());
        CXString text("unchanged");
        EXPECT_FALSE(xdevmode.GetPropertyString(3, text) || xdevmode.GetPropertyString(4, text));
        EXPECT_EQ(text, CXString("unchanged"));
        EXPECT_TRUE(xdevmode.GetPropertyString(2, text));
        EXPECT_EQ(text, CXString("one.exe"));
        EXPECT_TRUE(xdevmode.GetProperty(9) && xdevmode.GetProperty(9)->isEmpty());
        EXPECT_EQ(Feature43(xdevmode), 7);
        const GlobalCaches::Counters counters = GlobalCaches::GetCounters();
        EXPECT_EQ(counters.propertyBagMisses, 1u);
        EXPECT_EQ(counters.propertyBagHits, round);
        EXPECT_EQ(counters.listMisses, 1u);
        EXPECT_EQ(counters.listHits, round);
    }
}

// The good block is decoded in the same process between, so that both caches hold its content.
TEST(XDevmodeTest, FindsNothingInADamagedBlock) {
    const std::vector<BYTE> good = MakePrivateBlock({{1, DocPropState(7)}, {2, TextBytes(W("app.exe"))}});
    TestDevmode devmode(good);
    const auto expect = [&](bool isGood, std::size_t offset) {
        XDevmode forList(devmode.Get()), forEntry(devmode.Get());
        EXPECT_EQ(Feature43(forList), isGood ? 7 : -1) << "byte " << offset;
        EXPECT_EQ(forEntry.GetProperty(2) != nullptr, isGood) << "byte " << offset;
    };
    for (std::size_t offset = kChecksumOffset; offset < kBytes; offset += offset < 200 ? 1 : 97) {
        expect(true, offset);
        devmode.Block()[offset] ^= 0x40;
        expect(false, offset);
        devmode.Block()[offset] ^= 0x40;
    }
    EXPECT_EQ(devmode.CopyBlock(), good) << "reading repairs nothing";
}

TEST(XDevmodeTest, CountsTheBytesInUseTheSameBeforeAndAfterLoading) {
    const auto expect = [&](const char* what, const TestEntries& entries, std::size_t patchedWord, std::size_t size) {
        SCOPED_TRACE(what);
        TestDevmode devmode(MakePrivateBlock(entries));
        BYTE* const patched = devmode.Block() + patchedWord;
        WriteWord(patched, static_cast<WORD>(~ReadWord(patched)));
        if (patchedWord != kChecksumOffset) devmode.RestoreChecksum();
        for (const char* round : {"parsed", "from the cache"}) {
            XDevmode xdevmode(devmode.Get());
            EXPECT_EQ(xdevmode.GetPrivateDataSize(), size) << round;
            xdevmode.GetProperty(3);
            EXPECT_EQ(xdevmode.GetPrivateDataSize(), size) << "loaded, " << round;
        }
    };
    const ByteBuffer zeros = Bytes(10, 0);
    expect("a key twice, of zeros", {{3, zeros}, {3, zeros}}, kVersionOffset, 62 + 28);
    expect("an entry past the end", {{3, zeros}}, 64, kBytes);
    expect("more entries than fit", {{3, zeros}}, kEntryCountOffset, kBytes);
    expect("a wrong checksum", {{3, zeros}}, kChecksumOffset, 62 + 14);
}

class CommitCounter final : public XDevmode {
public:
    using XDevmode::XDevmode;
    void OnPrivateDataCommitted() override { ++commits; }
    int commits = 0;
};

TEST(XDevmodeTest, RewritesTheBlockInKeyOrderWithAFreshChecksum) {
    const ByteBuffer anna = TextBytes(W("Anna")), first = TextBytes(W("first.exe"));
    TestDevmode devmode(
        MakePrivateBlock({{4, anna}, {1, DocPropState(7)}, {2, first}, {2, TextBytes(W("second.exe"))}}));
    devmode.Block()[5000] = 0x55;
    devmode.RestoreChecksum();
    TestDevmode twin(devmode.CopyBlock());
    XDevmode twinReader(twin.Get());
    ASSERT_NE(twinReader.GetProperty(1), nullptr);

    CommitCounter xdevmode(devmode.Get());
    EXPECT_EQ(Feature43(xdevmode), 7);
    EXPECT_TRUE(xdevmode.SetAttributeBytesState(DocPropState(9)));
    EXPECT_EQ(xdevmode.commits, 1);
    EXPECT_EQ(devmode.CopyBlock(), MakePrivateBlock({{1, DocPropState(9)}, {2, first}, {4, anna}}));
    EXPECT_EQ(Feature43(xdevmode), 9);
    EXPECT_EQ(*twinReader.GetProperty(1), DocPropState(7)) << "the buffer was shared with the process-wide cache";
}

TEST(XDevmodeTest, HoldsAStateWithoutABlock) {
    TestDevmode devmode(4);
    CommitCounter xdevmode(devmode.Get());
    EXPECT_TRUE(xdevmode.SetAttributeBytesState(DocPropState(9)));
    EXPECT_EQ(xdevmode.commits, 1);
    EXPECT_EQ(ReadDword(devmode.Extra()), 0u);
    TestDevmode other(MakePrivateBlock({{1, DocPropState(7)}}));
    EXPECT_FALSE(xdevmode.SetDevmode(nullptr));
    EXPECT_TRUE(xdevmode.SetDevmode(other.Get()));
    EXPECT_EQ(Feature43(xdevmode), 7);
    EXPECT_FALSE(xdevmode.SetDevmode(devmode.Get())) << "without a block the one before stays";
    EXPECT_EQ(Feature43(xdevmode), 7);
    TestDevmode damaged(MakePrivateBlock({{1, DocPropState(8)}}));
    damaged.Block()[kChecksumOffset] ^= 1;
    xdevmode.SetDevmode(damaged.Get());
    EXPECT_EQ(Feature43(xdevmode), -1);
    xdevmode.SetDevmode(other.Get());
    EXPECT_EQ(Feature43(xdevmode), 7);
    TestDevmode empty(MakePrivateBlock({}));
    WriteDword(empty.Block() + kChecksumOffset, 0);
    EXPECT_FALSE(xdevmode.SetDevmode(empty.Get())) << "nothing was ever written into it";
    EXPECT_EQ(Feature43(xdevmode), -1);
}

TEST(XDevmodeTest, LeavesTheBlockAloneWhenTheStateDoesNotFit) {
    const ByteBuffer other = Bytes(1000, 3);
    const std::size_t room = kBytes - kEntriesOffset - (kEntryHeaderBytes + 1000) - kEntryHeaderBytes;
    TestDevmode devmode(MakePrivateBlock({{1, DocPropState(7)}, {2, other}}));
    const std::vector<BYTE> before = devmode.CopyBlock();
    XDevmode xdevmode(devmode.Get());
    for (const std::size_t length : {room + 1, std::size_t{0x10001}}) {
        EXPECT_FALSE(xdevmode.SetAttributeBytesState(Bytes(length, 1)));
        EXPECT_EQ(devmode.CopyBlock(), before);
        EXPECT_EQ(Feature43(xdevmode), 7);
    }
    EXPECT_TRUE(xdevmode.SetAttributeBytesState(Bytes(room, 1)));
    EXPECT_EQ(devmode.CopyBlock(), MakePrivateBlock({{1, Bytes(room, 1)}, {2, other}}));
}

TEST(XOemPdevTest, SettingTheAttributeStateMarksItChanged) {
    XOemPdev pdev;
    LONG number = 5;
    ByteBuffer buffer = Bytes(3, 1);
    EXPECT_TRUE(!pdev.GetPropertyLong(1, number) && !pdev.GetPropertyBuffer(22, buffer) && number == 0);
    pdev.SetPropertyLong(1, -2);
    EXPECT_TRUE(pdev.GetPropertyLong(1, number) && number == -2);
    EXPECT_TRUE(pdev.GetPropertyBuffer(22, buffer) && buffer.isEmpty());
}

}  // namespace
