// Why a setting changed, the forms in which DEVMODEs and tickets arrive, and losses that are reported.
#include "hostrun.h"

#include <subsystem/driverdata.h>

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

std::string Replace(std::string text, const std::string& part, const std::string& by) {
    const std::size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

// The row that is wanted: its verdict, and parts of what stands in it.
struct Row {
    const char *setting, *verdict, *after, *reason;
};

class ExplainRun : public HostRun {
protected:
    void Add(const std::string& product) const { Do({"printer", "add", "P", "--product", product}); }
    std::string Make(const std::string& name, std::vector<std::string> settings) const {
        settings.insert(settings.begin(), {"devmode", "new", "--printer", "P", "-o", File(name)});
        Do(settings);
        return File(name);
    }
    Json Explain(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"explain", "--printer", "P", "--json"});
        Json rows = Json::parse(Do(arguments));
        for (const Json& row : rows) EXPECT_NE(row["reason"], "") << row;
        return rows;
    }
    static void Expect(const Json& rows, const Row& wanted) {
        for (const Json& row : rows) {
            const auto holds = [&](const char* key, const char* part) {
                return row[key].get<std::string>().find(part) != std::string::npos;
            };
            if (row["setting"] == wanted.setting && row["verdict"] == wanted.verdict && holds("after", wanted.after) &&
                holds("reason", wanted.reason))
                return;
        }
        ADD_FAILURE() << "no row " << wanted.setting << ", " << wanted.verdict << ", " << wanted.reason << " in "
                      << rows.dump(1);
    }
};

TEST_F(ExplainRun, TellsWhatBecameOfADevmode) {
    Add("press8434");
    const struct {
        std::vector<std::string> settings;
        Row row;
    } cases[] = {
        {{"--set", "dmScale=50"}, {"Scale", "lost", "100 %", "dmScale"}},
        {{"--set", "dmPaperSize=9999"}, {"Paper size", "lost", "", "no such paper"}},
        {{"--set", "dmPaperSize=9999", "--set", "dmPaperWidth=2100", "--set", "dmPaperLength=2970"},
         {"Paper size", "changed", "A4, 210 x 297 mm", "another paper of its size"}},
        {{"--set", "dmPaperSize=3", "--set", "dmPaperWidth=2159", "--set", "dmPaperLength=2794"},
         {"Paper size", "kept", "279.4 x 431.8 mm", "NorthAmerica11x17"}},
        {{"--set", "dmPrintQuality=-4"}, {"Resolution", "changed", "600 x 600 dpi", "the printer's own resolution"}},
        {{"--set", "dmICMIntent=1"}, {"Rendering intent", "kept", "business graphics", "BusinessGraphics"}},
        {{"--set", "dmDuplex=3"}, {"Duplex", "kept", "short edge", "TwoSidedShortEdge"}},
        {{"--attribute", "PIN=12345"}, {"PIN (driver setting)", "kept", "****", "driver data"}},
    };
    for (const auto& [settings, row] : cases) Expect(Explain({"--devmode", Make("d.bin", settings)}), row);

    // A DEVMODE without a setting of its own is explained without any loss, on every product.
    for (const char* product : {"press8434", "office8430", "script8432"}) {
        Do({"printer", "remove", "P"});
        Add(product);
        for (const Json& row : Explain({"--devmode", Make("fresh.bin", {})})) EXPECT_EQ(row["verdict"], "kept") << row;
    }

    std::string bytes = Read("fresh.bin");
    bytes[bytes.size() - 1] ^= 1;
    Expect(Explain({"--devmode", Write("damaged.bin", bytes)}), {"Driver data", "lost", "", "its checksum is"});
    bytes = Replace(Read("fresh.bin"), "1DVM", "9DVM");
    Expect(Explain({"--devmode", Write("foreign.bin", bytes)}), {"Driver data", "lost", "", "another driver made it"});

    // A parameter of the core driver's that the replaced paper size takes along.
    const std::string ticket = Do({"ticket", "--printer", "P", "--devmode", File("fresh.bin")});
    const std::string orphan =
        "<psf:ParameterInit name=\"psk:PageCopies\"><psf:Value xsi:type=\"xsd:integer\">3</psf:Value>"
        "</psf:ParameterInit></psf:PrintTicket>";
    Write("core.xml", Replace(ticket, "</psf:PrintTicket>", orphan));
    const Json rows = Explain({"--devmode", File("fresh.bin"), "--in", File("core.xml")});
    Expect(rows, {"Copies of the page", "lost", "", "no scored property refers to it"});
    for (const Json& row : rows) EXPECT_NE(row["verdict"], "overruled") << row;

    Do({"registry", "import",
        Write("library.reg",
              "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SYSTEM"
              "\\CurrentControlSet\\Control\\Print\\Printers\\P\\PrinterDriverData]\n\"XWorkflowDLL\"=dword:"
              "00000009\n")});
    Expect(Explain({"--devmode", File("fresh.bin")}), {"Workflow library", "lost", "", "cannot be loaded"});
}

