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
    return MakeAttributeState(PersistentAttributes::GetDataModelDocPropNameSpaceId(), list);
}

ByteBuffer Bytes(std::size_t length, int fill) {
    const std::vector<BYTE> bytes(length, static_cast<BYTE>(fill));
    return ByteBuffer(bytes.data(), length);
}

class XDevmodeTest : public testing::Test {
protected:
    void SetUp() override { GlobalCaches::Clear(); }
};

TEST_F(XDevmodeTest, FindsTheBlockWhereTheDriverExtraAreaSays) {
    struct Row {
        const char* what;
        std::size_t extra;
        WORD firstForm, secondForm;
        std::vector<std::size_t> blocks;  // offsets at which a good block lies
        std::ptrdiff_t found;             // -1: none
        std::ptrdiff_t altered = -1;      // a byte of the blocks that is another than it should be
    };
    const Row rows[] = {
        {"first form", 200 + kBytes, 200, 0, {200}, 200},
        {"first form, area one byte short", 199 + kBytes, 200, 0, {200}, -1},
        {"second form", 20 + kBytes, 0, 20, {20}, 20},
        {"second form, area one byte short", 19 + kBytes, 0, 20, {20}, -1},
        {"both forms: the first counts", 200 + 2 * kBytes, 200, 200 + kBytes, {200, 200 + kBytes}, 200},
        {"first form leads nowhere: the second counts", 200 + 2 * kBytes, 130, 200, {200}, 200},
        {"first form beyond the area: the second counts", 200 + kBytes, 0xFFFF, 200, {200}, 200},
        {"no block behind either", 200 + kBytes, 200, 10, {}, -1},
        {"area too small for the first form's word", 116, 0, 0, {}, -1},
        {"area too small for the second form's word", 10, 0, 0, {}, -1},
        {"no area", 0, 0, 0, {}, -1},
        {"another size", 200 + kBytes, 200, 0, {200}, -1, kSizeOffset + 3},
        {"another signature", 200 + kBytes, 200, 0, {200}, -1, kSignatureOffset},
    };
    const std::vector<BYTE> block = MakePrivateBlock({{2, TextBytes(W("app.exe"))}});
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        TestDevmode devmode(row.extra);
        if (row.extra >= 116) WriteWord(devmode.Extra() + 114, row.firstForm);
        if (row.extra >= 10) WriteWord(devmode.Extra() + 8, row.secondForm);
        for (const std::size_t offset : row.blocks)
            std::copy_n(block.begin(), std::min(kBytes, row.extra - offset), devmode.Extra() + offset);
        if (row.altered >= 0) devmode.Block()[row.altered] ^= 1;
        BYTE* const found = XDevmode::GetOemDevmodeFromDevmode(devmode.Get());
        EXPECT_EQ(found ? found - devmode.Extra() : -1, row.found);
        XDevmode xdevmode(devmode.Get());
        CXString text;
        EXPECT_EQ(xdevmode.GetPropertyString(2, text), row.found >= 0);
        EXPECT_EQ(xdevmode.GetPrivateDataSize(), row.found >= 0 ? 62u + 18 : 62u);
        EXPECT_TRUE(xdevmode.GetDocPropAttributeBytesIndexedList()->IsEmpty());
    }
}

TEST_F(XDevmodeTest, SaysWhatIsNull) {
    std::vector<ExceptionTrace> traces;
    const auto before = MorvaneException::SetDebugHook([&](const ExceptionTrace& trace) {
        traces.push_back(trace);
        return false;
    });
    EXPECT_THROW(XDevmode(nullptr), ExceptionInvalidArgumentNullPointer);
    EXPECT_THROW(XDevmode::GetOemDevmodeFromDevmode(nullptr), ExceptionInvalidArgumentNullPointer);
    MorvaneException::SetDebugHook(before);
    ASSERT_EQ(traces.size(), 2u);
    EXPECT_EQ(traces[0].trace, CXString("*Throwing* ExceptionInvalidArgumentNullPointer: "));
    EXPECT_EQ(traces[0].methodName, CXString("XDevmode::XDevmode"));
    EXPECT_EQ(traces[0].line, 78);
    EXPECT_EQ(traces[1].methodName, CXString("XDevmode::GetOemDevmodeFromDevmode"));
    EXPECT_EQ(traces[1].line, 402);
}

