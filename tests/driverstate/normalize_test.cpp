// Bringing a DEVMODE's paper fields into line with the printer's paper database.
#include <mscacheddevicecapabilities.h>
#include <support/printerfixture.h>
#include <support/privatedevmode.h>
#include <support/storedcaches.h>
#include <support/userconventions.h>
#include <support/userpapers.h>
#include <xdevmode.h>

namespace {

constexpr DWORD kCommon = 25001, kMappedForm = 25004, kUserForm = 25005, kCustom = 25008;

struct Paper {
    SHORT number, width, length;
    CXString form;
};

class NormalizeTest : public testing::Test {
protected:
    void Expect(const char* what, DWORD fields, const Paper& before, bool isMatched, const Paper& after) {
        SCOPED_TRACE(what);
        TestDevmode memory(0);
        DEVMODEW* const devmode = memory.Get();
        devmode->dmFields = fields;
        devmode->dmPaperSize = before.number;
        XDevmode::SetPaperDimensions(devmode, before.width, before.length);
        XDevmode::SetFormName(devmode, before.form);
        MsCachedDeviceCapabilities capabilities(devmode);
        EXPECT_EQ(XDevmode::NormalizeDevmodePaperSize(printer_.GetHandle(), devmode, capabilities), isMatched);
        EXPECT_EQ(devmode->dmFields, fields == (DM_PAPERSIZE | DM_FORMNAME) ? DWORD{DM_PAPERSIZE} : fields);
        EXPECT_EQ(devmode->dmPaperSize, after.number);
        EXPECT_EQ(devmode->dmPaperWidth, after.width);
        EXPECT_EQ(devmode->dmPaperLength, after.length);
        EXPECT_EQ(CXString(devmode->dmFormName), after.form);
    }

    TestStore store_;
    TestPrinter printer_{kPress};
};

class NormalizeForUser : public NormalizeTest, public testing::WithParamInterface<bool> {
protected:
    const UserConventions user_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(English, NormalizeForUser, testing::Bool());

TEST_P(NormalizeForUser, AgreesWithOneRecord) {
    const CXString usual = GetParam() ? W("Letter") : W("A4");
    const DWORD byNumber = DM_PAPERSIZE, byName = DM_FORMNAME, both = DM_PAPERSIZE | DM_FORMNAME;
    Expect("no cache", byNumber, {3, 300, 200, W("x")}, false, {17, 300, 200, usual});
    StorePapers(
        printer_.GetHandle(),
        {MakePaper(256, 700, 800, 0, kCustom, W("Custom")), MakePaper(3, 2794, 4318, 6441, kCommon, W("Tabloid")),
         MakePaper(1, 2159, 2794, 6430, kCommon, W("US Letter")), MakePaper(17, 2794, 4318, 6408, kCommon, W("11x17")),
         MakePaper(120, 1270, 1778, 6402, kMappedForm, W("5x7")),
         MakePaper(121, 1270, 1778, 0, kCommon, W("Same as 5x7")), MakePaper(257, 1400, 2200, 0, kUserForm, W("Ours")),
         MakePaper(65535, 910, 960, 0, kCommon, W("Higher")),
         MakePaper(9, 1000, 40000, 0, kCommon, CXString(WideString(40, W('n'))))});
    Expect("a number", both, {1, 5, 6, W("x")}, true, {1, 2159, 2794, W("US Letter")});
    Expect("Tabloid", byNumber, {3, 5, 6, W("x")}, true, {17, 2794, 4318, W("11x17")});
    Expect("one of a mapped form's size", byNumber, {121, 5, 6, W("x")}, true, {120, 1270, 1778, W("Same as 5x7")});
    Expect("a name in another case", byName, {0, 5, 6, W("us LETTER")}, true, {1, 2159, 2794, W("us LETTER")});
    Expect("a form's size, laid across", byNumber, {77, 1778, 1270, W("x")}, true, {120, 1270, 1778, W("5x7")});
    Expect("the custom record is not looked for", byName, {5, 700, 801, W("CUSTOM")}, false, {5, 700, 801, usual});
    Expect("but with its size it stays", byName, {5, 700, 800, W("Custom")}, true, {5, 700, 800, W("Custom")});
    Expect("an unknown name, a known size", byName, {5, 1400, 2200, W("x")}, true, {5, 1400, 2200, W("Ours")});
    Expect("neither number nor size", byNumber, {77, 5, 6, W("x")}, false, {77, 5, 6, usual});
    Expect("custom, of a record's size", byNumber, {256, 1400, 2200, W("x")}, true, {256, 1400, 2200, usual});
    Expect("records' numbers have no sign", byNumber, {-1, 5, 6, W("x")}, false, {-1, 5, 6, usual});
    Expect("more than fits", byNumber, {9, 5, 6, W("x")}, true, {9, 1000, 32767, CXString(WideString(31, W('n')))});
    TestDevmode endless(0);
    std::fill(std::begin(endless.Get()->dmFormName), std::end(endless.Get()->dmFormName), W('n'));
    endless.Get()->dmFields = byName;
    MsCachedDeviceCapabilities capabilities(endless.Get());
    EXPECT_FALSE(XDevmode::NormalizeDevmodePaperSize(printer_.GetHandle(), endless.Get(), capabilities));
}

TEST_P(NormalizeForUser, ReplacesTheUsersFormInASpreadsheet) {
    AddForm(printer_.GetHandle(), W("The User's"), 100000, 200000);  // 119
    const TestPrinter withoutRule(kScript, W("Without the rule"));
    const auto replace = [&](const TestPrinter& printer, const WCHAR* program, SHORT number) {
        TestDevmode devmode(MakePrivateBlock({{2, TextBytes(program)}}));
        devmode.Get()->dmPaperSize = number;
        MsCachedDeviceCapabilities capabilities(devmode.Get());
        XDevmode::NormalizeDevmodePaperSize(printer.GetHandle(), devmode.Get(), capabilities);
        return devmode.Get()->dmPaperSize;
    };
    EXPECT_EQ(replace(printer_, W("excel.exe"), 119), GetParam() ? 1 : 9);
    EXPECT_EQ(replace(printer_, W("Excel.exe"), 119), 119) << "another program";
    EXPECT_EQ(replace(withoutRule, W("excel.exe"), 119), 119);
}

}  // namespace
