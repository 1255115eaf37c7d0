// Bringing a DEVMODE's paper fields into line with the printer's paper database.
#include <msdevicecapabilities.h>
#include <support/capabilitycaches.h>
#include <support/printerfixture.h>
#include <support/privatedevmode.h>
#include <xdevmode.h>

#include <mvutil/cforms.h>
#include <mvutil/operatingsystem.h>
#include <winspool.h>

#include <gtest/gtest.h>

namespace {

constexpr DWORD kCommon = 25001, kMappedForm = 25004, kUserForm = 25005, kCustom = 25008;

// What the paper fields hold.
struct Paper {
    DWORD fields;
    SHORT number, width, length;
    const WCHAR* form;
};

class NormalizeTest : public testing::Test {
protected:
    bool Normalize(TestDevmode& devmode, const Paper& paper) {
        devmode.Get()->dmFields = paper.fields;
        devmode.Get()->dmPaperSize = paper.number;
        devmode.Get()->dmPaperWidth = paper.width;
        devmode.Get()->dmPaperLength = paper.length;
        XDevmode::SetFormName(devmode.Get(), paper.form);
        MSDeviceCapabilities capabilities;
        return XDevmode::NormalizeDevmodePaperSize(printer_.GetHandle(), devmode.Get(), capabilities);
    }
    HANDLE GetPrinter() const { return printer_.GetHandle(); }

