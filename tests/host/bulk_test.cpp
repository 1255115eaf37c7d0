// Many printers at once: lists of them, what becomes of a bad line, all or none, halves, and a file for each printer.
#include "hostrun.h"

#include <subsystem/hosterror.h>
#include <subsystem/hosttext.h>
#include <subsystem/printerfilename.h>
#include <subsystem/printerlistfile.h>

#include <algorithm>

namespace {

using namespace std::string_literals;

// Each entry as "line=name|product|port" or "line!fault"; the refusal of a file that is no list.
std::string Read(const std::string& bytes, bool wantsProduct = true) {
    std::string text;
    try {
        for (const PrinterListEntry& entry : ReadPrinterList(bytes, wantsProduct)) {
            text += (text.empty() ? "" : "; ") + std::to_string(entry.line);
            text += entry.fault.empty() ? "=" + ToUtf8(entry.name) + "|" + entry.product + "|" + ToUtf8(entry.port)
                                        : "!" + entry.fault;
        }
    } catch (const InputError& error) {
        return "refused: " + std::string(error.what()).substr(0, 30);
    }
    return text;
}

TEST(PrinterList, ReadsLinesAndJudgesEachByItself) {
    const std::string noList = "refused: the list names no printer; the";
    const struct {
        std::string bytes, entries;
    } rows[] = {
        {"name,product\nA,p\nB,q\n", "2=A|p|; 3=B|q|"},
        {"\xEF\xBB\xBFPort,product,name\r\nP:,p,A\r\n\r\n,q,B", "2=A|p|P:; 4=B|q|"},
        {"\"name\",\"product\"\n\"a \"\"b\"\", c\", p\n", "2=a \"b\", c| p|"},
        {"{\"product\":\"p\",\"name\":\"\\u00c4\"}\n{\"name\":\"B\",\"product\":\"q\",\"port\":\"P:\"}",
         "1=\u00c4|p|; 2=B|q|P:"},
        {"name,product\n\"A,p\nB\"x,p\n\"C\"x,p\nD,p\n",
         "2!a quote is not closed; 3!a quote stands inside a field that does not begin with one; "
         "4!something follows a closing quote; 5=D|p|"},
        {"name,product\nA\n,p\nB,\nC,p,x\n",
         "2!it has 1 fields and the first line 2; 3!it has no name; 4!it has no product; "
         "5!it has 3 fields and the first line 2"},
        {"name,product\nA,p\n\na,p\n", "2=A|p|; 4!the printer 'a' is on line 2 already"},
        {"name,product\nA\0B,p\nB,p\0\n\xFF,p\n"s,
         "2!its name holds a control character; 3!its product holds a control character; 4!it is no UTF-8 text"},
        {"name,product\n" + std::string(5000, 'x') + ",p\n", "2!its name has more than 4096 bytes"},
        {"{\"name\":1}\n{\"name\":\"A\",\"name\":\"B\"}\n[]\n{\"x\":\"\"}\n{\"name\":{}}\n{",
         "1!the value of 'name' is no text; 2!the key 'name' is there twice; 3!it is no JSON object; "
         "4!'x' is no key; the keys are name, product and port; 5!a value is no text; 6!it is no JSON at its "
         "character 2"},
        {"", noList},
        {"name,product\n", noList},
        {"name,location\nA,p\n", "refused: the list's first line is bad: "},
        {"name,name\nA,p\n", "refused: the list's first line is bad: "},
        {"name\nA\n", "refused: the list has no column 'produc"},
    };
    for (const auto& row : rows) EXPECT_EQ(Read(row.bytes), row.entries) << row.bytes.substr(0, 80);
    EXPECT_EQ(Read("name\nA\n", false), "2=A||") << "the names alone";
}

TEST(PrinterFileName, IsPortableAndAnotherOneForEachPrinter) {
    const struct {
        WideString printer;
        std::string file;
    } rows[] = {
        {W("Press 2 (hall)"), "Press 2 (hall).x"},
        {W(" ..a/b\\c:d*?\"<>|%~."), "%20..a%2Fb%5Cc%3Ad%2A%3F%22%3C%3E%7C%25%7E%2E.x"},
        {W("con.1"), "%63on.1.x"},
        {W("COM7"), "%43OM7.x"},
        {W("Console"), "Console.x"},
        {W("\u00c4\u6f22"), "\u00c4\u6f22.x"},
        {WideString(201, W('n')), std::string(200, 'n') + "~d6d4f3db.x"},
    };
    for (const auto& row : rows) EXPECT_EQ(MakePrinterFileName(row.printer, ".x"), row.file);
    EXPECT_NE(MakePrinterFileName(WideString(1, WCHAR(0xD800)), ""),
              MakePrinterFileName(WideString(1, WCHAR(0xD801)), ""));
    const std::string longest = MakePrinterFileName(WideString(219, W('\u6f22')), "");
    EXPECT_LE(longest.size(), 210u);
    EXPECT_TRUE(ToWide(longest)) << "cut between characters";
}

class ManyPrinters : public HostRun {
protected:
    static constexpr const char* kList =
        "name,product\nA,press8434\nB!,press8434\n\"C \"\"q\"\"\",office8430\nD,none\na,press8434\nE,press8434\n";

