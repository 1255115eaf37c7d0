// The capability caches: lookups, validation, and their passage through a DEVMODE.
#include <devmodesettingssink.h>
#include <mscacheddevicecapabilities.h>
#include <msdevicecapabilities.h>
#include <support/printerfixture.h>
#include <support/privatedevmode.h>
#include <support/storedcaches.h>
#include <support/userpapers.h>
#include <xdevmode.h>

#include <mvcore/pagesizedictionary.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/operatingsystem.h>

namespace {

constexpr DWORD kStart = kCapabilityCacheCrcStart;

// A blob: its header words, then records whose names fill their fields.
template <class Record>
ByteBuffer MakeBlob(std::initializer_list<DWORD> header, int records) {
    ByteBuffer blob;
    for (const DWORD word : header) blob.appendLpbyte(&word, sizeof word);
    Record record{};
    std::fill(std::begin(record.name), std::end(record.name), W('n'));
    for (; records > 0; --records) blob.appendLpbyte(&record, sizeof record);
    return blob;
}
ByteBuffer PaperBlob(DWORD formsCrc, DWORD customCrc, DWORD count, int records) {
    return MakeBlob<_tag_FormsInfoRec>({formsCrc, 0x1234, customCrc, count}, records);
}
ByteBuffer Cut(ByteBuffer blob, std::size_t bytes) {
    blob.resize(blob.getDword() - bytes);
    return blob;
}

class CapabilitiesTest : public testing::Test {
protected:
    CapabilitiesTest() { ClearCaches(); }
    ~CapabilitiesTest() override { Application::SetExecutableName(CXString()); }

    DataCache Cache() const { return DataCache(handle_, printer_.GetCacheKey(), kStart, true); }
    void Store(const WCHAR* name, const ByteBuffer& blob) const {
        ASSERT_TRUE(Cache().SetCachedValue(name, blob, false));
    }
    void ClearCaches() const {
        for (const CapabilityGroup& group : kCapabilityGroups) Cache().DeleteCache(group.valueName, false);
    }

    TestStore store_;
    TestPrinter printer_{kPress};
    HANDLE handle_ = printer_.GetHandle();
};

TEST_F(CapabilitiesTest, ServesAsManyRecordsAsTheCacheHolds) {
    const auto expect = [&](HRESULT result, std::size_t records) {
        std::vector<_tag_FormsInfoRec> papers(7);
        EXPECT_EQ(MSDeviceCapabilities().GetPaperDatabaseCachedDeviceCapabilitiesVector(handle_, nullptr, papers),
                  result);
        EXPECT_EQ(papers.size(), records);
        for (const auto& paper : papers) EXPECT_EQ(CXString(paper.name), CXString(WideString(63, W('n'))));
    };
    expect(E_FAIL, 0);
    const struct {
        const char* what;
        DWORD counted;
        int held;
        std::size_t cut, records;
    } rows[] = {{"none", 0, 0, 0, 0},
                {"fewer counted than there are", 1, 2, 0, 1},
                {"the last one cut", 3, 3, 1, 2},
                {"a count out of all reason", 0xFFFFFFFF, 1, 0, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Store(kPaperCapsValue, Cut(PaperBlob(0, 0, row.counted, row.held), row.cut));
        expect(0x0004DC01, row.records);
    }
    Store(kPaperCapsValue, Cut(PaperBlob(0, 0, 0, 0), 1));
    expect(E_FAIL, 0);
}

TEST_F(CapabilitiesTest, AreThoseOfThePrinterAskedForLast) {
    const TestPrinter other(kPress, W("Other"));
    Store(kPaperCapsValue, PaperBlob(0, 0, 1, 1));
    StorePapers(other.GetHandle(), {});
    MSDeviceCapabilities capabilities;
    std::vector<_tag_FormsInfoRec> papers;
    const auto count = [&](HANDLE printer) {
        const HRESULT result = capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer, nullptr, papers);
        return result == 0x0004DC01 ? papers.size() : 99;
    };
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(count(handle_), 1u);
        EXPECT_EQ(count(other.GetHandle()), 0u);
    }
    EXPECT_EQ(count(handle_), 1u);
    Store(kPaperCapsValue, PaperBlob(0, 0, 2, 2));
    EXPECT_EQ(count(handle_), 1u) << "what an object holds is asked for once";
    EXPECT_THROW(capabilities.Initialize(nullptr, false), MorvaneException);
}

TEST_F(CapabilitiesTest, ThePaperDatabaseIsValidatedAgainstTheForms) {
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(handle_, false);
    const DWORD forms = capabilities.GetCaches().ComputeFormsDatabaseCRC();
    EXPECT_NE(forms, kStart) << "a printer has forms";
    const auto expect = [&](const char* what, DWORD formsCrc, DWORD customCrc, bool validate, HRESULT result) {
        Store(kPaperCapsValue, PaperBlob(formsCrc, customCrc, 0, 0));
        EXPECT_EQ(capabilities.LoadCache(2, validate), result) << what;
        EXPECT_EQ(capabilities.GetCaches().IsPaperCacheStale(), validate && formsCrc != forms) << what;
    };
    expect("current", forms, kStart, true, S_OK);
    expect("other forms", forms + 1, kStart, true, E_FAIL);
    expect("other custom sizes", forms, kStart + 1, true, E_FAIL);
    expect("not asked", forms + 1, kStart + 1, false, S_OK);
    AddCustomSize(CXString(WideString(100, W('z'))), 500000, 700000);
    expect("a custom size came", forms, kStart, true, E_FAIL);
    expect("it is known", forms, capabilities.GetCustomFormsCRC(), true, S_OK);
}

