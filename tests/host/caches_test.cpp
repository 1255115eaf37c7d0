// The capability caches, the user's forms and custom sizes from the command line.
#include "hostrun.h"

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
