// The capability caches, the user's forms and custom sizes from the command line.
#include "hostrun.h"

#include <support/userconventions.h>

#include <algorithm>

namespace {

class CachesCommands : public HostRun {
protected:
    CachesCommands() { Do({"printer", "add", "Press", "--product", "press8434"}); }
    std::string Show(const std::string& printer = "Press") const {
        return Do({"caches", "show", "--printer", printer});
    }
    Outcome Form(const std::vector<std::string>& words) const {
        std::vector<std::string> arguments = {"printer", "form"};
        arguments.insert(arguments.end(), words.begin(), words.end());
        arguments.insert(arguments.end(), {"--printer", "Press"});
        return Run(arguments);
    }
};

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST_F(CachesCommands, AnAddedPrinterHasItsCaches) {
    const std::string shown = Show();
    for (const char* line :
         {"XPaperCaps: 51 records\n", "  A4: number 9, form 9, 2100 x 2970 tenths of a millimetre",
          "XBinCaps: 6 records\n", "  Bypass Tray: number 4, value 7151\n", "XMediaCaps: 34 records\n",
          "  Glossy: number 3\n", "  SRA3, Glossy\n", "XDependentFilesCaps: 5 records\n", "  mvwftuC0.dll\n",
          "  most copies: 9999\n", "XStaple: staples\n", "  600 x 600 dpi: 600 x 600, the default\n"})
        EXPECT_TRUE(Has(shown, line)) << line << shown;
}

// A product whose every line shows another rule: papers that are renamed, turned, square, hidden, of a fraction or of
// another's size; trays with custom sizes and numbers of their own; media types of each kind.
constexpr const char* kOddProduct = R"(model = "Morvane Odd"
controller_family = 8434
driver_version = 7
workflow_library = "mvwftuC0.dll"
dependent_files = ["mvutilC0.dll", "mvcoreC0.dll"]
papers = [
    { size = "ISOA3", units = "in" },
    { size = "ISOA4", name = "Sheet", form = "A4" },
    { size = "ISOA4Rotated", number = 77 },
    { size = "NorthAmericaLegal" },
    { size = "NorthAmericaLetter", units = "mm" },
    { name = "Square", number = 9500, value = 6710, width = 150000, length = 150000 },
    { name = "Hidden", number = 9501, value = 6711, width = 160000, length = 170000, type = 25006 },
    { name = "Fraction", number = 9502, value = 6712, width = 100050, length = 200051 },
    { name = "Same as A3", number = 9503, value = 6713, width = 297000, length = 420000 },
    { size = "CustomMediaSize" },
]
trays = [
    { number = 15, value = 5001, name = "Automatic" },
    { number = 1, value = 7147, name = "One", holds = { size = "CustomMediaSize", width = 297000, length = 420000, media = 9636 } },
    { number = 2, value = 7123, name = "Two", holds = { size = "CustomMediaSize", width = 123400, length = 254000 } },
    { number = 500, value = 7140, name = "Odd", holds = { size = "Square", media = 6800 } },
    { number = 501, value = 7141, name = "Empty" },
]
media_types = [
    { value = 6800, name = "Plain" },
    { value = 6840, name = "Custom 1" },
    { value = 9636, name = "House Stock" },
]
resolutions = [
    { x = 200, y = 200, name = "Fax" },
    { x = 1200, y = 600, default = true, name = "Fine" },
]
[capabilities]
1984 = 0x400
[features]
43 = { minimum = 1, maximum = 32767, default = 1 }
45 = { values = [5410, 5411], default = 5411 }
46 = { values = [5420, 5422], default = 5422 }
172 = { minimum = 100001, maximum = 330299, default = 215900 }
173 = { minimum = 150010, maximum = 660499, default = 279400 }
210 = {}
247 = { values = [5001, 7730], default = 5001 }
248 = { minimum = 0, maximum = 9000000, default = 65536 }
249 = { minimum = 0, maximum = 999, default = 55 }
250 = { minimum = 0, maximum = 999, default = 44 }
251 = { values = [7740, 7741], default = 7741 }
252 = { values = [7720, 7721], default = 7720 }
477 = {}
[devmode]
dmPaperSize = 9500
)";