    TestStore store_;
    TestPrinter printer_{kPress};
    const WCHAR* usual_ = OperatingSystem::UseEnglishPaperSizes() ? W("Letter") : W("A4");
};

TEST_F(NormalizeTest, AgreesWithOneRecord) {
    StorePapers(
        GetPrinter(),
        {MakePaper(256, 700, 800, 0, kCustom, W("Custom")), MakePaper(3, 2794, 4318, 6441, kCommon, W("Tabloid")),
         MakePaper(1, 2159, 2794, 6430, kCommon, W("US Letter")), MakePaper(17, 2794, 4318, 6408, kCommon, W("11x17")),
         MakePaper(3, 500, 600, 0, kMappedForm, W("Tabloid Form")),
         MakePaper(120, 1270, 1778, 6402, kMappedForm, W("5x7")),
         MakePaper(121, 1270, 1778, 0, kCommon, W("Same as 5x7")), MakePaper(257, 1400, 2200, 0, kUserForm, W("Ours")),
         MakePaper(10000, 900, 950, 0, kCommon, W("High")), MakePaper(65535, 910, 960, 0, kCommon, W("Higher"))});
    const DWORD byNumber = DM_PAPERSIZE, byName = DM_FORMNAME, both = DM_PAPERSIZE | DM_FORMNAME;
    const struct {
        const char* what;
        Paper before;
        bool matched;
        Paper after;
    } cases[] = {
        {"a number", {both, 1, 5, 6, W("x")}, true, {byNumber, 1, 2159, 2794, W("US Letter")}},
        {"Tabloid", {byNumber, 3, 5, 6, W("x")}, true, {byNumber, 17, 2794, 4318, W("11x17")}},
        {"a number whose size a mapped form has",
         {byNumber, 121, 5, 6, W("x")},
         true,
         {byNumber, 120, 1270, 1778, W("Same as 5x7")}},
        {"a name in another case", {byName, 0, 5, 6, W("us LETTER")}, true, {byName, 1, 2159, 2794, W("us LETTER")}},
        {"a number that no record has, with a mapped form's size, laid across",
         {byNumber, 77, 1778, 1270, W("x")},
         true,
         {byNumber, 120, 1270, 1778, W("5x7")}},
        {"a size alone, of a mapped form", {0, 77, 1270, 1778, W("x")}, true, {0, 120, 1270, 1778, W("5x7")}},
        {"a size alone, of Tabloid's form", {0, 5, 500, 600, W("x")}, true, {0, 5, 500, 600, W("Tabloid Form")}},
        {"a size alone, of any type", {0, 77, 1400, 2200, W("x")}, true, {0, 77, 1400, 2200, W("Ours")}},
        {"the custom record's name is not looked for",
         {byName, 5, 700, 801, W("CUSTOM")},
         false,
         {byName, 5, 700, 801, usual_}},
        {"but with its size it stays", {byName, 5, 700, 800, W("Custom")}, true, {byName, 5, 700, 800, W("Custom")}},
        {"an unknown name with a known size",
         {byName, 5, 1400, 2200, W("x")},
         true,
         {byName, 5, 1400, 2200, W("Ours")}},
        {"neither number nor size", {byNumber, 77, 5, 6, W("x")}, false, {byNumber, 77, 5, 6, usual_}},
        {"custom, of no record's size", {byNumber, 256, 5, 6, W("x")}, false, {byNumber, 256, 5, 6, usual_}},
        {"custom, of a record's size", {byNumber, 256, 1400, 2200, W("x")}, true, {byNumber, 256, 1400, 2200, usual_}},
        {"a number of 10000", {byNumber, 10000, 5, 6, W("x")}, true, {byNumber, 10000, 900, 950, usual_}},
        {"numbers of records have no sign", {byNumber, -1, 5, 6, W("x")}, false, {byNumber, -1, 5, 6, usual_}},
        {"but their sizes match", {byNumber, -1, 910, 960, W("x")}, true, {byNumber, -1, 910, 960, W("Higher")}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        TestDevmode devmode(0);
        EXPECT_EQ(Normalize(devmode, test.before), test.matched);
        EXPECT_EQ(devmode.Get()->dmFields, test.after.fields);
        EXPECT_EQ(devmode.Get()->dmPaperSize, test.after.number);
        EXPECT_EQ(devmode.Get()->dmPaperWidth, test.after.width);
        EXPECT_EQ(devmode.Get()->dmPaperLength, test.after.length);
        EXPECT_EQ(CXString(devmode.Get()->dmFormName), CXString(test.after.form));
    }
}

TEST_F(NormalizeTest, HasTheUsualFormNameWithoutRecords) {
    TestDevmode devmode(0);
    EXPECT_FALSE(Normalize(devmode, {DM_PAPERSIZE | DM_FORMNAME, 3, 300, 200, W("x")})) << "no cache";
    EXPECT_EQ(devmode.Get()->dmPaperSize, 17);
    EXPECT_EQ(devmode.Get()->dmPaperWidth, 300) << "only records make it stand upright";
    EXPECT_EQ(CXString(devmode.Get()->dmFormName), CXString(usual_));
    StorePapers(GetPrinter(), {});
    EXPECT_FALSE(Normalize(devmode, {DM_PAPERSIZE, 9, 200, 300, W("x")})) << "an empty cache";
    EXPECT_EQ(CXString(devmode.Get()->dmFormName), CXString(usual_));
}

TEST_F(NormalizeTest, CutsNamesAndClampsDimensions) {
    StorePapers(GetPrinter(), {MakePaper(9, 100000, 200000, 0, kCommon, CXString(WideString(40, W('n'))))});
    TestDevmode devmode(0);
    EXPECT_TRUE(Normalize(devmode, {DM_PAPERSIZE, 9, 5, 6, W("x")}));
    EXPECT_EQ(CXString(devmode.Get()->dmFormName), CXString(WideString(31, W('n'))));
    EXPECT_EQ(devmode.Get()->dmPaperLength, 32767);
    std::fill(std::begin(devmode.Get()->dmFormName), std::end(devmode.Get()->dmFormName), W('n'));
    devmode.Get()->dmFields = DM_FORMNAME;
    devmode.Get()->dmPaperSize = 5;
    MSDeviceCapabilities capabilities;
    EXPECT_FALSE(XDevmode::NormalizeDevmodePaperSize(GetPrinter(), devmode.Get(), capabilities))
        << "a name without an end has 32 characters";
}

TEST_F(NormalizeTest, ReplacesTheUsersFormInASpreadsheet) {
    for (int number = 0; number < 200; ++number) {
        CXString name;
        name.Format(W("Form %i"), number);
        FORM_INFO_1W form = {};
        form.Flags = FORM_USER;
        form.pName = const_cast<WCHAR*>(name.GetString());
        form.Size = {100000, 200000 + number};
        form.ImageableArea = {0, 0, 100000, 200000 + number};
        ASSERT_TRUE(AddFormW(GetPrinter(), 1, reinterpret_cast<LPBYTE>(&form)));
    }
    const std::size_t forms = CForms(GetPrinter(), true).GetForms().size();
    ASSERT_GT(forms, 200u);
    const SHORT lastForm = static_cast<SHORT>(forms), usual = OperatingSystem::IsMetricCountry() ? 9 : 1;
    const struct {
        const char *what, *product;
        const WCHAR* program;
        SHORT number, after;
    } cases[] = {
        {"the user's form", kPress, W("excel.exe"), lastForm, usual},
        {"another program", kPress, W("Excel.exe"), lastForm, lastForm},
        {"a number that no form has", kPress, W("excel.exe"), static_cast<SHORT>(lastForm + 1),
         static_cast<SHORT>(lastForm + 1)},
        {"a number of the system's", kPress, W("excel.exe"), 118, 118},
        {"a product without the rule", kScript, W("excel.exe"), lastForm, lastForm},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        const TestPrinter printer(test.product, CXString(test.what));
        TestDevmode devmode(MakePrivateBlock({{2, TextBytes(test.program)}}));
        devmode.Get()->dmPaperSize = test.number;
        MSDeviceCapabilities capabilities;
        XDevmode::NormalizeDevmodePaperSize(printer.GetHandle(), devmode.Get(), capabilities);
        EXPECT_EQ(devmode.Get()->dmPaperSize, test.after);
    }
}

}  // namespace