    std::string List() const { return Run({"printer", "list"}).out; }
    std::size_t Count() const {
        const std::string list = List();
        return static_cast<std::size_t>(std::count(list.begin(), list.end(), '\n'));
    }
};

TEST_F(ManyPrinters, AreAddedButForBadLinesAndRemovedAgain) {
    const Outcome added = Run({"printer", "add", "--from", Write("list.csv", kList)});
    EXPECT_EQ(added.status, 1);
    EXPECT_EQ(added.out, "3 of 6 printers added; 3 not (lines 3, 5 to 6)\n");
    for (const char* line :
         {"line 3: The printer 'B!' ", "line 5: there is no product 'none'", "line 6: the printer 'a'"})
        EXPECT_NE(added.err.find(line), std::string::npos) << line << added.err;
    EXPECT_EQ(List(),
              "A  (Morvane Press 8434, port MV_1:)\nC \"q\"  (Morvane Office 8430, port MV_2:)\nE  (Morvane Press "
              "8434, port MV_3:)\n");
    Do({"printer", "add", "Single", "--product", "press8434"});
    EXPECT_EQ(Do({"caches", "show", "--printer", "E"}), Do({"caches", "show", "--printer", "Single"}))
        << "written as the first printer of its driver has them";

    EXPECT_EQ(Do({"caches", "rebuild", "--all"}), "4 printers rebuilt\n");
    EXPECT_EQ(Do({"capabilities", "--all-printers", "-o", File("all")}), "4 printers written\n");
    EXPECT_EQ(Do({"ticket", "--all-printers", "-o", File("tickets")}), "4 printers written\n");
    EXPECT_EQ(Read("all/C %22q%22.xml"), Do({"capabilities", "--printer", "C \"q\""}));
    Do({"devmode", "new", "--printer", "A", "-o", File("a.bin")});
    EXPECT_EQ(Read("tickets/A.xml"), Do({"ticket", "--printer", "A", "--devmode", File("a.bin")}));

    EXPECT_EQ(Run({"printer", "remove", "--from", File("list.csv")}).out,
              "3 of 6 printers removed; 3 not (lines 3, 5 to 6)\n");
    EXPECT_EQ(Do({"printer", "remove", "--all"}), "1 printer removed\n");
    Write("list.csv", "name,product,port\nA,press8434," + std::string(256, 'p') + "\nB,press8434,\n");
    EXPECT_EQ(Run({"printer", "add", "--from", File("list.csv")}).out, "1 of 2 printers added; 1 not (line 2)\n")
        << "the driver that went with the first";
}

TEST_F(ManyPrinters, AreAllAddedOrNoneWhenThatIsAskedFor) {
    Do({"printer", "add", "Old", "--product", "press8434"});
    const std::string before = List();
    const std::string lists[] = {kList, "name,product\nA,press8434\nB,none\n",
                                 "name,product\nA,press8434\nold,press8434\n"};
    for (const std::string& list : lists) {
        const Outcome outcome = Run({"printer", "add", "--atomic", "--from", Write("list.csv", list)});
        EXPECT_EQ(outcome.status, 1) << list;
        EXPECT_EQ(outcome.out.substr(0, 5), "0 of ") << outcome.out;
        EXPECT_EQ(List(), before) << list;
    }
    EXPECT_EQ(
        Do({"printer", "add", "--atomic", "--from", Write("list.csv", "name,product\nA,press8434\nB,office8430")}),
        "2 printers added\n");
    EXPECT_EQ(Run({"printer", "remove", "--atomic", "--from", Write("names.csv", "name\nA\nNone\n")}).status, 1);
    EXPECT_EQ(Count(), 3u);
}

TEST_F(ManyPrinters, HalvesArePassedOverAndCleared) {
    Do({"printer", "add", "Whole", "--product", "press8434"});
    Do({"printer", "add", "Half", "--product", "press8434"});
    Do({"registry", "import",
        Write(
            "half.reg",
            "Windows Registry Editor Version 5.00\r\n\r\n"
            "[HKEY_LOCAL_MACHINE\\Software\\Morvane\\Printer Driver\\Half Printers\\half]\r\n\"Port\"=\"MV_2:\"\r\n"
            "[HKEY_LOCAL_MACHINE\\Software\\Morvane\\Printer Driver\\Half Printers\\Gone]\r\n\"Port\"=\"MV_3:\"\r\n")});
    const Outcome list = Run({"printer", "list"});
    EXPECT_EQ(list.out, "Whole  (Morvane Press 8434, port MV_1:)\n");
    for (const char* half : {"'half' is half there", "'Gone' is half there", "'printer remove'"})
        EXPECT_NE(list.err.find(half), std::string::npos) << half << list.err;
    EXPECT_EQ(Do({"capabilities", "--all-printers", "-o", File("all")}), "1 printer written\n");
    for (const char* name : {"HALF", "gone"}) {
        EXPECT_EQ(Run({"printer", "add", name, "--product", "press8434"}).status, 2) << name;
        Do({"printer", "remove", name});
        Do({"printer", "add", name, "--product", "press8434"});
    }
    EXPECT_EQ(Do({"printer", "list"}),
              "gone  (Morvane Press 8434, port MV_3:)\nHALF  (Morvane Press 8434, port MV_2:)\n"
              "Whole  (Morvane Press 8434, port MV_1:)\n");
}

TEST_F(ManyPrinters, WithoutCachesHaveTheProductsCapabilities) {
    Do({"printer", "add", "A", "--product", "press8434"});
    Do({"printer", "form", "add", "Ticket", "--width", "80", "--length", "200", "--printer", "A"});
    const std::string whole = Do({"capabilities", "--printer", "A"});
    const std::string key = "Software\\Morvane\\Printer Driver\\Printers\\MV_1:";
    for (const std::string& change :
         {"[HKEY_LOCAL_MACHINE\\" + key + "]\r\n\"XPaperCaps\"=hex:00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00",
          "[-HKEY_LOCAL_MACHINE\\" + key + "]"}) {
        Do({"registry", "import", Write("c.reg", "Windows Registry Editor Version 5.00\r\n\r\n" + change + "\r\n")});
        const Outcome outcome = Run({"capabilities", "--printer", "A"});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out, whole) << change;
        EXPECT_NE(outcome.err.find("'caches rebuild' makes them"), std::string::npos) << outcome.err;
        EXPECT_EQ(Run({"capabilities", "--all-printers", "-o", File("all")}).err, outcome.err);
        EXPECT_EQ(Read("all/A.xml"), whole);
    }
    EXPECT_NE(Do({"caches", "show", "--printer", "A"}).find("XPaperCaps: none"), std::string::npos)
        << "the store is as it was";
}

}  // namespace