constexpr const char* kOddCaches = R"(XPaperCaps: 9 records
  Letter: number 1, form 1, 2159 x 2794 tenths of a millimetre, value 6430, units 7491, type 25001
  Sheet: number 9, form 0, 2100 x 2970 tenths of a millimetre, value 6436, units 7491, type 25001
  Legal: number 5, form 5, 2159 x 3556 tenths of a millimetre, value 6421, units 7492, type 25001
  A3: number 8, form 8, 2970 x 4200 tenths of a millimetre, value 6446, units 7492, type 25001
  Square: number 9500, form 0, 1500 x 1500 tenths of a millimetre, value 6710, units 7491, type 25003
  Fraction: number 9502, form 0, 1000 x 2001 tenths of a millimetre, value 6712, units 7491, type 25003
  Same as A3: number 9503, form 0, 2970 x 4200 tenths of a millimetre, value 6713, units 7491, type 25003
  A4: number 9, form 9, 2100 x 2970 tenths of a millimetre, value 6436, units 7491, type 25004
  Custom Size: number 256, form 256, 2100 x 2970 tenths of a millimetre, value 6731, units 7491, type 25008
XBinCaps: 5 records
  Automatically Select: number 15, value 5001
  One: number 1, value 7147
  Two: number 2, value 7123
  Odd: number 500, value 7140
  Empty: number 501, value 7141
XMediaCaps: 3 records
  Plain: number 1
  Custom 1: number 6840
  House Stock: number 9636
XMediaReady: 4 records
  A3, House Stock
  Same as A3, House Stock
  123.4 x 254.0 mm, any media type
  Square, Plain
XDependentFilesCaps: 3 records
  mvutilC0.dll
  mvcoreC0.dll
  mvwftuC0.dll
XDevCaps: valid 0x1FF
  collates: 1
  prints colour: 1
  most copies: 32767
  prints on both sides: 1
  memory in KiB: 65536
  pages a minute: 55
  print rate: 44
  unit of the print rate: 7741
  smallest page: 1001 x 1501 tenths of a millimetre
  largest page: 3302 x 6604 tenths of a millimetre
XStaple: staples
XResolutions: 2 records
  200 x 200 dpi: 200 x 200
  1200 x 600 dpi: 1200 x 600, the default
)";

TEST_F(CachesCommands, HoldWhatTheProductSays) {
    const UserConventions user(false);
    Do({"printer", "add", "Odd", "--product", Write("odd.toml", kOddProduct)});
    EXPECT_EQ(Show("Odd"), kOddCaches);
}

TEST_F(CachesCommands, FormsAndCustomSizesReachThePrintersThatOfferThem) {
    Do({"printer", "add", "Office", "--product", "office8430"});
    const std::string before = Show("Office");
    EXPECT_EQ(Form({"add", "Ticket", "--width", "80.5", "--length", "200"}).status, 0);
    Do({"printer", "customsize", "add", "Mine", "--width", "100", "--length", "150.25", "--metric"});
    for (const char* printer : {"Press", "Office"}) {
        EXPECT_TRUE(Has(Show(printer), "Ticket: number 119, form 119, 805 x 2000 tenths of a millimetre")) << printer;
        EXPECT_TRUE(Has(Show(printer), ", form 0, 1000 x 1502 tenths of a millimetre")) << printer;
    }
    EXPECT_EQ(Form({"remove", "Ticket"}).status, 0);
    Do({"printer", "customsize", "remove", "Mine"});
    EXPECT_EQ(Show("Office"), before);
}