TEST_F(XDevmodeTest, ReadsWholeEntriesAndKeepsTheFirstOfTwo) {
    TestDevmode devmode(MakePrivateBlock(
        {{2, TextBytes(W("one.exe"))}, {2, TextBytes(W("two.exe"))}, {9, {}}, {4, TextBytes(W("Anna"))}}));
    WriteWord(devmode.Block() + 62 + 2 * (4 + 14) + 4 + 2, 0xFFFF);  // the last entry runs past the end
    devmode.RestoreChecksum();
    for (const char* round : {"parsed", "from the cache"}) {
        SCOPED_TRACE(round);
        XDevmode xdevmode(devmode.Get());
        CXString text("unchanged");
        EXPECT_FALSE(xdevmode.GetPropertyString(3, text) || xdevmode.GetPropertyString(4, text));
        EXPECT_EQ(text, CXString("unchanged"));
        EXPECT_TRUE(xdevmode.GetPropertyString(2, text));
        EXPECT_EQ(text, CXString("one.exe"));
        ASSERT_NE(xdevmode.GetProperty(9), nullptr);
        EXPECT_TRUE(xdevmode.GetProperty(9)->isEmpty());
    }
    EXPECT_EQ(GlobalCaches::GetCounters().propertyBagHits, 1u);
    EXPECT_EQ(GlobalCaches::GetCounters().propertyBagMisses, 1u);
}

TEST_F(XDevmodeTest, DecodesAListOncePerNamespaceAndChecksum) {
    TestDevmode devmode(MakePrivateBlock({{1, DocPropState(7)}}));
    for (std::size_t round = 1; round <= 3; ++round) {
        XDevmode xdevmode(devmode.Get());
        LONG copies = 0;
        EXPECT_TRUE(xdevmode.GetIntegerValueFromAttributeBytes(43, copies));
        EXPECT_EQ(copies, 7);
        EXPECT_EQ(xdevmode.GetDocPropAttributeBytesIndexedList(), xdevmode.GetDefaultAttributeBytesIndexedList());
        EXPECT_TRUE(xdevmode.GetAttributeBytesIndexedList(PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId())
                        ->IsEmpty());
        EXPECT_EQ(GlobalCaches::GetCounters().listMisses, 2u);
        EXPECT_EQ(GlobalCaches::GetCounters().listHits, 2 * (round - 1));
    }
}

// The good block is decoded in the same process before and between, so that both caches hold its content.
TEST_F(XDevmodeTest, FindsNothingInADamagedBlock) {
    const std::vector<BYTE> good = MakePrivateBlock({{1, DocPropState(7)}, {2, TextBytes(W("app.exe"))}});
    TestDevmode devmode(good);
    const auto findings = [&] {
        XDevmode forList(devmode.Get());
        const bool hasList = !forList.GetDocPropAttributeBytesIndexedList()->IsEmpty();
        CXString text;
        return int{hasList} + int{XDevmode(devmode.Get()).GetPropertyString(2, text)};
    };
    for (std::size_t offset = kChecksumOffset; offset < kBytes; offset += offset < 200 ? 1 : 97) {
        ASSERT_EQ(findings(), 2);
        devmode.Block()[offset] ^= 0x40;
        EXPECT_EQ(findings(), 0) << "byte " << offset << " changed";
        devmode.Block()[offset] ^= 0x40;
    }
    EXPECT_EQ(devmode.CopyBlock(), good) << "reading repairs nothing";
}