TEST_F(ExplainRun, TellsWhatBecameOfATicket) {
    Add("press8434");
    Make("d.bin", {"--attribute", "Paper type=Transparency"});
    const std::string ticket = Do({"ticket", "--printer", "P", "--devmode", File("d.bin")});
    const std::size_t data = ticket.find("string\">", ticket.find("JobMorvaneDriverData")) + 8;
    const std::string dataText = ticket.substr(data, ticket.find('<', data) - data);
    const std::string size = ">215900<";
    const struct {
        std::string part, by;
        Row row;
    } cases[] = {
        {"psk:PageOrientation",
         "psk:PageOrientaton",
         {"psk:PageOrientaton", "ignored", "", "nearest one is 'PageOrientation'"}},
        {"psk:PageOrientation", "psk:PagePoster", {"Poster", "ignored", "", "no such setting"}},
        {"psk:PageOrientation", "odd:Page", {"odd:Page", "ignored", "", "is not declared"}},
        {"psk:PageOrientation", "xsd:Page", {"xsd:Page", "ignored", "", "another maker's (http://www.w3.org"}},
        {"psk:OneSided", "psk:OneSide", {"Duplex of the document", "ignored", "OneSided", "nearest one is 'OneSided'"}},
        {"psk:OneSided",
         "psk:Seven",
         {"Duplex of the document", "ignored", "OneSided", "it offers OneSided, TwoSidedLongEdge"}},
        {"<psf:Option name=\"psk:OneSided\"/>",
         "<psf:Option name=\"psk:OneSided\"/><psf:Option name=\"psk:Two\"/>",
         {"Duplex of the document", "ignored", "OneSided", "the first one counts"}},
        {"psk:OneSided", "psk:TwoSidedLongEdge", {"Duplex of the document", "overruled", "OneSided", "says OneSided"}},
        {"psk:Color\"", "psk:Grayscale\"", {"Colour", "changed", "Monochrome", "takes Monochrome for it"}},
        {"psk:Transparency",
         "psk:Plain",
         {"Paper type (driver setting)", "overruled", "Plain", "replaced the setting"}},
        {"psk:NorthAmericaLetter", "psk:Quarto", {"Paper size", "changed", "NorthAmericaLetter", "of the same size"}},
        {"psk:NorthAmericaLetter\"",
         "psk:CustomMediaSize\"",
         {"Paper size", "changed", "NorthAmericaLetter", "paper of that size"}},
        {size, ">215930<", {"Paper size", "changed", "215.9 x", "rounded"}},
        {size, ">222250<", {"Paper size", "changed", "NorthAmericaLetter", "the name counts"}},
        {"psk:NorthAmericaLetter\"", "psk:Odd\"", {"Paper size", "changed", "NorthAmericaLetter", "of the same size"}},
        {dataText, dataText.substr(0, 41), {"Driver data", "lost", "", "no Base64 text"}},
        {dataText, "AAAA" + dataText.substr(4), {"Driver data", "lost", "", "wrong checksum"}},
        {"mk:JobMorvaneDriverData",
         "psk:JobMorvaneDriverData",
         {"psk:JobMorvaneDriverData", "lost", "", "another namespace"}},
    };
    for (const auto& [part, by, row] : cases)
        Expect(Explain({"--ticket", Write("t.xml", Replace(ticket, part, by))}), row);
    Write("t.xml", Replace(Replace(ticket, "psk:NorthAmericaLetter", "psk:Odd"), size, ">123456<"));
    Expect(Explain({"--ticket", File("t.xml"), "--devmode", File("d.bin")}),
           {"Paper size", "changed", "CustomMediaSize, 123.5", "does not list it"});

    Write("t.xml", Replace(Replace(ticket, " name=\"psk:NorthAmericaLetter\"", ""), size, ">123400<"));
    Expect(Explain({"--ticket", File("t.xml")}),
           {"Paper size", "changed", "CustomMediaSize, 123.4", "does not list it"});
    Write("t.xml", Replace(Replace(ticket, "psk:NorthAmericaLetter", "psk:CustomMediaSize"), size, ">9999999<"));
    Expect(Explain({"--ticket", File("t.xml")}), {"Paper size", "changed", "x 3276.7", "clamped"});
    Write("t.xml", Replace(Replace(ticket, "psk:NorthAmericaLetter", "psk:CustomMediaSize"), size, ">300000<"));
    Expect(Explain({"--ticket", File("t.xml")}), {"Paper size", "changed", "279.4 x 300", "exchanged"});

    // In the other order the two are compared, and what the capabilities say counts where they are given.
    Make("other.bin", {"--set", "dmDuplex=2", "--set", "dmScale=50"});
    const Json rows = Explain({"--devmode", File("other.bin"), "--ticket", Write("t.xml", ticket)});
    Expect(rows, {"Duplex", "changed", "OneSided", "contradict each other"});
    Expect(rows, {"Orientation", "kept", "Portrait", "say the same"});
    Expect(rows, {"Scale", "lost", "100 %", "dmScale"});
    Expect(rows, {"Paper type (driver setting)", "changed", "Transparency", "the private block does not"});
    const std::string capabilities = Do({"capabilities", "--printer", "P"});
    Write("c.xml", Replace(capabilities, "psk:TwoSidedLongEdge", "psk:Seventh"));
    Write("t.xml", Replace(ticket, "psk:OneSided", "psk:Sevent"));
    Expect(Explain({"--ticket", File("t.xml"), "--capabilities", File("c.xml")}),
           {"Duplex of the document", "ignored", "OneSided", "nearest one is 'Seventh'"});
}

