// Page media size: what a printer's paper records become in the capabilities, in tickets and in DEVMODEs.
#include "boundprovider.h"

#include <support/capabilitycaches.h>

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
            MakePaper(256, 2159, 2794, 0, kCustom, W("Custom Size"))};
}

std::string Property(const std::string& name, const std::string& value) {
    return "<psf:ScoredProperty name='psk:" + name + "'><psf:Value xsi:type='xsd:integer'>" + value +
           "</psf:Value></psf:ScoredProperty>";
}
std::string MediaSize(const std::string& option, const std::string& width, const std::string& height) {
    const std::string start = option == "psk:PSCustomMediaSize" ? "PS" : "MediaSize";
    return "<psf:Feature name='psk:PageMediaSize'><psf:Option name='" + option + "'>" +
           (width.empty() ? "" : Property(start + "Width", width)) +
           (height.empty() ? "" : Property(start + "Height", height)) + "</psf:Option></psf:Feature>";
}

class PageMediaSizeTest : public testing::Test {
protected:
    PageMediaSizeTest() { StorePapers(office_.GetPrinter(), MakePapers()); }
    ~PageMediaSizeTest() override { Application::SetExecutableName(CXString()); }

    ComPtr<IXMLDOMDocument2> Complete(const std::string& children = "") {
        const auto capabilities = LoadUsual("PrintCapabilities", children);
        EXPECT_EQ(office_->CompletePrintCapabilities(nullptr, capabilities.Get()), S_OK);
        return capabilities;
    }
    std::string Options(const ComPtr<IXMLDOMDocument2>& document) {
        return ValueOf(document, "Feature", "psk:PageMediaSize");
    }

    TestStore store_;
    BoundProvider office_{kOffice};
};

TEST_F(PageMediaSizeTest, IsOfferedForEachRecordOnce) {
    const std::string sizes =
        "psk:NorthAmericaLetter psk:ISOA4 psk:NorthAmerica4x6 mk:DriverCustomSize_400_3302x4877 psk:NorthAmerica5x7 "
        "mk:UserForm_257_1400x2200 mk:UserForm_401_1500x2500";
    const struct {
        const char *program, *options;
        ULONGLONG flags;
    } cases[] = {
        {"", " psk:CustomMediaSize", 0x400}, {"", " psk:PSCustomMediaSize", 0x200}, {"formletter.exe", "", 0x400}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.options);
        Application::SetExecutableName(CXString(test.program));
        ProviderProbe::SetCapabilityFlags(*office_, test.flags);
        EXPECT_EQ(Options(Complete(MediaSize("psk:Old", "1", "1") + MediaSize("psk:Older", "", ""))),
                  sizes + test.options);
    }
    Application::SetExecutableName(CXString());
    ProviderProbe::SetCapabilityFlags(*office_, 0);
    const std::string text = ContentOf(Complete());
    for (const char* part :
         {"<psf:Option name=\"psk:ISOA4\" constrained=\"psk:None\"><psf:Property name=\"psk:DisplayName\"><psf:Value "
          "xsi:type=\"xsd:string\">A4</psf:Value></psf:Property><psf:ScoredProperty name=\"psk:MediaSizeWidth\">"
          "<psf:Value xsi:type=\"xsd:integer\">210000</psf:Value></psf:ScoredProperty><psf:ScoredProperty "
          "name=\"psk:MediaSizeHeight\"><psf:Value xsi:type=\"xsd:integer\">297000</psf:Value>",
          "<psf:ScoredProperty name=\"psk:MediaSizeHeight\"><psf:ParameterRef "
          "name=\"psk:PageMediaSizeMediaSizeHeight\"/></psf:ScoredProperty></psf:Option></psf:Feature>"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << '\n' << text;
    }
}

