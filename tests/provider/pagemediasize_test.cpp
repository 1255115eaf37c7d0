// Page media size: what a printer's paper records become in the capabilities, in tickets and in DEVMODEs.
#include "boundprovider.h"

#include <support/storedcaches.h>
#include <support/userconventions.h>

#include <mvutil/operatingsystem.h>

#include <cstring>

namespace {

constexpr DWORD kCommon = 25001, kOther = 25002, kDriverCustom = 25003, kMappedForm = 25004, kUserForm = 25005,
                kHidden = 25006, kPostScriptCustom = 25007, kCustom = 25008;

std::vector<_tag_FormsInfoRec> MakePapers() {
    return {MakePaper(1, 2159, 2794, 6430, kCommon, W("Letter")),
            MakePaper(9, 2100, 2970, 6436, kCommon, W("A4")),
            MakePaper(300, 1016, 1524, 6400, kOther, W("Photo")),
            MakePaper(400, 3302, 4877, 6700, kDriverCustom, W("Sheet")),
            MakePaper(401, 3302, 6604, 0, kDriverCustom, W("Yields")),
            MakePaper(256, 2000, 2000, 0, kPostScriptCustom, W("PostScript Custom")),
            MakePaper(1, 2159, 2794, 6430, kMappedForm, W("Letter Form")),
            MakePaper(120, 1270, 1778, 6402, kMappedForm, W("5x7 Form")),
            MakePaper(257, 1400, 2200, 0, kUserForm, W("Ours")),
            MakePaper(401, 1500, 2500, 0, kUserForm, W("Also Ours")),
            MakePaper(402, 2100, 2970, 0, kUserForm, W("Our A4")),
            MakePaper(256, 2159, 2794, 0, kCustom, W("Custom Size"))};
}

std::string MediaSize(const std::string& option, const std::string& width, const std::string& height) {
    const std::string start = option == "psk:PSCustomMediaSize" ? "PS" : "MediaSize";
    return Feature("PageMediaSize",
                   Option(option, (width.empty() ? "" : ScoredProperty(start + "Width", width)) +
                                      (height.empty() ? "" : ScoredProperty(start + "Height", height))));
}

class PageMediaSizeTest : public ProviderTest {
protected:
    PageMediaSizeTest() { StorePapers(office.GetPrinter(), MakePapers()); }
    ~PageMediaSizeTest() override { Application::SetExecutableName(CXString()); }

    std::string Options(const ComPtr<IXMLDOMDocument2>& document) {
        return ValueOf(document, "Feature", "psk:PageMediaSize");
    }
};

TEST_F(PageMediaSizeTest, IsOfferedForEachRecordOnce) {
    const std::string sizes =
        "psk:NorthAmericaLetter psk:ISOA4 psk:NorthAmerica4x6 mk:DriverCustomSize_400_3302x4877 psk:NorthAmerica5x7 "
        "mk:UserForm_257_1400x2200 mk:UserForm_401_1500x2500 mk:UserForm_402_2100x2970";
    const struct {
        const char *program, *custom;
        ULONGLONG flags;
    } cases[] = {
        {"", " psk:CustomMediaSize", 0x400}, {"", " psk:PSCustomMediaSize", 0x200}, {"FormLetter.EXE", "", 0x400}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.custom);
        Application::SetExecutableName(CXString(test.program));
        ProviderProbe::SetCapabilityFlags(*office, test.flags);
        const auto capabilities = office.Complete(MediaSize("psk:Old", "1", "1") + MediaSize("psk:Older", "", ""));
        EXPECT_EQ(Options(capabilities), sizes + test.custom);
        EXPECT_EQ(TextsOf(capabilities, "//psf:Option[@name='psk:ISOA4']//psf:Value"), "A4 210000 297000");
    }
}

TEST_F(PageMediaSizeTest, IsNotOfferedWithARecordThatHasNoName) {
    for (const _tag_FormsInfoRec& bad : {MakePaper(50, 777, 888, 6430, kCommon, W("No such size")),
                                         MakePaper(50, 2159, 2794, 6436, kCommon, W("Another size's value")),
                                         MakePaper(50, 2159, 2794, 6430, kHidden, W("Not for users"))}) {
        StorePapers(office.GetPrinter(), {MakePapers()[0], bad});
        const auto capabilities = office.Complete(MediaSize("psk:Old", "1", "1"));
        EXPECT_EQ(Options(capabilities), "-");
        EXPECT_NE(ValueOf(capabilities, "Feature", "psk:PageMediaType"), "-") << "the other units go on";
    }
}

