// Command lines: what they print, their exit statuses, and what bad input leaves behind.
#include "hostrun.h"

namespace {

constexpr const char* kTicket =
    "<psf:PrintTicket xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework' "
    "xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords' version='1'/>";

class Help : public HostRun {
protected:
    // Asks a command for its help, then each command that this lists; how many there are.
    int Walk(std::vector<std::string> command) const {
        std::string usage = "\nUsage: mvpthost";
        for (const std::string& word : command) usage += " " + word;
        command.push_back("--help");
        std::istringstream help(Do(command));
        EXPECT_NE(help.str().find(usage + " [OPTIONS]"), std::string::npos) << usage << help.str();
        EXPECT_NE(help.str()[0], '\n') << usage << " says nothing of what it does";
        int count = 1;
        std::string line, description;
        while (std::getline(help, line) && line != "Subcommands:") {
        }
        while (help >> command.back() && std::getline(help, description)) {
            EXPECT_NE(description.find_first_not_of(' '), std::string::npos) << usage << " " << command.back();
            count += Walk(command);
        }
        return count;
    }
};

TEST_F(Help, IsThereForEveryCommand) {
    EXPECT_GT(Walk({}), 25);
    EXPECT_FALSE(Exists("store"));
}

// One sentence on standard error, nothing on standard output, no new file.
TEST_F(HostRun, BadInputIsOneSentenceAndChangesNothing) {
    Do({"printer", "add", "P", "--product", "press8434"});
    Do({"devmode", "new", "--printer", "P", "-o", File("good.bin")});
    const std::string good = Read("good.bin");
    Write("ticket.xml", kTicket);
    Write("foreign.xml", "<PrintTicket xmlns='urn:x'/>");
    Write("short.bin", good.substr(0, 70));
    Write("cut.bin", good.substr(0, good.size() - 1));
    Write("malformed.xml", "<psf:PrintTicket>");
    Write("dtd.xml", std::string("<!DOCTYPE x [<!ENTITY e 'x'>]>") + kTicket);
    Write("bad.toml", "model = 1\n");
    Write("bad.reg", "Windows Registry Editor Version 5.00\n\nnonsense\n");
    const std::string out = File("new");

    struct Case {
        std::vector<std::string> arguments;
        const char* words;  // what the sentence has to say
    };
    const std::vector<Case> cases = {
        {{}, "subcommand"},
        {{"nonsense"}, "'nonsense' is no command"},
        {{"printer", "nonsense"}, "nonsense"},
        {{"ticket", "--printer", "P"}, "--devmode"},
        {{"printer", "add", "Q", "--product", "nonsense"}, "press8434"},
        {{"printer", "add", "Q", "--product", File("bad.toml")}, "bad.toml"},
        {{"printer", "show", "Q"}, "no printer 'Q'"},
        {{"devmode", "new", "--printer", "Q", "-o", out}, "no printer 'Q'"},
        {{"devmode", "new", "--printer", "P", "-o", out, "--set", "dmCopies=32768"}, "dmCopies"},
        {{"devmode", "new", "--printer", "P", "-o", out, "--set", "dmCopies"}, "NAME=VALUE"},
        {{"devmode", "new", "--printer", "P", "-o", out, "--set", "dmNonsense=1"}, "dmNonsense"},
        {{"devmode", "new", "--printer", "P", "-o", out, "--set", "dmSize=1"}, "dmSize"},
        {{"devmode", "new", "--printer", "P", "-o", out, "--set", "dmFormName=" + std::string(32, 'x')}, "31"},
        {{"devmode", "new", "--printer", "P", "-o", out, "--attribute", "477/x=1"}, "477/x"},
        {{"devmode", "new", "--printer", "P", "-o", out, "--attribute", "286=maybe"}, "true or false"},
        {{"devmode", "new", "--printer", "P", "-o", out, "--attribute", "1/2/3/4/5/6/7/8/9/10/11=1"}, "deep"},
        {{"devmode", "show", File("short.bin")}, "too few"},
        {{"devmode", "show", File("cut.bin")}, "cut short"},
        {{"devmode", "show", File("absent")}, "absent"},
        {{"ticket", "--printer", "P", "--devmode", File("cut.bin"), "-o", out}, "cut short"},
        {{"ticket", "--printer", "P", "--devmode", File("good.bin"), "--in", File("malformed.xml"), "-o", out},
         "malformed.xml"},
        {{"apply", "--printer", "P", "--devmode", File("good.bin"), "--ticket", File("dtd.xml"), "-o", out}, "dtd.xml"},
        {{"apply", "--printer", "P", "--devmode", File("good.bin"), "--ticket", ""}, "--ticket"},
        {{"capabilities", "--printer", "P", "--in", File("malformed.xml"), "-o", out}, "malformed.xml"},
        {{"capabilities", "--printer", "P", "--in", File("ticket.xml"), "-o", out},
         "root is PrintTicket; a PrintCapabilities"},
        {{"validate", "--printer", "P", "--ticket", File("malformed.xml"), "-o", out}, "malformed.xml"},
        {{"validate", "--printer", "P", "--ticket", File("foreign.xml"), "-o", out},
         "root is PrintTicket of another framework (urn:x); a PrintTicket"},
        {{"registry", "import", File("bad.reg")}, "line 3"},
    };
    const std::size_t files = CountFiles();
    for (const Case& c : cases) {
        const Outcome outcome = Run(c.arguments);
        const std::string command = testing::PrintToString(c.arguments);
        EXPECT_EQ(outcome.status, 2) << command << outcome.err;
        EXPECT_EQ(outcome.out, "") << command;
        EXPECT_NE(outcome.err.find(c.words), std::string::npos) << command << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << command << outcome.err;
        EXPECT_EQ(CountFiles(), files) << command;
    }
    EXPECT_EQ(Do({"printer", "list"}).find('Q'), std::string::npos);
}

TEST_F(HostRun, AStoreThatIsNotThereIsMadeByPrinterAddAlone) {
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"printer", "list"}, {"printer", "remove", "P"}, {"registry", "export", File("a")}}) {
        const Outcome outcome = Run(command);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_NE(outcome.err.find("there is no store in"), std::string::npos) << outcome.err;
    }
    EXPECT_EQ(CountFiles(), 0u);
}