TEST_F(CachesCommands, ACustomSizesNumberSelectsIt) {
    Do({"printer", "add", "Office", "--product", "office8430"});
    Do({"printer", "add", "Script", "--product", "script8432"});
    Do({"printer", "customsize", "add", "Mine", "--width", "111.1", "--length", "222.2"});
    for (const std::string printer : {"Press", "Office", "Script"}) {
        const std::string shown = Show(printer), start = "  Mine: number ";
        const std::string number = shown.substr(shown.find(start) + start.size(), 5);
        const auto make = [&](const std::string& file, const std::string& paper) {
            Do({"devmode", "new", "--printer", printer, "-o", File(file), "--set", "dmPaperSize=" + paper});
        };
        make("mine.bin", number);
        make("back.bin", "9");
        Do({"ticket", "--printer", printer, "--devmode", File("mine.bin"), "-o", File("mine.xml")});
        EXPECT_TRUE(Has(Read("mine.xml"), ":DriverCustomSize_" + number + "_1111x2222\"")) << printer << number;
        Do({"apply", "--printer", printer, "--ticket", File("mine.xml"), "--devmode", File("back.bin"), "-o",
            File("back.bin")});
        const std::string back = Do({"devmode", "show", File("back.bin"), "--json"});
        for (const char* field : {"\"dmPaperSize\": 256", "\"dmPaperWidth\": 1111", "\"dmPaperLength\": 2222"})
            EXPECT_TRUE(Has(back, field)) << printer << field << back;
    }
}

TEST_F(CachesCommands, PapersThatCannotBeAreRefusedAndChangeNothing) {
    EXPECT_EQ(Form({"add", "Ticket", "--width", "80", "--length", "200"}).status, 0);
    Do({"printer", "customsize", "add", "Mine", "--width", "80", "--length", "200"});
    const std::string before = Show();
    const std::string longName(64, 'x');
    const std::vector<std::vector<std::string>> forms = {{"add", "Ticket", "--width", "80", "--length", "200"},
                                                         {"add", "A4", "--width", "80", "--length", "200"},
                                                         {"add", longName, "--width", "80", "--length", "200"},
                                                         {"add", "New", "--width", "nan", "--length", "200"},
                                                         {"add", "New", "--width", "80", "--length", "3277"},
                                                         {"add", "New", "--width", "80mm", "--length", "200"},
                                                         {"remove", "A4"},
                                                         {"remove", "None"}};
    for (const auto& words : forms) {
        const Outcome outcome = Form(words);
        EXPECT_EQ(outcome.status, 2) << words[1];
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    for (const char* name : {"Mine", "a\\b", longName.c_str()})
        EXPECT_EQ(Run({"printer", "customsize", "add", name, "--width", "9", "--length", "9"}).status, 2) << name;
    EXPECT_EQ(Run({"printer", "customsize", "remove", "None"}).status, 2);
    EXPECT_EQ(Run({"caches", "rebuild", "--printer", "None"}).status, 2);
    EXPECT_EQ(Show(), before);
}

TEST_F(CachesCommands, DamageIsToldAndARebuildMendsIt) {
    const std::string before = Show();
    const std::string key = "[HKEY_LOCAL_MACHINE\\Software\\Morvane\\Printer Driver\\Printers\\MV_1:]\r\n";
    const struct {
        const char* value;
        const char* told;
    } rows[] = {
        {"\"XMediaCaps\"=hex:01,02,03", "XMediaCaps: damaged: it has 3 bytes and needs 8\n"},
        {"\"XBinCaps\"=hex:01,00,00,00,00,00,00,00", "XBinCaps: damaged: its check word is not that of its 8 bytes\n"},
        {"\"XPaperCaps\"=hex:01", "XPaperCaps: damaged: it has 1 byte"},
        {"\"XMediaReady\"=hex:", "XMediaReady: damaged: it has 0 bytes"},
        {"\"XDependentFilesCaps\"=hex:01,00,00,00,00,00,00,00", "XDependentFilesCaps: damaged: its check word"},
        {"\"XResolutions\"=hex:00", "XResolutions: damaged: it has 1 byte"},
        {"\"XDevCaps\"=dword:00000007", "XDevCaps: damaged: it has 4 bytes"},
        {"\"XStaple\"=-", "XStaple: none\n"},
    };
    for (const auto& row : rows) {
        Do({"registry", "import",
            Write("damage.reg", "Windows Registry Editor Version 5.00\r\n\r\n" + key + row.value + "\r\n")});
        EXPECT_TRUE(Has(Show(), row.told)) << Show();
    }
    Do({"caches", "rebuild", "--printer", "Press"});
    EXPECT_EQ(Show(), before);
}

}  // namespace
