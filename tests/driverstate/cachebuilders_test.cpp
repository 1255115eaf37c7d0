// The capability caches, built from a data model of a whole product.
#include <capabilitycaches.h>
#include <msdevicecapabilities.h>
#include <support/printerfixture.h>

#include <mvcore/datamodelmanager.h>
#include <mvutil/customsizes.h>
#include <mvutil/operatingsystem.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>

namespace {

constexpr DWORD kTabloid = 6441, kSra3 = 6490;

template <class Record>
struct Cache {
    std::vector<Record> records;
    const Record* Find(const WCHAR* name) const {
        for (const Record& record : records)
            if (CXString(record.name) == CXString(name)) return &record;
        return nullptr;
    }
};

class CacheBuildersTest : public testing::Test {
protected:
    DataCache Values() {
        return DataCache(printer_.GetHandle(), printer_.GetCacheKey(), kCapabilityCacheCrcStart, true);
    }
    ByteBuffer Blob(const WCHAR* name) {
        ByteBuffer blob;
        Values().GetCachedBytesValue(name, blob);
        return blob;
    }
    template <class Header, class Record>
    Cache<Record> Read(const WCHAR* name) {
        const ByteBuffer blob = Blob(name);
        Cache<Record> cache;
        Header header{};
        if (blob.getDword() < sizeof header) return cache;
        std::memcpy(&header, blob.getLpbyte(), sizeof header);
        EXPECT_EQ(blob.getDword(), sizeof header + header.count * sizeof(Record));
        cache.records.resize((blob.getDword() - sizeof header) / sizeof(Record));
        std::memcpy(cache.records.data(), blob.getLpbyte() + sizeof header, cache.records.size() * sizeof(Record));
        return cache;
    }
    Cache<_tag_FormsInfoRec> Papers() { return Read<PaperCapsHeader, _tag_FormsInfoRec>(kPaperCapsValue); }
    LONG Stamp() {
        DWORD type = 0;
        ByteBuffer value;
        return Printer(printer_.GetHandle()).GetPrinterDataW(W("XDevmodeCacheStamp"), type, value)
                   ? value.getAsLongValue()
                   : 0;
    }
    void Rebuild() { RebuildCapabilityCaches(printer_.GetHandle()); }
    void AddForm(const WCHAR* name, LONG width, LONG length, DWORD flags) {
        FORM_INFO_1W form{};
        form.Flags = flags;
        form.pName = const_cast<WCHAR*>(name);
        form.Size = {width, length};
        form.ImageableArea = {0, 0, width, length};
        ASSERT_TRUE(AddFormW(printer_.GetHandle(), 1, reinterpret_cast<LPBYTE>(&form)));
    }
    static CXString CustomSizePath(const WCHAR* name) {
        return CXString(kDriverFamilyKey) + W("\\") + kCustomSizesKey + W("\\") + name;
    }
    static void AddCustomSize(const WCHAR* name, LONG width, LONG length) {
        UniqueKey key;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, CustomSizePath(name), 0, nullptr, 0, KEY_WRITE, nullptr, key.Put(),
                                  nullptr),
                  ERROR_SUCCESS);
        const LONG isMetric = 1;
        const auto set = [&](const WCHAR* value, const LONG& number) {
            RegSetValueExW(key.Get(), value, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
        };
        set(kCustomSizeWidthValue, width);
        set(kCustomSizeLengthValue, length);
        set(kCustomSizeIsMetricValue, isMetric);
    }

    TestStore store_;
    TestPrinter printer_{kPress};
};

// A model of the press whose caches follow it.
class CacheModelTest : public CacheBuildersTest {
protected:
    void Populate(std::vector<DataSource*> before = {}) {
        capabilities_.Initialize(printer_.GetHandle(), false);
        before.push_back(&capabilities_);
        manager_.PopulateFromSourceData(before);
    }
    IntegrationServices& GetServices() { return manager_.GetIntegrationInterface().GetServices(); }
    void Raise(DWORD event) { manager_.GetFeatureServices().RaiseEvent(EventId(event)); }

    ProductStringLoader loader_{DataModelIds::kNotSet};
    MSDeviceCapabilities capabilities_;
    DataModelManager manager_{1, PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer_.GetHandle()), loader_,
                              false, true};
};

void ExpectPaper(const _tag_FormsInfoRec* record, const _tag_FormsInfoRec& wanted) {
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->msPaperId, wanted.msPaperId);
    EXPECT_EQ(record->formIndex, wanted.formIndex);
    EXPECT_EQ(record->width, wanted.width);
    EXPECT_EQ(record->length, wanted.length);
    EXPECT_EQ(record->displayUnits, wanted.displayUnits);
    EXPECT_EQ(record->pageSizeType, wanted.pageSizeType);
}

