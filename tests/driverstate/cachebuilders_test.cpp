// The capability caches, built from a data model of a whole product.
#include <capabilitycaches.h>
#include <msdevicecapabilities.h>
#include <support/printerfixture.h>
#include <support/userconventions.h>
#include <support/userpapers.h>

#include <mvcore/datamodelmanager.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <string>

namespace {

constexpr DWORD kTabloid = 6441, kSra3 = 6490;

using Papers = std::vector<_tag_FormsInfoRec>;

class CacheBuildersTest : public testing::Test {
protected:
    DataCache Values() const { return DataCache(handle_, printer_.GetCacheKey(), kCapabilityCacheCrcStart, true); }
    ByteBuffer Blob(const WCHAR* name) const {
        ByteBuffer blob;
        Values().GetCachedBytesValue(name, blob);
        return blob;
    }
    Papers GetPapers() const {
        Papers papers;
        MSDeviceCapabilities().GetPaperDatabaseCachedDeviceCapabilitiesVector(handle_, nullptr, papers);
        return papers;
    }
    // Counts how often the printer's DEVMODEs were declared old.
    LONG Stamp() const {
        DWORD type = 0;
        ByteBuffer value;
        Printer(handle_).GetPrinterDataW(W("XDevmodeCacheStamp"), type, value);
        return value.getAsLongValue();
    }

    TestStore store_;
    TestPrinter printer_{kPress};
    HANDLE handle_ = printer_.GetHandle();
};

class CachesForUser : public CacheBuildersTest, public testing::WithParamInterface<bool> {
protected:
    const bool english_ = GetParam();
    const UserConventions user_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(English, CachesForUser, testing::Bool());

// A model of the press whose caches follow it.
class CacheModelTest : public CacheBuildersTest {
protected:
    void Populate(std::vector<DataSource*> before = {}, bool noWrite = false) {
        capabilities_.Initialize(handle_, noWrite);
        before.push_back(&capabilities_);
        manager_.PopulateFromSourceData(before);
    }
    IntegrationServices& GetServices() { return manager_.GetIntegrationInterface().GetServices(); }