TEST_F(ExplainRun, ConversionsTellLossesAndFailWhenTheyAreStrict) {
    Add("press8434");
    Make("d.bin", {"--set", "dmScale=50"});
    std::vector<std::string> command = {"ticket", "--printer", "P", "--devmode", File("d.bin"), "-o", File("t.xml")};
    Outcome outcome = Run(command);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.err.starts_with("lost: Scale: 50 % -> 100 %: ")) << outcome.err;
    EXPECT_TRUE(Exists("t.xml"));
    command.back() = File("strict.xml");
    command.push_back("--strict");
    outcome = Run(command);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("nothing was written"), std::string::npos) << outcome.err;
    EXPECT_FALSE(Exists("strict.xml"));
    EXPECT_EQ(Run({"apply", "--printer", "P", "--strict", "--ticket", File("t.xml"), "--devmode", File("d.bin"), "-o",
                   File("ok.bin")})
                  .status,
              0);
}

// A page with a ticket that is not there, then "F.fdseq" with the job's, in two pieces.
constexpr const char* kPackage =
    "UEsDBBQAAAAIAAAAIVB12ttGOQAAADcAAAAUAAAAUC9fcmVscy8xLmZwYWdlLnJlbHOzKbKzSVUIqSxItVWq0C8oyswrKclMzk4tUVIISSxK"
    "Ty2xVdLT0/fV98vPS9WryM1R0rez0S+yAwBQSwMEFAAAAAgAAAAhUCL+C0wzAAAAMQAAABIAAABfcmVscy9GLmZkc2VxLnJlbHOzKbKzSVUI"
    "qSxItVWq0C8oyswrKclMzk4tUVIISSxKTy2xVfLV99KryM1R0rez0S+yAwBQSwMEFAAAAAgAAAAhUBXL3/eNAAAA7AAAABEAAABNL0oueG1s"
    "L1swXS5waWVjZa3NMQ7CMBAEwK+kcxcHaJCVpKQlBR+wnEtyMj5bvgPD7zGK+AHdFruzfTJTRpIbOg/SvMKd2KRBbSLJaM1ug2C5Dehy5LhI"
    "62LQBWmOhfWx6066O+v0FZDWPeybJdsAJWavfij7P7Ae3hWdWTVPyIyRBnVQY5/MBaw8MjRUbwdVz8xkV7hmBBIrtajGD1BLAwQUAAAACAAA"
    "ACFQz54vyzoAAAA8AAAAFgAAAE0vSi54bWwvWzFdLmxhc3QucGllY2WzKbDyLyjJzM9TyEvMTbVVLyjOtvJJzEspTk4sSFXXt7PRL7ByS00s"
    "KS1KBbMDijLzSkIyk7NTS+wAUEsBAhQDFAAAAAgAAAAhUHXa20Y5AAAANwAAABQAAAAAAAAAAAAAAIABAAAAAFAvX3JlbHMvMS5mcGFnZS5y"
    "ZWxzUEsBAhQDFAAAAAgAAAAhUCL+C0wzAAAAMQAAABIAAAAAAAAAAAAAAIABawAAAF9yZWxzL0YuZmRzZXEucmVsc1BLAQIUAxQAAAAIAAAA"
    "IVAVy9/3jQAAAOwAAAARAAAAAAAAAAAAAACAAc4AAABNL0oueG1sL1swXS5waWVjZVBLAQIUAxQAAAAIAAAAIVDPni/LOgAAADwAAAAWAAAA"
    "AAAAAAAAAACAAYoBAABNL0oueG1sL1sxXS5sYXN0LnBpZWNlUEsFBgAAAAAEAAQABQEAAPgBAAAAAA==";