TEST_F(PageMediaSizeTest, IsNotOfferedWithARecordThatHasNoName) {
    for (const _tag_FormsInfoRec& bad : {MakePaper(50, 777, 888, 6430, kCommon, W("No such size")),
                                         MakePaper(50, 2159, 2794, 6436, kCommon, W("Another size's value")),
                                         MakePaper(50, 2159, 2794, 6430, kHidden, W("Not for users"))}) {
        StorePapers(office_.GetPrinter(), {MakePapers()[0], bad});
        const auto capabilities = Complete(MediaSize("psk:Old", "1", "1"));
        EXPECT_EQ(Options(capabilities), "-");
        EXPECT_NE(ValueOf(capabilities, "Feature", "psk:PageMediaType"), "-") << "the other units go on";
    }
}

TEST_F(PageMediaSizeTest, IsReadFromTheTicket) {
    struct Size {
        int number, width, length;
        const char* form;
    };
    const bool english = OperatingSystem::UseEnglishPaperSizes();
    const Size usual = english ? Size{1, 2159, 2794, "Letter"} : Size{9, 2100, 2970, "A4"};
    const struct {
        const char *what, *option, *width, *height;
        Size size;
    } cases[] = {
        {"no media size", "", "", "", usual},
        {"by name and size", "psk:ISOA4", "210000", "297000", {9, 2100, 2970, "A4"}},
        {"by name alone, whatever its namespace", "mk:ISOA4", "", "", {9, 2100, 2970, "A4"}},
        {"by a rarer name alone", "psk:NorthAmerica4x6", "", "", {300, 1016, 1524, "Photo"}},
        {"the name counts more than the size", "psk:ISOA4", "215900", "279400", {9, 2100, 2970, "A4"}},
        {"by size alone, in whole millimetres", "psk:Foo", "210300", "296600", {9, 2100, 2970, "A4"}},
        {"a form of the user", "mk:UserForm_257_1400x2200", "140000", "220000", {256, 1400, 2200, "Ours"}},
        {"a size of the driver", "mk:DriverCustomSize_400_3302x4877", "330200", "487700", {256, 3302, 4877, "Sheet"}},
        {"nothing known", "psk:Foo", "", "", {256, 0, 0, ""}},
        {"a size of nothing", "psk:Foo", "0", "297000", {256, 0, 0, ""}},
        {"custom", "psk:CustomMediaSize", "100000", "150000", {256, 1000, 1500, ""}},
        {"custom, rounded", "psk:CustomMediaSize", "100050", "150051", {256, 1000, 1501, ""}},
        {"custom, longer than a DEVMODE holds", "psk:CustomMediaSize", "100000", "4000000", {256, 1000, 32767, ""}},
        {"custom, of a record's size", "psk:CustomMediaSize", "210000", "297000", {9, 2100, 2970, "A4"}},
        {"custom without a height", "psk:CustomMediaSize", "210000", "", usual},
        {"PostScript custom", "psk:PSCustomMediaSize", "100000", "150000", {256, 1000, 1500, ""}},
        {"PostScript custom of no width", "psk:PSCustomMediaSize", "0", "150000", usual},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmFields = DM_FORMNAME | DM_PAPERLENGTH | DM_COPIES;
        std::fill(std::begin(devmode.Get()->dmFormName), std::end(devmode.Get()->dmFormName), W('x'));
        const auto ticket =
            LoadUsual("PrintTicket", *test.option ? MediaSize(test.option, test.width, test.height) : "");
        ASSERT_EQ(office_.ToDevmode(ticket, devmode), S_OK);
        const DEVMODEW& result = *devmode.Get();
        EXPECT_EQ(result.dmPaperSize, test.size.number);
        EXPECT_EQ(result.dmPaperWidth, test.size.width);
        EXPECT_EQ(result.dmPaperLength, test.size.length);
        EXPECT_EQ(CXString(result.dmFormName), CXString(test.size.form));
        const DWORD dimensions = test.size.number == 256 ? DM_PAPERLENGTH | DM_PAPERWIDTH : 0;
        EXPECT_EQ(result.dmFields, DM_COPIES | DM_PAPERSIZE | dimensions);
    }
}