TEST_F(XDevmodeTest, CountsTheBytesInUseTheSameBeforeAndAfterLoading) {
    struct Row {
        const char* what;
        TestEntries entries;
        std::vector<std::pair<std::size_t, BYTE>> patches;
        bool damaged;
        std::size_t size;
    };
    const ByteBuffer zeros = Bytes(10, 0);
    const Row rows[] = {
        {"no entries", {}, {}, false, 62},
        {"neither checksum nor entries", {}, {{56, 0}, {57, 0}, {58, 0}, {59, 0}}, true, 62},
        {"a value of zeros", {{3, zeros}}, {}, false, 62 + 14},
        {"a key twice", {{3, zeros}, {3, zeros}}, {}, false, 62 + 28},
        {"a byte behind the last entry", {{3, zeros}}, {{100, 1}}, false, 101},
        {"the last byte, without entries", {}, {{kBytes - 1, 1}}, false, kBytes},
        {"an exact fit", {{3, Bytes(kBytes - 66, 1)}}, {}, false, kBytes},
        {"an entry past the end", {{3, zeros}}, {{64, 0xFF}, {65, 0xFF}}, false, kBytes},
        {"more entries than fit", {{3, zeros}}, {{60, 0xFF}, {61, 0xFF}}, false, kBytes},
        {"a wrong checksum", {{3, zeros}}, {{58, 0x11}}, true, 62 + 14},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        TestDevmode devmode(MakePrivateBlock(row.entries));
        for (const auto& [offset, value] : row.patches) devmode.Block()[offset] = value;
        if (!row.damaged) devmode.RestoreChecksum();
        for (int round = 0; round < 2; ++round) {
            XDevmode xdevmode(devmode.Get());
            EXPECT_EQ(xdevmode.GetPrivateDataSize(), row.size) << "unloaded";
            xdevmode.GetProperty(3);
            EXPECT_EQ(xdevmode.GetPrivateDataSize(), row.size) << "loaded";
        }
    }
}

class CommitCounter final : public XDevmode {
public:
    using XDevmode::XDevmode;
    void OnPrivateDataCommitted() override { ++commits; }
    int commits = 0;
};

TEST_F(XDevmodeTest, RewritesTheBlockInKeyOrderWithAFreshChecksum) {
    TestDevmode devmode(MakePrivateBlock({{4, TextBytes(W("Anna"))},
                                          {1, DocPropState(7)},
                                          {2, TextBytes(W("first.exe"))},
                                          {2, TextBytes(W("second.exe"))}}));
    devmode.Block()[5000] = 0x55;
    devmode.RestoreChecksum();
    TestDevmode twin(devmode.CopyBlock());
    XDevmode twinReader(twin.Get());
    ASSERT_NE(twinReader.GetProperty(1), nullptr);

    CommitCounter xdevmode(devmode.Get());
    LONG copies = 0;
    EXPECT_TRUE(xdevmode.GetIntegerValueFromAttributeBytes(43, copies));
    EXPECT_TRUE(xdevmode.SetAttributeBytesState(DocPropState(9)));
    EXPECT_EQ(xdevmode.commits, 1);

    const std::vector<BYTE> wanted =
        MakePrivateBlock({{1, DocPropState(9)}, {2, TextBytes(W("first.exe"))}, {4, TextBytes(W("Anna"))}});
    EXPECT_EQ(devmode.CopyBlock(), wanted);
    EXPECT_TRUE(xdevmode.GetIntegerValueFromAttributeBytes(43, copies));
    EXPECT_EQ(copies, 9);
    EXPECT_EQ(*twinReader.GetProperty(1), DocPropState(7)) << "the buffer was shared with the process-wide cache";
}