TestDevmode MakeDevmode(DWORD nameSpace, DWORD feature, const AttributeBytesValue& value) {
    AttributeBytesRawList list;
    list.Append(AttributeBytesFeatureId(feature), value);
    return TestDevmode(MakePrivateBlock({{1, PersistentAttributes::MakeState(nameSpace, list)}}));
}

TEST_F(CapabilitiesTest, TravelThroughADevmodeToTheSpooler) {
    const ByteBuffer paper = PaperBlob(0, 0, 3, 3);
    Store(kPaperCapsValue, paper);
    Store(kBinCapsValue, Cut(PaperBlob(0, 0, 0, 0), 9));
    ByteBuffer large = MakeBlob<MediaCapsRecord>({0, 40}, 40);
    for (DWORD i = 8, x = 1; i < large.getDword(); ++i) large.getLpbyte()[i] = static_cast<BYTE>((x *= 1664525) >> 24);
    Store(kMediaCapsValue, large);
    Store(kResolutionsValue, MakeBlob<_tag_ResolutionInfoRec>({0x1234, 2, 0}, 2));
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(handle_, true);
    const DWORD nameSpace = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();
    const DWORD properties = PersistentAttributes::GetDataModelDocPropNameSpaceId();
    TestDevmode devmode = MakeDevmode(properties, 43, AttributeBytesIntegerValue(7));
    XDevmode xdevmode(devmode.Get());
    DevmodeSettingsSink sink(xdevmode);
    EXPECT_TRUE(capabilities.ExportCachesToDevmode(sink) && sink.Commit());
    LONG copies = 0;
    EXPECT_TRUE(xdevmode.GetIntegerValueFromAttributeBytes(43, copies)) << "the document properties stay";
    const auto& items = xdevmode.GetAttributeBytesIndexedList(nameSpace)->GetItems();
    ASSERT_EQ(items.size(), 2u) << "bins are too short, device limits absent, and the media types do not fit";
    EXPECT_EQ(items.begin()->first.id, 2u);
    EXPECT_EQ(items.rbegin()->first.id, 65527u);
    const ByteBuffer good = items.begin()->second.GetDataBlob();
    EXPECT_EQ(privateblock::ReadDword(good.getLpbyte()),
              Crc32::GetCrc(paper.getLpbyte(), paper.getDword(), Cache().GetCurrentCRC()));

    ClearCaches();
    Application::SetExecutableName(W("spoolsv.exe"));
    MsCachedDeviceCapabilities cached(devmode.Get());
    EXPECT_EQ(cached.GetResolutionEnumsCachedDeviceCapabilitiesVector(handle_).size(), 2u);
    ByteBuffer altered = good;
    altered.getLpbyte()[0] ^= 1;
    const auto expect = [&](const char* what, const ByteBuffer& item, std::size_t count, bool isMismatch) {
        TestDevmode changed = MakeDevmode(nameSpace, 2, AttributeBytesDataBlobValue(item));
        MSDeviceCapabilities spooled;
        std::vector<_tag_FormsInfoRec> records;
        EXPECT_EQ(spooled.GetPaperDatabaseCachedDeviceCapabilitiesVector(handle_, changed.Get(), records),
                  count ? 0x0004DC01 : E_FAIL)
            << what;
        EXPECT_EQ(records.size(), count) << what;
        EXPECT_EQ(spooled.GetCaches().HasDevmodeCrcMismatch(), isMismatch) << what;
    };
    expect("intact", good, 3, false);
    expect("another checksum", altered, 3, true);
    expect("cut in the last record", Cut(good, 1), 2, true);
    expect("cut in the header", Cut(good, 3 * 152 + 1), 0, false);
}

TEST_F(CapabilitiesTest, TheUsersCustomSizesHaveACheckValue) {
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(handle_, false);
    DWORD crc = kStart;
    EXPECT_EQ(capabilities.GetCustomFormsCRC(), crc);
    const auto expectNext = [&](const CXString& name, LONG width, LONG length, DWORD units) {
        _tag_FormsInfoRec record = MakePaper(0, width, length, 0, 25003, name);
        record.displayUnits = units;
        const DWORD id = PageSizeDictionary::GetCustomSizeMsId(name);
        std::memcpy(&record, &id, sizeof id);
        crc = Crc32::GetCrc(&record, sizeof record, crc);
        EXPECT_EQ(capabilities.GetCustomFormsCRC(), crc) << name.ToUtf8();
    };
    UniqueKey bare;
    RegCreateKeyExW(HKEY_CURRENT_USER, CustomSizePath(W("Bare")), 0, nullptr, 0, KEY_WRITE, nullptr, bare.Put(),
                    nullptr);
    expectNext(W("Bare"), 0, 0, 7492);
    const CXString longName(WideString(100, W('z')));
    AddCustomSize(longName, 500000, 700000);
    expectNext(longName, 500000, 700000, 7491);

    Application::SetExecutableName(W("spoolsv.exe"));
    MSDeviceCapabilities inSpooler;
    inSpooler.Initialize(handle_, false);
    EXPECT_EQ(inSpooler.GetCustomFormsCRC(), kStart);
}

}  // namespace