TEST_F(HostRun, PrintersComeAndGo) {
    Do({"printer", "add", "Colour press", "--product", "press8434"});
    Do({"printer", "add", "Büro", "--product", "office8430", "--port", "FILE7"});
    const std::string shown = Do({"printer", "show", "Büro"});
    for (const char* word :
         {"Morvane Office 8430", "office8430.toml", "FILE7", "8430\n", "mvwf", "4 (complete)", "0x001"})
        EXPECT_NE(shown.find(word), std::string::npos) << word << " in " << shown;

    // A port keeps the caches of one product.
    EXPECT_NE(Run({"printer", "add", "Third", "--product", "press8434", "--port", "FILE7"}).status, 0);
    EXPECT_NE(Run({"printer", "add", "Büro", "--product", "office8430"}).status, 0);
    Do({"printer", "remove", "Colour press"});
    EXPECT_EQ(Do({"printer", "list"}), "Büro  (Morvane Office 8430, port FILE7)\n");
    Do({"printer", "remove", "BÜRO"});
    EXPECT_EQ(Do({"printer", "list"}), "");
}

TEST_F(HostRun, ProductsAreListedWithFamilyAndCapabilityWord) {
    const std::string list = Do({"product", "list"});
    for (const char* word : {"press8434.toml  8434", "office8430.toml  8430", "script8432.toml  8432"})
        EXPECT_NE(list.find(word), std::string::npos) << word << " in " << list;
}

}  // namespace