class PageMediaSizeForUser : public PageMediaSizeTest, public testing::WithParamInterface<bool> {
protected:
    const UserConventions user_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(English, PageMediaSizeForUser, testing::Bool());

TEST_P(PageMediaSizeForUser, IsReadFromTheTicket) {
    struct Size {
        int number, width, length;
        const char* form;
    };
    const Size usual = GetParam() ? Size{1, 2159, 2794, "Letter"} : Size{9, 2100, 2970, "A4"};
    const struct {
        const char *what, *option, *width, *height;
        Size size;
    } cases[] = {
        {"no media size", "", "", "", usual},
        {"by name alone, whatever its namespace", "mk:ISOA4", "", "", {9, 2100, 2970, "A4"}},
        {"the name counts more than the size", "psk:ISOA4", "215900", "279400", {9, 2100, 2970, "A4"}},
        {"by size alone, in whole millimetres", "psk:Foo", "216200", "279100", {1, 2159, 2794, "Letter"}},
        {"by size, the user's form first", "psk:Foo", "210300", "296600", {256, 2100, 2970, "Our A4"}},
        {"nothing known", "psk:Foo", "", "", {256, 0, 0, ""}},
        {"a size of nothing", "psk:Foo", "0", "297000", {256, 0, 0, ""}},
        {"custom, rounded", "psk:CustomMediaSize", "100050", "150051", {256, 1000, 1501, ""}},
        {"custom, longer than a DEVMODE holds", "psk:CustomMediaSize", "100000", "4000000", {256, 1000, 32767, ""}},
        {"custom, wider than a DEVMODE holds", "psk:CustomMediaSize", "4000000", "100000", {256, 32767, 1000, ""}},
        {"custom, of a record's size", "psk:CustomMediaSize", "215900", "279400", {1, 2159, 2794, "Letter"}},
        {"custom without a height", "psk:CustomMediaSize", "210000", "", usual},
        {"PostScript custom of no width", "psk:PSCustomMediaSize", "0", "150000", usual},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmFields = DM_FORMNAME | DM_PAPERLENGTH | DM_COPIES;
        std::fill(std::begin(devmode.Get()->dmFormName), std::end(devmode.Get()->dmFormName), W('x'));
        office.Apply(*test.option ? MediaSize(test.option, test.width, test.height) : "", devmode);
        const DEVMODEW& result = *devmode.Get();
        EXPECT_EQ(result.dmPaperSize, test.size.number);
        EXPECT_EQ(result.dmPaperWidth, test.size.width);
        EXPECT_EQ(result.dmPaperLength, test.size.length);
        EXPECT_EQ(CXString(result.dmFormName), CXString(test.size.form));
        const DWORD dimensions = test.size.number == 256 ? DM_PAPERLENGTH | DM_PAPERWIDTH : 0;
        EXPECT_EQ(result.dmFields, DM_COPIES | DM_PAPERSIZE | dimensions);
    }
}

TEST_F(PageMediaSizeTest, IsWrittenFromTheDevmode) {
    const struct {
        const char* what;
        ULONGLONG flags;
        DWORD fields;
        SHORT number, width, length;
        const char* option;
    } cases[] = {
        {"a form's number", 0, DM_PAPERSIZE, 257, 1, 1, "mk:UserForm_257_1400x2200"},
        {"laid across", 0, DM_PAPERSIZE, 256, 2970, 2100, "psk:ISOA4"},
        {"no such number", 0, DM_PAPERSIZE, 77, 1000, 1500, "psk:CustomMediaSize"},
        {"a number that is not set", 0, 0, 9, 1000, 1500, "psk:CustomMediaSize"},
        {"custom on a PostScript device", 0x200, DM_PAPERSIZE, 256, 1000, 1500, "psk:PSCustomMediaSize"},
    };
    TestDevmode devmode = MakeTestDevmode();
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        ProviderProbe::SetCapabilityFlags(*office, test.flags);
        devmode.Get()->dmFields = test.fields;
        devmode.Get()->dmPaperSize = test.number;
        devmode.Get()->dmPaperWidth = test.width;
        devmode.Get()->dmPaperLength = test.length;
        const DEVMODEW before = *devmode.Get();
        const auto ticket = office.MakeTicket(devmode, MediaSize("psk:Old", "1", "1") + MediaSize("psk:Older", "", "") +
                                                           Parameter("psk:PageMediaSizePSWidth", "9"));
        EXPECT_EQ(std::memcmp(&before, devmode.Get(), sizeof before), 0) << "the DEVMODE is only read";
        EXPECT_EQ(Options(ticket), test.option);
        EXPECT_EQ(ValueOf(ticket, "ParameterInit", "psk:PageMediaSizePSWidth"), test.flags ? "100000" : "-");
    }
    StorePapers(office.GetPrinter(), {});
    const auto ticket = office.MakeTicket(devmode, MediaSize("psk:Old", "1", "1"));
    EXPECT_EQ(Options(ticket), "psk:Old") << "without a record the ticket stays as it was";
}

}  // namespace
