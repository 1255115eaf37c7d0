// The capability caches: lookups, validation, and their passage through a DEVMODE.
#include <mscacheddevicecapabilities.h>
#include <support/printerfixture.h>
#include <support/privatedevmode.h>
#include <xdevmode.h>

#include <mvcore/pagesizedictionary.h>
#include <mvutil/cachelocation.h>
#include <mvutil/crc32.h>
#include <mvutil/morvaneexception.h>
#include <mvutil/operatingsystem.h>

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>

namespace {

constexpr DWORD kStart = 0x534B47B9;

template <class Record>
Record MakeRecord(int number) {
    Record record{};
    std::fill(std::begin(record.name), std::end(record.name), static_cast<WCHAR>('a' + number));  // no terminator
    return record;
}

// A blob: its header words, then records.
template <class Record>
ByteBuffer MakeBlob(std::initializer_list<DWORD> header, int records) {
    ByteBuffer blob;
    for (const DWORD word : header) blob.appendLpbyte(&word, sizeof word);
    for (int number = 0; number < records; ++number) {
        const Record record = MakeRecord<Record>(number);
        blob.appendLpbyte(&record, sizeof record);
    }
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
    CapabilitiesTest() {
        GlobalCaches::Clear();
        for (const CapabilityGroup& group : kCapabilityGroups) Cache().DeleteCache(group.valueName, false);
    }
    ~CapabilitiesTest() override { Application::SetExecutableName(CXString()); }

    DataCache Cache() { return DataCache(printer_.GetHandle(), printer_.GetCacheKey(), kStart, true); }
    void Store(const WCHAR* name, const ByteBuffer& blob) { ASSERT_TRUE(Cache().SetCachedValue(name, blob, false)); }

    TestStore store_;
    TestPrinter printer_{kPress};
};

TEST_F(CapabilitiesTest, ServesAsManyRecordsAsTheCacheHolds) {
    struct Row {
        const char* what;
        ByteBuffer paper, resolutions;
        std::ptrdiff_t records;  // -1: none can be had
    };
    const auto resolutions = [](DWORD count, int records) {
        return MakeBlob<_tag_ResolutionInfoRec>({0x1234, count, 0}, records);
    };
    const Row rows[] = {
        {"no cache", {}, {}, -1},
        {"a header cut short", Cut(PaperBlob(0, 0, 0, 0), 1), Cut(resolutions(0, 0), 1), -1},
        {"no records", PaperBlob(0, 0, 0, 0), resolutions(0, 0), 0},
        {"two records", PaperBlob(0, 0, 2, 2), resolutions(2, 2), 2},
        {"fewer counted than there are", PaperBlob(0, 0, 1, 2), resolutions(1, 2), 1},
        {"more counted than there are", PaperBlob(0, 0, 1000, 2), resolutions(1000, 2), 2},
        {"the last record cut", Cut(PaperBlob(0, 0, 3, 3), 1), Cut(resolutions(3, 3), 1), 2},
        {"a count out of all reason", PaperBlob(0, 0, 0xFFFFFFFF, 1), resolutions(0xFFFFFFFF, 1), 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        if (!row.paper.isEmpty()) Store(kPaperCapsValue, row.paper);
        if (!row.resolutions.isEmpty()) Store(kResolutionsValue, row.resolutions);
        MSDeviceCapabilities capabilities;
        std::vector<_tag_FormsInfoRec> papers(7);
        std::vector<_tag_ResolutionInfoRec> resolutionRecords(7);
        const HANDLE printer = printer_.GetHandle();
        EXPECT_EQ(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer, nullptr, papers),
                  row.records < 0 ? E_FAIL : 0x0004DC01);
        EXPECT_EQ(capabilities.GetResolutionEnumsCachedDeviceCapabilitiesVector(printer, nullptr, resolutionRecords),
                  row.records < 0 ? E_FAIL : S_OK);
        const std::size_t wanted = row.records < 0 ? 0 : static_cast<std::size_t>(row.records);
        ASSERT_EQ(papers.size(), wanted);
        ASSERT_EQ(resolutionRecords.size(), wanted);
        for (std::size_t i = 0; i < wanted; ++i) {
            EXPECT_EQ(CXString(papers[i].name), CXString(WideString(63, static_cast<WCHAR>('a' + i))));
            EXPECT_EQ(CXString(resolutionRecords[i].name), CXString(WideString(31, static_cast<WCHAR>('a' + i))));
        }
    }
}

TEST_F(CapabilitiesTest, ReportsAPrinterThatIsNone) {
    std::vector<ExceptionReport> reports;
    const auto before =
        MorvaneException::SetReportHook([&](const ExceptionReport& report) { reports.push_back(report); });
    EXPECT_TRUE(MsCachedDeviceCapabilities(nullptr).GetPaperDatabaseCachedDeviceCapabilitiesVector(nullptr).empty());
    int unknown = 0;
    EXPECT_TRUE(MsCachedDeviceCapabilities(nullptr).GetResolutionEnumsCachedDeviceCapabilitiesVector(&unknown).empty());
    MorvaneException::SetReportHook(before);
    ASSERT_EQ(reports.size(), 1u) << "a printer that does not answer needs no report";
    EXPECT_EQ(reports[0].className, CXString("ExceptionInvalidPrinterHandle"));
    EXPECT_EQ(reports[0].thrownFrom, CXString("MSDeviceCapabilities::Initialize"));
    EXPECT_EQ(reports[0].methodName, CXString("MSDeviceCapabilities::GetPaperDatabaseCachedDeviceCapabilitiesVector"));
    EXPECT_EQ(MSDeviceCapabilities().LoadAllCaches(), E_NOTIMPL);
}

TEST_F(CapabilitiesTest, ServesEachPrinterItsOwn) {
    const TestPrinter other(kOffice, W("Other Printer"));
    DataCache otherCache(other.GetHandle(), other.GetCacheKey(), kStart, true);
    Store(kPaperCapsValue, PaperBlob(0, 0, 2, 2));
    otherCache.SetCachedValue(kPaperCapsValue, PaperBlob(0, 0, 5, 5), false);
    MsCachedDeviceCapabilities capabilities(nullptr);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer_.GetHandle()).size(), 2u);
        EXPECT_EQ(capabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(other.GetHandle()).size(), 5u);
    }
}