TEST_F(CacheBuildersTest, PapersComeInTheirOrderAndTheCustomSizeLast) {
    Rebuild();
    const auto papers = Papers();
    ASSERT_EQ(papers.records.size(), 48u);
    const bool english = OperatingSystem::UseEnglishPaperSizes();
    const WCHAR* const first[] = {english ? W("Letter") : W("A4"), english ? W("Legal") : W("A3"),
                                  english ? W("Tabloid") : W("A5")};
    for (std::size_t i = 0; i < std::size(first); ++i)
        EXPECT_EQ(CXString(papers.records[i].name).ToUtf8(), CXString(first[i]).ToUtf8());
    EXPECT_TRUE(std::is_sorted(papers.records.begin(), papers.records.end(), [](const auto& a, const auto& b) {
        return a.pageSizeType < b.pageSizeType;  // the press has no forms, whose kinds stand out of order
    }));
    ExpectPaper(papers.Find(W("A4")), {9, 9, 2100, 2970, 0, 7491, 25001, {}});
    ExpectPaper(papers.Find(W("Press Sheet 330 x 487")), {400, 0, 3302, 4877, 0, 7491, 25003, {}});
    ExpectPaper(&papers.records.back(),
                {256, 256, english ? 2159 : 2100, english ? 2794 : 2970, 0, english ? 7492u : 7491u, 25008, {}});
    EXPECT_EQ(papers.Find(W("Custom Size")), &papers.records.back());
}

TEST_F(CacheBuildersTest, TheUsersFormsAndCustomSizesComeAndGo) {
    AddForm(W("Card"), 99960, 200000, FORM_USER);
    AddForm(W("Wide"), 200000, 100000, FORM_USER);
    AddCustomSize(W("Mine"), 80000, 120000);
    AddCustomSize(W("Mine Across"), 120000, 80000);
    AddCustomSize(W("Nothing"), 0, 0);
    Rebuild();
    const auto with = Papers();
    EXPECT_EQ(with.records.size(), 50u);
    ExpectPaper(with.Find(W("Card")),
                {119, 119, 1000, 2000, 0, OperatingSystem::UseEnglishPaperSizes() ? 7492u : 7491u, 25003, {}});
    ASSERT_NE(with.Find(W("Mine")), nullptr);
    ExpectPaper(with.Find(W("Mine")), {with.Find(W("Mine"))->msPaperId, 0, 800, 1200, 0, 7491, 25003, {}});
    MSDeviceCapabilities fresh;
    fresh.Initialize(printer_.GetHandle(), false);
    EXPECT_EQ(fresh.LoadCache(2, true), S_OK) << "made for these forms and sizes";

    WCHAR card[] = W("Card");
    ASSERT_TRUE(DeleteFormW(printer_.GetHandle(), card));
    ASSERT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, CustomSizePath(W("Mine"))), ERROR_SUCCESS);
    EXPECT_EQ(fresh.LoadCache(2, true), E_FAIL);
    Rebuild();
    EXPECT_EQ(Papers().records.size(), 48u);
}

// A source that takes the paper numbers of page sizes away, so that the printer's forms give them.
class NumberlessSizes final : public DataSource {
public:
    void IntegrateSourceData(IntegrationInterface& integration) override {
        for (const DWORD value : {kTabloid, kSra3})
            integration.GetServices().GetMediaHandler().GetPageSize(ValueId(value))->SetMsId(0);
    }
};