TEST_F(PageMediaSizeTest, OfAFormOfTheUserReplacesAnotherOfThatSize) {
    StorePapers(office_.GetPrinter(), {MakePaper(1, 2159, 2794, 6430, kCommon, W("Letter")),
                                       MakePaper(257, 2159, 2794, 0, kUserForm, W("Ours"))});
    TestDevmode devmode = MakeTestDevmode();
    ASSERT_EQ(
        office_.ToDevmode(LoadUsual("PrintTicket", MediaSize("psk:CustomMediaSize", "215900", "279400")), devmode),
        S_OK);
    EXPECT_EQ(CXString(devmode.Get()->dmFormName), CXString("Ours"));
    ASSERT_EQ(
        office_.ToDevmode(LoadUsual("PrintTicket", MediaSize("psk:NorthAmericaLetter", "215900", "279400")), devmode),
        S_OK);
    EXPECT_EQ(devmode.Get()->dmPaperSize, 1);

    StorePapers(office_.GetPrinter(), {});
    ASSERT_EQ(office_.ToDevmode(LoadUsual("PrintTicket", ""), devmode), S_OK);
    EXPECT_EQ(devmode.Get()->dmPaperSize, 256) << "without records there is no default size to be found";
    EXPECT_EQ(devmode.Get()->dmPaperWidth, 0);
}