TEST_F(XDevmodeTest, LeavesTheBlockAloneWhenTheStateDoesNotFit) {
    const ByteBuffer other = Bytes(1000, 3);
    const std::size_t room = kBytes - kEntriesOffset - (kEntryHeaderBytes + 1000) - kEntryHeaderBytes;
    for (const TestEntries& entries : {TestEntries{{2, other}}, TestEntries{{1, DocPropState(7)}, {2, other}}}) {
        TestDevmode devmode(MakePrivateBlock(entries));
        const std::vector<BYTE> before = devmode.CopyBlock();
        CommitCounter xdevmode(devmode.Get());
        EXPECT_FALSE(xdevmode.SetAttributeBytesState(Bytes(room + 1, 1)));
        EXPECT_FALSE(xdevmode.SetAttributeBytesState(Bytes(0x10001, 1)));
        EXPECT_EQ(devmode.CopyBlock(), before);
        EXPECT_EQ(xdevmode.GetProperty(1) != nullptr, entries.size() == 2);
        EXPECT_EQ(xdevmode.commits, 0);
        EXPECT_TRUE(xdevmode.SetAttributeBytesState(Bytes(room, 1)));
        EXPECT_EQ(xdevmode.GetPrivateDataSize(), kBytes);
        EXPECT_EQ(devmode.CopyBlock(), MakePrivateBlock({{1, Bytes(room, 1)}, {2, other}}));
    }
}

TEST_F(XDevmodeTest, FollowsTheDevmodeItIsAttachedTo) {
    TestDevmode devmode(MakePrivateBlock({{1, DocPropState(7)}}));
    devmode.Block()[5000] ^= 1;
    TestDevmode without(200);
    XDevmode xdevmode(devmode.Get());
    LONG copies = 0;
    EXPECT_FALSE(xdevmode.GetIntegerValueFromAttributeBytes(43, copies));
    EXPECT_TRUE(xdevmode.SetAttributeBytesState(DocPropState(6)));
    EXPECT_TRUE(xdevmode.GetIntegerValueFromAttributeBytes(43, copies)) << "rewriting makes a damaged block whole";
    for (const LONG value : {8, 9}) {
        const std::vector<BYTE> restored = MakePrivateBlock({{1, DocPropState(value)}});
        std::copy(restored.begin(), restored.end(), devmode.Block());
        EXPECT_TRUE(xdevmode.SetDevmode(devmode.Get()));
        EXPECT_TRUE(xdevmode.GetIntegerValueFromAttributeBytes(43, copies));
        EXPECT_EQ(copies, value);
        EXPECT_FALSE(xdevmode.SetDevmode(without.Get()) || xdevmode.SetDevmode(nullptr));
        EXPECT_EQ(xdevmode.GetDevmode(), devmode.Get());
        EXPECT_NE(xdevmode.GetProperty(1), nullptr);
    }
}

TEST(XOemPdevTest, KeepsValuesOfEachKind) {
    XOemPdev pdev;
    CXString text("old");
    LONG number = 5;
    ByteBuffer buffer = Bytes(3, 1);
    EXPECT_FALSE(pdev.GetPropertyString(7, text) || pdev.GetPropertyLong(7, number) ||
                 pdev.GetPropertyBuffer(7, buffer));
    EXPECT_TRUE(text.IsEmpty() && number == 0 && buffer.isEmpty());

    pdev.SetPropertyString(7, W("Report"));
    pdev.SetPropertyLong(16, -2);
    pdev.SetPropertyBuffer(1, Bytes(3, 1));
    EXPECT_TRUE(pdev.GetPropertyString(7, text) && text == W("Report"));
    EXPECT_TRUE(pdev.GetPropertyBuffer(7, buffer) && buffer.getDword() == 14) << "with its terminating NUL";
    EXPECT_TRUE(pdev.GetPropertyLong(16, number) && number == -2);
    EXPECT_TRUE(pdev.GetPropertyBuffer(22, buffer) && buffer.isEmpty()) << "setting key 1 sets key 22";
    pdev.ClearProperties();
    EXPECT_FALSE(pdev.GetPropertyBuffer(1, buffer));
}

}  // namespace