TEST_F(CacheModelTest, FormsGiveNumbersToTheSizesThatTheyStandFor) {
    AddForm(W("Press Form"), 320000, 450000, FORM_PRINTER);
    NumberlessSizes numberless;
    Populate({&numberless});
    const auto papers = Papers();
    // Form 3 has the size of a tabloid, too, and comes first: it is never taken.
    const struct {
        const WCHAR* name;
        _tag_FormsInfoRec wanted;
    } rows[] = {
        {W("Tabloid"), {17, 3, 2794, 4318, 0, 7492, 25001, {}}},
        {W("SRA3"), {119, 0, 3200, 4500, 0, 7491, 25002, {}}},
        {W("Press Form"), {119, 119, 3200, 4500, 0, 7491, 25004, {}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(CXString(row.name).ToUtf8());
        ExpectPaper(papers.Find(row.name), row.wanted);
    }
    ASSERT_EQ(papers.records.size(), 50u);
    const auto isMapped = [](const _tag_FormsInfoRec& record) { return record.pageSizeType == 25004; };
    EXPECT_TRUE(std::all_of(papers.records.end() - 3, papers.records.end() - 1, isMapped));
    const auto mapped = std::find_if(papers.records.begin(), papers.records.end(), [&](const auto& record) {
        return isMapped(record) && CXString(record.name) == CXString("11x17 in");
    });
    ASSERT_NE(mapped, papers.records.end());
    ExpectPaper(&*mapped, {17, 17, 2794, 4318, 0, 7492, 25004, {}});
    const auto micrometres = [](LONG value) { return Dimension(value, Dimension::Micrometres); };
    MediaHandler& media = GetServices().GetMediaHandler();
    EXPECT_FALSE(media.AnyExist(micrometres(431800), micrometres(279400))) << "ledger is wider than long";
    EXPECT_TRUE(media.AnyExist(micrometres(92075), micrometres(165100))) << "a form that the press does not offer";
}

TEST_F(CacheModelTest, AChangeRewritesTheGroupsThatItConcerns) {
    Populate();
    EXPECT_EQ(capabilities_.GetDirtyFlags(), 0u);
    const struct {
        const char* what;
        DWORD flags;
        std::function<void()> act;
    } rows[] = {
        {"resolutions", 0x800,
         [&] { GetServices().SetResolutions(FeatureId(94), {Resolution(600, 600, Resolution::kDotsPerInch)}); }},
        {"page sizes", 0x2000,
         [&] {
             GetServices().AddOptionValues({FeatureId(477), FeatureId(168)}, {ValueId(6436)}, 0);
         }},
        {"media types", 0x8000,
         [&] {
             GetServices().AddOptionValues({FeatureId(477), FeatureId(175)}, {ValueId(6801)}, 0);
         }},
        {"sides", 0x7ff, [&] { GetServices().AddOptionValues(FeatureId(46), {ValueId(5420)}, 0); }},
        {"stapler", 0x10000,
         [&] { manager_.GetFeatureServices().GetOptionFeature(FeatureId(252)).SetValue(ValueId(7721)); }},
        {"copies, which no cache tells", 0,
         [&] { manager_.GetFeatureServices().GetIntegerFeature(FeatureId(43)).SetValue(7); }},
    };
    const ByteBuffer marker("marker", 6);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        for (const CapabilityGroup& group : kCapabilityGroups) Values().SetCachedValue(group.valueName, marker, false);
        Values().SetCachedValue(kCapsFlagsValue, LONG{0}, false);
        const LONG stamp = Stamp();
        row.act();
        for (const CapabilityGroup& group : kCapabilityGroups)
            EXPECT_EQ(!(Blob(group.valueName) == marker), row.flags == group.flag)
                << CXString(group.valueName).ToUtf8();
        EXPECT_EQ(Values().GetCachedLongValue(kCapsFlagsValue, -1), static_cast<LONG>(row.flags));
        EXPECT_EQ(Stamp() - stamp, row.flags ? 1 : 0);
    }
    EXPECT_EQ((Read<ResolutionCapsHeader, _tag_ResolutionInfoRec>(kResolutionsValue).records.size()), 0u) << "marked";
}

TEST_F(CacheBuildersTest, TheSameAgainWritesNothingAndADamagedCacheIsReplaced) {
    Rebuild();
    const LONG stamp = Stamp();
    EXPECT_GT(stamp, 0);
    Rebuild();
    EXPECT_EQ(Stamp(), stamp);
    const ByteBuffer whole = Blob(kMediaCapsValue);
    ByteBuffer damaged = whole;
    damaged.getLpbyte()[whole.getDword() - 1] ^= 1;
    Values().SetCachedValue(kMediaCapsValue, damaged, false);
    EXPECT_FALSE(IsWholeCapabilityBlob(*FindCapabilityGroup(35), damaged));
    Rebuild();
    EXPECT_EQ(Blob(kMediaCapsValue), whole);
    EXPECT_EQ(Stamp(), stamp + 1);
    EXPECT_EQ(Values().GetCachedLongValue(kCapsFlagsValue, 0), 0x8000);
}

TEST_F(CacheBuildersTest, TraysMediaTypesAndResolutionsAreTheProducts) {
    Rebuild();
    const auto bins = Read<ListCapsHeader, BinCapsRecord>(kBinCapsValue);
    ASSERT_EQ(bins.records.size(), 6u);
    EXPECT_EQ(bins.Find(W("Automatically Select")), &bins.records[0]);
    EXPECT_EQ(bins.records[0].number, 15);
    EXPECT_EQ(bins.records[5].value, 7151u);
    const auto media = Read<ListCapsHeader, MediaCapsRecord>(kMediaCapsValue);
    const std::pair<const WCHAR*, DWORD> numbers[] = {{W("Automatically Select"), 5001},
                                                      {W("Plain"), 1},
                                                      {W("Transparency"), 2},
                                                      {W("Glossy"), 3},
                                                      {W("Labels"), 6805},
                                                      {W("Press House Stock"), 9636}};
    for (const auto& [name, number] : numbers) {
        ASSERT_NE(media.Find(name), nullptr) << CXString(name).ToUtf8();
        EXPECT_EQ(media.Find(name)->number, number);
    }
    const TestPrinter office(kOffice, W("Office"));
    RebuildCapabilityCaches(office.GetHandle());
    std::vector<_tag_ResolutionInfoRec> records;
    MSDeviceCapabilities().GetResolutionEnumsCachedDeviceCapabilitiesVector(office.GetHandle(), nullptr, records);
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(CXString(records[1].name), CXString("1200 x 1200 dpi"));
    for (const DWORD index : {0u, 1u, 2u}) EXPECT_EQ(records[index].kind, index) << "default, other, 200 x 200";
}

TEST_F(CacheModelTest, WhatTheTraysHoldIsReadWhenItIsToldToHaveChanged) {
    Populate();
    const auto ready = [&] {
        const ByteBuffer blob = Blob(kMediaReadyValue);
        std::vector<std::string> pairs;
        MediaReadyRecord record;
        for (std::size_t at = sizeof(ListCapsHeader); at + sizeof record <= blob.getDword(); at += sizeof record) {
            std::memcpy(&record, blob.getLpbyte() + at, sizeof record);
            pairs.push_back(CXString(record.paperName).ToUtf8() + "|" + CXString(record.mediaName).ToUtf8());
        }
        return pairs;
    };
    using Pairs = std::vector<std::string>;
    const bool english = OperatingSystem::UseEnglishPaperSizes();
    Raise(DataModelIds::kLoadedMediaChanged);
    EXPECT_EQ(ready(), Pairs{english ? "Letter|" : "A4|"});

    const ListOfValuesRef trays = manager_.GetFeatureServices().GetListOfValues(FeatureId(192));
    const auto load = [&](std::size_t tray, DWORD size, DWORD media) {
        const ListOfFeaturesRef row = trays.GetListOfFeatures(tray);
        EXPECT_TRUE(row.GetOptionFeature(FeatureId(168)).SetValue(ValueId(size)));
        EXPECT_TRUE(row.GetOptionFeature(FeatureId(175)).SetValue(ValueId(media)));
        return row;
    };
    load(0, 6446, 6805);
    load(1, 6446, 6805);
    const ListOfFeaturesRef custom = load(2, DataModelIds::kPageSizeCustom, DataModelIds::kNotSet);
    const auto setSides = [&](LONG width, LONG length) {
        custom.GetDimensionFeature(FeatureId(172)).SetValue(Dimension(width, Dimension::Micrometres));
        custom.GetDimensionFeature(FeatureId(173)).SetValue(Dimension(length, Dimension::Micrometres));
    };
    setSides(100500, 151000);
    Raise(DataModelIds::kSettingsApplied);
    EXPECT_EQ(ready().size(), 1u) << "no event of the trays";
    Raise(DataModelIds::kLoadedMediaChanged);
    EXPECT_EQ(ready(), (Pairs{"A3|Labels", english ? "3.96 x 5.94 inches|" : "100.5 x 151.0 mm|"}));
    setSides(279400, 431800);
    Raise(DataModelIds::kLoadedMediaChanged);
    EXPECT_EQ(ready(), (Pairs{"A3|Labels", "Tabloid|", "11x17 in|"}));
}

TEST(CacheAnswers, TheCoreDriverAnswersTheSameFromTheCachesAsFromTheProduct) {
    for (const char* product : {kPress, kOffice, kScript}) {
        SCOPED_TRACE(product);
        const TestStore store;
        const TestPrinter printer(product);
        const auto ask = [&](WORD capability) {
            return DeviceCapabilitiesW(printer.GetName(), nullptr, capability, nullptr, nullptr);
        };
        const WORD capabilities[] = {DC_PAPERS,           DC_PAPERNAMES,  DC_BINS,       DC_MEDIATYPES,
                                     DC_ENUMRESOLUTIONS,  DC_COPIES,      DC_MINEXTENT,  DC_MAXEXTENT,
                                     DC_FILEDEPENDENCIES, DC_COLLATE,     DC_PRINTERMEM, DC_DUPLEX,
                                     DC_COLORDEVICE,      DC_PRINTRATEPPM};
        std::vector<int> before;
        for (const WORD capability : capabilities) before.push_back(ask(capability));
        EXPECT_EQ(ask(DC_MEDIAREADY), -1);
        RebuildCapabilityCaches(printer.GetHandle());
        for (std::size_t i = 0; i < before.size(); ++i) EXPECT_EQ(ask(capabilities[i]), before[i]) << capabilities[i];
        EXPECT_EQ(ask(DC_MEDIAREADY), 1);
    }
}

}  // namespace