TEST_F(ExplainRun, TakesInputsAsTheyArriveAndTellsWhatOthersAre) {
    Add("press8434");
    Make("d.bin", {"--set", "dmCopies=7"});
    const std::string bytes = Read("d.bin");
    std::string hex, utf16 = "\xFF\xFE";
    for (const unsigned char byte : bytes) {
        const std::string_view digits = "0123456789abcdef";
        hex += {digits[byte >> 4], digits[byte & 15], ','};
    }
    hex.pop_back();
    for (const char character : hex) utf16 += {character, '\0'};
    const auto registry = [&](const std::string& printer, const std::string& value) {
        return "[HKEY_LOCAL_MACHINE\\SYSTEM\\Printers\\" + printer + "]\r\n\"" + value + "\"=hex:" + hex + "\r\n\r\n";
    };
    const std::string header = "Windows Registry Editor Version 5.00\r\n\r\n";
    const std::string shown = Do({"devmode", "show", File("d.bin")});
    for (const std::string& form : {hex, "hex:" + hex, utf16, header + registry("Q", "Default DevMode"),
                                    header + registry("Q", "other") + registry("Z", "Default DevMode")})
        EXPECT_EQ(Do({"devmode", "show", Write("form", form)}), shown) << form.substr(0, 40);
    Write("form", header + registry("Q", "Default DevMode") + registry("p", "Default DevMode"));
    Expect(Explain({"--devmode", File("form")}), {"Copies", "kept", "7", "7"});
    // A ticket's driver data hold the settings alone.
    Do({"ticket", "--printer", "P", "--devmode", File("d.bin"), "-o", File("t.xml")});
    const Json settings = Explain({"--devmode", File("t.xml")});
    Expect(settings, {"Duplex (driver setting)", "kept", "one-sided", "driver data"});
    EXPECT_EQ(settings.dump().find("\"Copies\""), std::string::npos);
    const std::vector<BYTE> package = DecodeBase64(kPackage);
    Write("job.xps", std::string(package.begin(), package.end()));
    Expect(Explain({"--ticket", File("job.xps")}), {"Orientation", "kept", "Landscape", "dmOrientation"});

    const struct {
        std::string contents;
        const char* option;
        const char* sentence;
    } others[] = {
        {"", "--ticket", "an empty file"},
        {"%PDF-1.7", "--devmode", "a PDF file"},
        {"Dear support,\n", "--devmode", "a text file"},
        {std::string(400, '\xF3'), "--devmode", "binary data that holds no DEVMODE"},
        {bytes.substr(0, 300), "--devmode", "cut short"},
        {"<PrintCapabilities/>", "--ticket", "an XML document whose root is PrintCapabilities"},
        {header + registry("Q", "other"), "--devmode", "a .reg file without a DEVMODE"},
        {header + registry("Q", "Default DevMode") + registry("R", "Default DevMode"), "--devmode", "2 printers"},
        {std::string(package.begin(), package.begin() + 300), "--ticket", "a ZIP file that cannot be read"},
        {"abc", "--devmode", "a text"},
    };
    for (const auto& [contents, option, sentence] : others) {
        const Outcome outcome = Run({"explain", "--printer", "P", option, Write("other", contents)});
        EXPECT_EQ(outcome.status, 2) << sentence;
        EXPECT_NE(outcome.err.find(sentence), std::string::npos) << outcome.err;
    }
}

}  // namespace
