// The conversions from the command line, and what the host's core driver does before the component.
#include "hostrun.h"

namespace {

class Conversions : public HostRun {
protected:
    void AddPrinter(const std::string& product) const { Do({"printer", "add", "P", "--product", product}); }
    void MakeDevmode(const std::string& file, std::vector<std::string> settings = {}) const {
        settings.insert(settings.begin(), {"devmode", "new", "--printer", "P", "-o", File(file)});
        Do(settings);
    }
    std::string MakeTicket(const std::string& devmode) const {
        return Do({"ticket", "--printer", "P", "--devmode", File(devmode)});
    }
    void Apply(const std::string& ticket, const std::string& devmode, const std::string& result) const {
        Do({"apply", "--printer", "P", "--ticket", File(ticket), "--devmode", File(devmode), "-o", File(result)});
    }

    static bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
    static int Count(const std::string& text, const std::string& part) {
        int count = 0;
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
        return count;
    }
    static std::string ReplaceAll(std::string text, const std::string& part, const std::string& by) {
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + by.size()))
            text.replace(at, part.size(), by);
        return text;
    }
};

TEST_F(Conversions, TheDemonstrationBringsEveryBlockBack) {
    const std::string account = Do({"demo", "-o", File("demo")});
    EXPECT_EQ(Count(account, "same private block: yes"), 3) << account;
    for (const char* product : {"press8434", "office8430", "script8432"})
        for (const char* file : {"devmode.bin", "ticket.xml", "devmode-back.bin", "capabilities.xml"})
            EXPECT_TRUE(Exists(std::string("demo/") + product + "/" + file)) << product << file;
    EXPECT_FALSE(Exists("store")) << "the demonstration uses a store of its own";
}

TEST_F(Conversions, ColourCopiesAndBlockTravelToTheTicketAndBack) {
    AddPrinter("press8434");
    MakeDevmode("job.bin", {"--set", "dmICMMethod=2", "--set", "dmICMIntent=1", "--set", "dmCopies=7", "--set",
                            "dmOrientation=2", "--set", "dmDuplex=3", "--set", "dmCollate=1", "--set", "dmPaperSize=1",
                            "--set", "dmColor=1", "--attribute", "286=true"});
    MakeDevmode("fresh.bin");
    const std::string ticket = MakeTicket("job.bin");
    for (const char* part :
         {"name=\"psk:PageColorManagement\"><psf:Option name=\"psk:System\"",
          "name=\"psk:PageICMRenderingIntent\"><psf:Option name=\"psk:BusinessGraphics\"",
          "name=\"mk:JobCopiesAllDocuments\"><psf:Value xsi:type=\"xsd:integer\">7<",
          "name=\"mk:JobMorvaneDriverData\"", "\"psk:Landscape\"",
          "name=\"psk:DocumentDuplex\"><psf:Option name=\"psk:TwoSidedShortEdge\"",
          "name=\"psk:JobDuplexAllDocumentsContiguously\"><psf:Option name=\"psk:TwoSidedShortEdge\"",
          "name=\"psk:PageOutputColor\"><psf:Option name=\"psk:Monochrome\"", "\"psk:Collated\"",
          "\"psk:NorthAmericaLetter\""})
        EXPECT_TRUE(Holds(ticket, part)) << part << " in " << ticket;

    // All that the ticket states comes back; what it does not state stays as the fresh DEVMODE has it.
    Write("ticket.xml", ticket);
    Apply("ticket.xml", "fresh.bin", "back.bin");
    const std::string job = Read("job.bin");
    const std::string back = Read("back.bin");
    EXPECT_TRUE(job.substr(220) == back.substr(220)) << "the driver's own part";
    const std::string shown = Do({"devmode", "show", File("back.bin")});
    for (const char* line :
         {"dmICMMethod         2\n", "dmCopies            7\n", "dmOrientation       2\n", "dmDuplex            3\n",
          "dmCollate           1\n", "dmPaperSize         1\n", "dmColor             1\n"})
        EXPECT_TRUE(Holds(shown, line)) << line << " in " << shown;
}