    ProductStringLoader loader_{DataModelIds::kNotSet};
    MSDeviceCapabilities capabilities_;
    DataModelManager manager_{1, PrintDriver::GetMorvaneDriverDataFilePathFromHandle(handle_), loader_, false, true};
};

// Whether the papers hold the record; its value may be any.
void ExpectPaper(const Papers& papers, const WCHAR* name, _tag_FormsInfoRec wanted) {
    const auto found = std::find_if(papers.begin(), papers.end(), [&](const _tag_FormsInfoRec& record) {
        return CXString(record.name) == name && record.pageSizeType == wanted.pageSizeType;
    });
    ASSERT_NE(found, papers.end()) << CXString(name).ToUtf8();
    wanted.pageSizeValue = found->pageSizeValue;
    EXPECT_EQ(std::memcmp(&*found, &wanted, offsetof(_tag_FormsInfoRec, name)), 0) << CXString(name).ToUtf8();
}

TEST_P(CachesForUser, RecordsComeInTheirOrderAndTheSameAgainWritesNothing) {
    RebuildCapabilityCaches(handle_);
    const Papers papers = GetPapers();
    ASSERT_EQ(papers.size(), 51u);
    EXPECT_EQ(CXString(papers[0].name), CXString(english_ ? W("Letter") : W("A4")));
    const auto place = [](DWORD type) { return type == 25007 ? 2 * 25003 + 1 : 2 * type; };
    EXPECT_TRUE(std::is_sorted(papers.begin(), papers.end(), [&](const auto& a, const auto& b) {
        return place(a.pageSizeType) < place(b.pageSizeType);
    }));
    ExpectPaper(papers, W("A4"), {9, 9, 2100, 2970, 0, 7491, 25001, {}});
    ExpectPaper(papers, W("Press Sheet 330 x 487"), {9400, 0, 3302, 4877, 0, 7491, 25003, {}});
    // Forms that stand for a paper of the product.
    ExpectPaper(papers, W("SRA3 Press Sheet"), {9300, 9300, 3200, 4500, 0, 7491, 25004, {}});
    ExpectPaper(papers, W("Press House Card"), {9402, 9402, 1050, 2100, 0, 7491, 25005, {}});
    ExpectPaper({papers.back()}, W("Custom Size"),
                {256, 256, english_ ? 2159 : 2100, english_ ? 2794 : 2970, 0, english_ ? 7492u : 7491u, 25008, {}});

    const LONG stamp = Stamp();
    EXPECT_GT(stamp, 0);
    RebuildCapabilityCaches(handle_);
    EXPECT_EQ(Stamp(), stamp);
    AddForm(handle_, W("Card"), 99960, 200000);
    RebuildCapabilityCaches(handle_);
    EXPECT_EQ(Stamp(), stamp + 1) << "made for other forms";
}

TEST_F(CacheModelTest, AChangeRewritesTheGroupsThatItConcerns) {
    Populate();
    EXPECT_EQ(capabilities_.GetDirtyFlags(), 0u);
    FeatureServices& features = manager_.GetFeatureServices();
    const FeatureIdWithContext pageSize(FeatureId(477), FeatureId(168));
    const Resolution resolution(600, 600, Resolution::kDotsPerInch);
    const ByteBuffer marker("marker", 6);
    const auto expect = [&](const char* what, DWORD flags, const std::function<void()>& act) {
        SCOPED_TRACE(what);
        for (const CapabilityGroup& group : kCapabilityGroups) Values().SetCachedValue(group.valueName, marker, false);
        Values().SetCachedValue(kCapsFlagsValue, LONG{0}, false);
        const LONG stamp = Stamp();
        act();
        for (const CapabilityGroup& group : kCapabilityGroups)
            EXPECT_EQ(!(Blob(group.valueName) == marker), flags == group.flag) << CXString(group.valueName).ToUtf8();
        EXPECT_EQ(Values().GetCachedLongValue(kCapsFlagsValue, -1), static_cast<LONG>(flags));
        EXPECT_EQ(Stamp() - stamp, flags ? 1 : 0);
    };
    expect("resolutions", 0x800, [&] { GetServices().SetResolutions(FeatureId(94), {resolution}); });
    expect("page sizes", 0x2000, [&] { GetServices().AddOptionValues(pageSize, {ValueId(6436)}, 0); });
    expect("sides", 0x7ff, [&] { GetServices().AddOptionValues(FeatureId(46), {ValueId(5420)}, 0); });
    expect("stapler", 0x10000, [&] { features.GetOptionFeature(FeatureId(252)).SetValue(ValueId(7721)); });
    expect("collation barred", 0x7ff, [&] { GetServices().SetUsable(FeatureId(45), false); });
    expect("duplex barred, which no cache tells", 0, [&] { GetServices().SetUsable(FeatureId(46), false); });
    expect("copies, which no cache tells", 0, [&] { features.GetIntegerFeature(FeatureId(43)).SetValue(7); });
}

TEST_F(CacheModelTest, ACacheThatVanishedOrWasCutIsWrittenAgain) {
    Populate();
    for (const CapabilityGroup& group : kCapabilityGroups) {
        SCOPED_TRACE(CXString(group.valueName).ToUtf8());
        const auto updates = [&] {
            capabilities_.UpdateCaches(group.flag);
            return capabilities_.GetDirtyFlags() != 0 && capabilities_.SaveCaches();
        };
        updates();
        EXPECT_FALSE(updates()) << "the same again";
        const ByteBuffer whole = Blob(group.valueName);
        Values().DeleteCache(group.valueName, false);
        EXPECT_TRUE(updates() && Blob(group.valueName) == whole);
        Values().SetCachedValue(group.valueName, ByteBuffer(whole.getLpbyte(), whole.getDword() - 1), false);
        EXPECT_TRUE(updates() && Blob(group.valueName) == whole);
    }
}

TEST_F(CacheModelTest, AreLeftAloneUntilTheTraysAreRead) {
    const ByteBuffer marker("marker", 6);
    for (const CapabilityGroup& group : kCapabilityGroups) Values().SetCachedValue(group.valueName, marker, false);
    const LONG stamp = Stamp();
    Populate({}, true);
    manager_.GetFeatureServices().GetOptionFeature(FeatureId(252)).SetValue(ValueId(7721));
    for (const CapabilityGroup& group : kCapabilityGroups)
        EXPECT_EQ(Blob(group.valueName), marker) << CXString(group.valueName).ToUtf8();
    EXPECT_EQ(Stamp(), stamp);
    for (const DWORD event : {DataModelIds::kSettingsApplied, DataModelIds::kLoadedMediaChanged})
        manager_.GetFeatureServices().RaiseEvent(EventId(event));
    manager_.GetFeatureServices().GetOptionFeature(FeatureId(252)).SetValue(ValueId(7720));
    for (const auto& [name, isWritten] :
         {std::pair{kMediaReadyValue, true}, {kStapleValue, true}, {kBinCapsValue, false}})
        EXPECT_EQ(!(Blob(name) == marker), isWritten) << CXString(name).ToUtf8();
}

class CacheModelForUser : public CacheModelTest, public testing::WithParamInterface<bool> {
protected:
    const UserConventions user_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(English, CacheModelForUser, testing::Bool());

TEST_P(CacheModelForUser, WhatTheTraysHoldIsReadWhenItIsToldToHaveChanged) {
    Populate();
    const auto ready = [&] {
        const ByteBuffer blob = Blob(kMediaReadyValue);
        std::string pairs;
        MediaReadyRecord record;
        for (std::size_t at = sizeof(ListCapsHeader); at + sizeof record <= blob.getDword(); at += sizeof record) {
            std::memcpy(&record, blob.getLpbyte() + at, sizeof record);
            pairs += CXString(record.paperName).ToUtf8() + "|" + CXString(record.mediaName).ToUtf8() + "\n";
        }
        return pairs;
    };
    const ListOfValuesRef trays = manager_.GetFeatureServices().GetListOfValues(FeatureId(192));
    const auto load = [&](std::size_t tray, DWORD size, DWORD media) {
        const ListOfFeaturesRef row = trays.GetListOfFeatures(tray);
        EXPECT_TRUE(row.GetOptionFeature(FeatureId(168)).SetValue(ValueId(size)));
        EXPECT_TRUE(row.GetOptionFeature(FeatureId(175)).SetValue(ValueId(media)));
    };
    const auto changed = [&] {
        manager_.GetFeatureServices().RaiseEvent(EventId(DataModelIds::kLoadedMediaChanged));
        return ready();
    };
    for (std::size_t tray = 0; tray < trays.GetNumItems(); ++tray) load(tray, 5001, 5001);
    EXPECT_EQ(changed(), GetParam() ? "Letter|\n" : "A4|\n") << "what is usual, of any type";
    load(0, 6446, 6805);
    load(1, 6446, 6805);
    EXPECT_EQ(changed(), "A3|Labels\n");
    const auto customPage = [&](LONG width, LONG length) {
        load(0, 6731, 5001);
        for (const auto& [side, size] : {std::pair{172u, width}, {173u, length}})
            EXPECT_TRUE(trays.GetListOfFeatures(0)
                            .GetDimensionFeature(FeatureId(side))
                            .SetValue(Dimension(size, Dimension::Micrometres)));
        return changed();
    };
    EXPECT_EQ(customPage(123400, 254000),
              GetParam() ? "4.86 x 10.00 inches|\nA3|Labels\n" : "123.4 x 254.0 mm|\nA3|Labels\n");
    EXPECT_EQ(customPage(279400, 431800), "Tabloid|\n11x17 in|\nA3|Labels\n");
    load(1, 6436, 5001);
    manager_.GetFeatureServices().RaiseEvent(EventId(DataModelIds::kSettingsApplied));
    EXPECT_EQ(ready(), "Tabloid|\n11x17 in|\nA3|Labels\n") << "nobody said that the paper had changed";
}

TEST(CacheAnswers, TheCoreDriverAnswersTheSameFromTheCachesAsFromTheProduct) {
    for (const char* product : {kPress, kOffice, kScript}) {
        SCOPED_TRACE(product);
        const TestStore store;
        const TestPrinter printer(product);
        const auto answers = [&] {
            std::vector<int> all;
            for (const WORD capability : {DC_PAPERS, DC_PAPERNAMES, DC_BINS, DC_MEDIATYPES, DC_ENUMRESOLUTIONS,
                                          DC_COPIES, DC_MINEXTENT, DC_MAXEXTENT, DC_FILEDEPENDENCIES, DC_COLLATE,
                                          DC_PRINTERMEM, DC_DUPLEX, DC_COLORDEVICE, DC_PRINTRATEPPM, DC_MEDIAREADY})
                all.push_back(DeviceCapabilitiesW(printer.GetName(), nullptr, capability, nullptr, nullptr));
            return all;
        };
        const std::vector<int> before = answers();
        RebuildCapabilityCaches(printer.GetHandle());
        EXPECT_EQ(answers(), before);
    }
}

TEST(CacheAnswers, NoTwoPapersOfAPrinterShareANumber) {
    const TestStore store;
    const TestPrinter printers[] = {TestPrinter(kPress, W("Press")), TestPrinter(kOffice, W("Office")),
                                    TestPrinter(kScript, W("Script"))};
    for (LONG form = 0; form < 300; ++form)  // beyond every number that a product or the custom size ever had
        AddForm(printers[0].GetHandle(), CXString("Form ") + CXString(std::to_string(form).c_str()), 50000,
                50000 + form);
    AddCustomSize(W("Mine"), 111100, 222200);
    for (const TestPrinter& printer : printers) {
        RebuildCapabilityCaches(printer.GetHandle());
        Papers papers;
        MSDeviceCapabilities().GetPaperDatabaseCachedDeviceCapabilitiesVector(printer.GetHandle(), nullptr, papers);
        std::map<WORD, DWORD> values;
        for (const _tag_FormsInfoRec& paper : papers)
            EXPECT_EQ(values.emplace(paper.msPaperId, paper.pageSizeValue).first->second, paper.pageSizeValue)
                << CXString(paper.name).ToUtf8() << " is another paper of number " << paper.msPaperId;
        EXPECT_EQ(values[256], 6731u);
    }
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
    AddForm(handle_, W("Press Form"), 320000, 450000, FORM_PRINTER);
    NumberlessSizes numberless;
    Populate({&numberless});
    const Papers papers = GetPapers();
    ASSERT_EQ(papers.size(), 52u);
    // Form 3 has the size of a tabloid, too, and comes first: it is never taken.
    ExpectPaper(papers, W("Tabloid"), {17, 3, 2794, 4318, 0, 7492, 25001, {}});
    ExpectPaper(papers, W("SRA3"), {119, 0, 3200, 4500, 0, 7491, 25002, {}});
    const Papers mapped(papers.end() - 4, papers.end() - 2);  // before the user's form and the custom size
    ExpectPaper(papers, W("Press Form"), {119, 119, 3200, 4500, 0, 7491, 25004, {}});
    ExpectPaper(papers, W("11x17 in"), {17, 17, 2794, 4318, 0, 7492, 25004, {}});
    const auto micrometres = [](LONG value) { return Dimension(value, Dimension::Micrometres); };
    MediaHandler& media = GetServices().GetMediaHandler();
    EXPECT_FALSE(media.AnyExist(micrometres(431800), micrometres(279400))) << "ledger is wider than long";
    EXPECT_TRUE(media.AnyExist(micrometres(92075), micrometres(165100))) << "a form that the press does not offer";
}

}  // namespace