TEST_F(PageMediaSizeTest, IsWrittenFromTheDevmode) {
    const struct {
        const char* what;
        DWORD fields;
        SHORT number, width, length;
        const char *option, *width100, *length100;
    } cases[] = {
        {"a number", DM_PAPERSIZE, 9, 1, 1, "psk:ISOA4", "210000", "297000"},
        {"a rarer number", DM_PAPERSIZE, 300, 1, 1, "psk:NorthAmerica4x6", "101600", "152400"},
        {"a form's number", DM_PAPERSIZE, 257, 1, 1, "mk:UserForm_257_1400x2200", "140000", "220000"},
        {"a size of the driver", DM_PAPERSIZE, 256, 3302, 4877, "mk:DriverCustomSize_400_3302x4877", "330200",
         "487700"},
        {"laid across", DM_PAPERSIZE, 256, 2970, 2100, "psk:ISOA4", "210000", "297000"},
        {"custom", DM_PAPERSIZE | DM_PAPERWIDTH, 256, 1000, 1500, "psk:CustomMediaSize", "-", "-"},
        {"no such number", DM_PAPERSIZE, 77, 1000, 1500, "psk:CustomMediaSize", "-", "-"},
        {"a number that is not set", 0, 9, 1000, 1500, "psk:CustomMediaSize", "-", "-"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        TestDevmode devmode = MakeTestDevmode();
        devmode.Get()->dmFields = test.fields;
        devmode.Get()->dmPaperSize = test.number;
        devmode.Get()->dmPaperWidth = test.width;
        devmode.Get()->dmPaperLength = test.length;
        const DEVMODEW before = *devmode.Get();
        const auto ticket = LoadUsual("PrintTicket", MediaSize("psk:Old", "1", "1") + MediaSize("psk:Older", "", "") +
                                                         "<psf:ParameterInit name='psk:PageMediaSizePSWidth'/>");
        ASSERT_EQ(office_.ToTicket(devmode, ticket), S_OK);
        EXPECT_EQ(std::memcmp(&before, devmode.Get(), sizeof before), 0) << "the DEVMODE is only read";
        EXPECT_EQ(Options(ticket), test.option);
        EXPECT_EQ(ValueOf(ticket, "ParameterInit", "psk:PageMediaSizePSWidth"), "-");
        const std::string text = ContentOf(ticket);
        if (*test.width100 != '-') {
            const std::string start = "\"><psf:Value xsi:type=\"xsd:integer\">";
            EXPECT_NE(text.find("\"psk:MediaSizeWidth" + start + test.width100), std::string::npos) << text;
            EXPECT_NE(text.find("\"psk:MediaSizeHeight" + start + test.length100), std::string::npos) << text;
        } else {
            EXPECT_EQ(ValueOf(ticket, "ParameterInit", "psk:PageMediaSizeMediaSizeWidth"), "100000");
            EXPECT_EQ(ValueOf(ticket, "ParameterInit", "psk:PageMediaSizeMediaSizeHeight"), "150000");
        }
    }
}

TEST_F(PageMediaSizeTest, OfThePostScriptDeviceHasItsOwnParameters) {
    ProviderProbe::SetCapabilityFlags(*office_, 0x200);
    TestDevmode devmode = MakeTestDevmode();
    devmode.Get()->dmFields = DM_PAPERSIZE;
    devmode.Get()->dmPaperSize = 256;
    devmode.Get()->dmPaperWidth = 1000;
    devmode.Get()->dmPaperLength = 1500;
    const auto ticket = LoadUsual("PrintTicket", "");
    ASSERT_EQ(office_.ToTicket(devmode, ticket), S_OK);
    EXPECT_EQ(Options(ticket), "psk:PSCustomMediaSize");
    const std::pair<const char*, const char*> parameters[] = {
        {"Width", "100000"}, {"Height", "150000"}, {"WidthOffset", "0"}, {"HeightOffset", "0"}, {"Orientation", "1"}};
    for (const auto& [name, value] : parameters)
        EXPECT_EQ(ValueOf(ticket, "ParameterInit", std::string("psk:PageMediaSizePS") + name), value);

    TestDevmode back = MakeTestDevmode();
    ASSERT_EQ(office_.ToDevmode(ticket, back), S_OK);
    EXPECT_EQ(back.Get()->dmPaperWidth, 1000);
    EXPECT_EQ(back.Get()->dmPaperLength, 1500);

    StorePapers(office_.GetPrinter(), {});
    ASSERT_EQ(office_.ToTicket(devmode, ticket), S_OK);
    EXPECT_EQ(Options(ticket), "psk:PSCustomMediaSize") << "without a record the ticket stays as it was";
}

TEST_F(PageMediaSizeTest, SurvivesTheWayToATicketAndBack) {
    for (const _tag_FormsInfoRec& paper : MakePapers()) {
        if (paper.pageSizeType == kPostScriptCustom) continue;
        SCOPED_TRACE(CXString(paper.name).ToUtf8());
        const bool byDimensions = paper.pageSizeType == kDriverCustom || paper.pageSizeType == kUserForm;
        const int number = byDimensions ? 256 : paper.msPaperId;
        TestDevmode devmode = MakeTestDevmode(), back = MakeTestDevmode();
        devmode.Get()->dmFields = DM_PAPERSIZE | DM_PAPERWIDTH | DM_PAPERLENGTH;
        devmode.Get()->dmPaperSize = static_cast<SHORT>(number);
        // The custom record has another's dimensions; take some of its own.
        devmode.Get()->dmPaperWidth = static_cast<SHORT>(paper.pageSizeType == kCustom ? 1234 : paper.width);
        devmode.Get()->dmPaperLength = static_cast<SHORT>(paper.length);
        const auto ticket = LoadUsual("PrintTicket", "");
        ASSERT_EQ(office_.ToTicket(devmode, ticket), S_OK);
        ASSERT_EQ(office_.ToDevmode(ticket, back), S_OK);
        EXPECT_EQ(back.Get()->dmPaperSize, number);
        EXPECT_EQ(back.Get()->dmPaperWidth, devmode.Get()->dmPaperWidth);
        EXPECT_EQ(back.Get()->dmPaperLength, devmode.Get()->dmPaperLength);
    }
}

}  // namespace