TEST_F(Conversions, ColourAndSidesAreReadWhereThePrinterHasThem) {
    struct Case {
        const char *product, *features, *line;
    };
    const Case cases[] = {
        {"press8434", "<f:Feature name='k:PageOutputColor'><f:Option name='k:Grayscale'/></f:Feature>",
         "dmColor             1\n"},
        {"office8430", "<f:Feature name='k:PageOutputColor'><f:Option name='k:Color'/></f:Feature>",
         "dmColor             1\n"},
        {"press8434",
         "<f:Feature name='k:JobDuplexAllDocumentsContiguously'><f:Option name='k:TwoSidedShortEdge'/></f:Feature>"
         "<f:Feature name='k:DocumentDuplex'><f:Option name='k:TwoSidedLongEdge'/></f:Feature>",
         "dmDuplex            3\n"},
    };
    for (const Case& c : cases) {
        AddPrinter(c.product);
        MakeDevmode("fresh.bin");
        EXPECT_EQ(Holds(MakeTicket("fresh.bin"), "PageOutputColor"), c.product != std::string("office8430"));
        Write("ticket.xml",
              "<f:PrintTicket version='1' xmlns:f='http://schemas.microsoft.com/windows/2003/08/printing/"
              "printschemaframework' xmlns:k='http://schemas.microsoft.com/windows/2003/08/printing/"
              "printschemakeywords'>" +
                  std::string(c.features) + "</f:PrintTicket>");
        EXPECT_EQ(Run({"apply", "--printer", "P", "--ticket", File("ticket.xml"), "--devmode", File("fresh.bin"), "-o",
                       File("back.bin")})
                      .status,
                  0);
        EXPECT_TRUE(Holds(Do({"devmode", "show", File("back.bin")}), c.line)) << c.features;
        Do({"printer", "remove", "P"});
    }
}

TEST_F(Conversions, DocumentsOfACoreDriverAreCompletedInPlace) {
    AddPrinter("press8434");
    MakeDevmode("job.bin");
    // ns0000 and xsd are taken, ns0001 stands in a name without being declared, psk and xsi are not there.
    const std::string root =
        " xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"
        " xmlns:xsd='http://example.org/other' xmlns:ns0000='http://example.org/foreign' version='1'>";
    Write("in.xml", "<psf:PrintTicket" + root +
                        "<psf:ParameterInit name='ns0000:JobCopiesAllDocuments'><psf:Value>5"
                        "</psf:Value></psf:ParameterInit><psf:Feature name='ns0001:Odd'><psf:Option name='ns0001:One'/>"
                        "</psf:Feature></psf:PrintTicket>");
    const std::string ticket = Do({"ticket", "--printer", "P", "--devmode", File("job.bin"), "--in", File("in.xml")});
    for (const char* part : {"\"ns0000:JobCopiesAllDocuments\"", "\"ns0001:Odd\"", "\"ns0001:One\"",
                             "\"mk:JobCopiesAllDocuments\"", "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"",
                             "\"psk:PageMediaSize\"", "xmlns:ns0003=\"http://www.w3.org/2001/XMLSchema\"",
                             "xsi:type=\"ns0003:integer\"", "xmlns:ns0000=\"http://example.org/foreign\""})
        EXPECT_TRUE(Holds(ticket, part)) << part << " in " << ticket;

    Write("caps.xml", "<psf:PrintCapabilities" + root + "</psf:PrintCapabilities>");
    Write("ticket.xml", ticket);
    const std::string capabilities =
        Do({"capabilities", "--printer", "P", "--in", File("caps.xml"), "--ticket", File("ticket.xml")});
    EXPECT_TRUE(Holds(capabilities, "\"mk:JobMorvaneDriverData\"")) << capabilities;
    EXPECT_TRUE(Holds(capabilities, "\"psk:JobCopiesAllDocuments\"")) << capabilities;
}

TEST_F(Conversions, ValidationTellsResultsByName) {
    AddPrinter("press8434");
    const std::string ticket =
        "<a:PrintTicket xmlns:a='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework' "
        "version='1'/>";
    Write("good.xml", ticket);
    EXPECT_TRUE(Holds(Do({"validate", "--printer", "P", "--ticket", File("good.xml"), "-o", File("out.xml")}),
                      "ValidatePrintTicket: S_NO_CONFLICT (0x00040001)"));
    EXPECT_TRUE(Holds(Read("out.xml"), "a:PrintTicket"));

    Write("bare.xml", ReplaceAll(ReplaceAll(ticket, "a:", ""), ":a=", "="));
    const Outcome outcome =
        Run({"validate", "--printer", "P", "--ticket", File("bare.xml"), "-o", File("bare-out.xml")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(Holds(outcome.out, "ValidatePrintTicket: E_FAIL (0x80004005)")) << outcome.out;
    EXPECT_TRUE(Holds(outcome.err, "reported: MorvanePtProvider::ValidatePrintTicket")) << outcome.err;
    EXPECT_FALSE(Exists("bare-out.xml"));
}

TEST_F(Conversions, AnOperationThatFailsLeavesNoFile) {
    AddPrinter("office8430");
    MakeDevmode("job.bin");
    // A public part that ends before the fields that the component reads.
    std::string devmode = Read("job.bin");
    devmode[68] = 100;
    Write("old.bin", devmode);
    const Outcome outcome = Run({"ticket", "--printer", "P", "--devmode", File("old.bin"), "-o", File("out.xml")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(Holds(outcome.err, "ConvertDevModeToPrintTicket answered E_INVALIDARG (0x80070057)")) << outcome.err;
    EXPECT_FALSE(Exists("out.xml"));
}

}  // namespace