TEST_F(CapabilitiesTest, ValidatesThePaperDatabaseAgainstTheForms) {
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(printer_.GetHandle(), false);
    EXPECT_TRUE(capabilities.IsPaperCacheStale());
    const DWORD forms = capabilities.ComputeFormsDatabaseCRC();
    EXPECT_NE(forms, kStart) << "a printer has forms";
    EXPECT_EQ(capabilities.GetCustomFormsCRC(), kStart) << "the user has no sizes of his own";
    struct Row {
        const char* what;
        DWORD forms, custom;
        bool validate;
        HRESULT result;
        bool stale;
    };
    const Row rows[] = {
        {"current", forms, kStart, true, S_OK, false},
        {"other forms", forms + 1, kStart, true, E_FAIL, true},
        {"other custom sizes", forms, kStart + 1, true, E_FAIL, false},
        {"not asked", forms + 1, kStart + 1, false, S_OK, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Store(kPaperCapsValue, PaperBlob(row.forms, row.custom, 0, 0));
        EXPECT_EQ(capabilities.LoadCache(2, row.validate), row.result);
        EXPECT_EQ(capabilities.IsPaperCacheStale(), row.stale);
    }
    EXPECT_EQ(capabilities.LoadCache(6, true), E_FAIL) << "no bins stored";
    EXPECT_EQ(capabilities.LoadCache(7, true), S_OK) << "needs no cache";

    Store(kPaperCapsValue, PaperBlob(forms, kStart, 0, 0));
    Store(kDeviceLimitsValue, MakeBlob<_tag_FormsInfoRec>({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 0));
    EXPECT_EQ(capabilities.LoadAllCaches(), E_FAIL);
    EXPECT_EQ(capabilities.GetLoadedFlags(), 0x2000u | 0x7ff);
    for (const CapabilityGroup& group : kCapabilityGroups)
        if (group.minimumBytes < 16) Store(group.valueName, MakeBlob<_tag_FormsInfoRec>({0, 0, 0}, 0));
    EXPECT_EQ(capabilities.LoadAllCaches(), S_OK);
    EXPECT_EQ(capabilities.GetLoadedFlags(), 0x1ffffu);
}

TEST_F(CapabilitiesTest, ChecksTheUsersCustomSizes) {
    const CXString key = CXString(kDriverFamilyKey) + W("\\Morvane Custom Paper Sizes\\");
    const auto makeKey = [&](const CXString& name) {
        UniqueKey made;
        RegCreateKeyExW(HKEY_CURRENT_USER, key + name, 0, nullptr, 0, KEY_WRITE, nullptr, made.Put(), nullptr);
        return made;
    };
    const auto wanted = [&](const WCHAR* name, LONG width, LONG length, DWORD units, DWORD start) {
        _tag_FormsInfoRec record{};
        const DWORD id = PageSizeDictionary::GetCustomSizeMsId(name);
        std::memcpy(&record, &id, sizeof id);
        record.width = width;
        record.length = length;
        record.displayUnits = units;
        record.pageSizeType = 25003;
        std::copy_n(name, std::min<std::size_t>(std::char_traits<WCHAR>::length(name), 63), record.name);
        return Crc32::GetCrc(&record, sizeof record, start);
    };
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(printer_.GetHandle(), false);
    makeKey(W("Bare"));
    DWORD crc = wanted(W("Bare"), 0, 0, 7492, kStart);
    EXPECT_EQ(capabilities.GetCustomFormsCRC(), crc);

    const CXString longName(WideString(100, W('z')));
    const UniqueKey poster = makeKey(longName);
    const auto set = [&](const WCHAR* name, DWORD value) {
        RegSetValueExW(poster.Get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
    };
    set(W("WidthInThousandthsOfAMillimeter"), 500000);
    set(W("LengthInThousandthsOfAMillimeter"), 700000);
    set(W("IsMetricUnits"), 1);
    crc = wanted(longName, 500000, 700000, 7491, crc);
    EXPECT_EQ(capabilities.GetCustomFormsCRC(), crc);

    Application::SetExecutableName(W("spoolsv.exe"));
    MSDeviceCapabilities inSpooler;
    inSpooler.Initialize(printer_.GetHandle(), false);
    EXPECT_EQ(inSpooler.GetCustomFormsCRC(), kStart);
}

// Takes the exported items into an attribute list, as long as there is room.
class ListSink final : public AttributeBytesSink {
public:
    void SetNameSpace(const AttributeBytesNameSpaceId& id) override { nameSpace = id.GetId(); }
    bool AddDataBlob(AttributeBytesFeatureId feature, const ByteBuffer& value) override {
        offered.push_back(feature.id);
        if (value.getDword() > room) return false;
        list.Append(feature, AttributeBytesDataBlobValue(value));
        return true;
    }
    std::size_t room = 5000;
    DWORD nameSpace = 0;
    std::vector<DWORD> offered;
    AttributeBytesRawList list;
};

TestDevmode MakeDevmode(const AttributeBytesRawList& capabilities) {
    const DWORD nameSpace = PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId();
    return TestDevmode(MakePrivateBlock({{1, MakeAttributeState(nameSpace, capabilities)}}));
}

TEST_F(CapabilitiesTest, TravelThroughADevmodeToTheSpooler) {
    Store(kPaperCapsValue, PaperBlob(0, 0, 3, 3));
    Store(kBinCapsValue, Cut(PaperBlob(0, 0, 0, 0), 9));  // too short to count
    Store(kMediaCapsValue, MakeBlob<_tag_FormsInfoRec>({0, 40}, 40));
    Store(kResolutionsValue, MakeBlob<_tag_ResolutionInfoRec>({0, 2, 0}, 2));
    MSDeviceCapabilities capabilities;
    capabilities.Initialize(printer_.GetHandle(), true);
    ListSink sink;
    EXPECT_TRUE(capabilities.ExportCachesToDevmode(sink));
    EXPECT_EQ(sink.nameSpace, PersistentAttributes::GetMsDeviceCapabilitiesNameSpaceId());
    EXPECT_EQ(sink.offered, (std::vector<DWORD>{2, 35, 65527})) << "bins are too short, device limits absent";
    ASSERT_EQ(sink.list.GetItems().size(), 2u) << "the media types do not fit";
    const ByteBuffer good = sink.list.GetItems()[0].second.GetDataBlob();
    const ByteBuffer paper = PaperBlob(0, 0, 3, 3);
    EXPECT_EQ(privateblock::ReadDword(good.getLpbyte()),
              Crc32::GetCrc(paper.getLpbyte(), paper.getDword(), Cache().GetCurrentCRC()));
    for (const CapabilityGroup& group : kCapabilityGroups) Cache().DeleteCache(group.valueName, false);

    Application::SetExecutableName(W("spoolsv.exe"));
    const HANDLE printer = printer_.GetHandle();
    TestDevmode devmode = MakeDevmode(sink.list);
    MsCachedDeviceCapabilities cached(devmode.Get());
    EXPECT_EQ(cached.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer).size(), 3u);
    EXPECT_EQ(cached.GetResolutionEnumsCachedDeviceCapabilitiesVector(printer).size(), 2u);
    EXPECT_TRUE(MsCachedDeviceCapabilities(nullptr).GetPaperDatabaseCachedDeviceCapabilitiesVector(printer).empty());

    struct Row {
        const char* what;
        ByteBuffer item;
        HRESULT result;
        bool mismatch;
    };
    ByteBuffer altered = good;
    altered.getLpbyte()[0] ^= 1;
    for (const Row& row : {Row{"intact", good, 0x0004DC01, false},
                           {"another checksum", altered, 0x0004DC01, true},
                           {"cut in the last record", Cut(good, 1), 0x0004DC01, true},
                           {"cut in the header", Cut(good, 3 * 152 + 1), E_FAIL, false},
                           {"empty", {}, E_FAIL, false}}) {
        SCOPED_TRACE(row.what);
        AttributeBytesRawList list;
        list.Append(AttributeBytesFeatureId(2), AttributeBytesDataBlobValue(row.item));
        TestDevmode changed = MakeDevmode(list);
        MSDeviceCapabilities spooled;
        std::vector<_tag_FormsInfoRec> records;
        EXPECT_EQ(spooled.GetPaperDatabaseCachedDeviceCapabilitiesVector(printer, changed.Get(), records), row.result);
        EXPECT_EQ(spooled.HasDevmodeCrcMismatch(), row.mismatch);
    }
}

}  // namespace
