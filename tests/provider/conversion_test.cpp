// The five operations as a whole: arguments, documents of any shape, several printers and threads.
#include "boundprovider.h"

#include <thread>

namespace {

using Conversion = ProviderTest;

TEST_F(Conversion, OfADocumentOfAnotherKindIsOneReportAndNoChange) {
    for (const char* const text : {"<PrintTicket xmlns='{psf}' version='1'/>",
                                   "<psf:PrintTicket xmlns:psf='https://schemas.example/other' version='1'/>"}) {
        SCOPED_TRACE(text);
        const auto document = Load(text);
        const std::string before = TextOf(document);
        TestDevmode devmode = MakeTestDevmode();
        ReportCounter reports;
        EXPECT_EQ(press->ValidatePrintTicket(document.Get()), E_FAIL);
        EXPECT_EQ(reports.last.methodName.ToUtf8(), "MorvanePtProvider::ValidatePrintTicket");
        EXPECT_EQ(reports.last.sourceFile.ToUtf8(), "morvaneptprovider");
        EXPECT_EQ(press->ExpandIntentOptions(document.Get()), E_FAIL);
        EXPECT_EQ(press.ToTicket(devmode, document), E_FAIL);
        EXPECT_EQ(press.ToDevmode(document, devmode), E_FAIL);
        EXPECT_EQ(press->CompletePrintCapabilities(document.Get(), LoadUsual("PrintCapabilities", "").Get()), E_FAIL);
        EXPECT_EQ(reports.count, 5);
        EXPECT_EQ(TextOf(document), before);
    }
}

// The same ticket, written as another program might: other prefixes, attributes moved, indented.
TEST_F(Conversion, ReadsTheSameTicketInAnyDress) {
    TestDevmode source = MakeTestDevmode(11);
    const std::string data = ValueOf(press.MakeTicket(source), "ParameterInit", "mk:JobMorvaneDriverData");
    const std::string foreign =
        "<!-- by hand --><?pi x?><a:PrintTicket version='1' xmlns:priv='{mk}' xmlns:i='{xsi}' xmlns:b='{psk}' "
        "xmlns:d='{xsd}' xmlns:a='{psf}'>\n  <a:ParameterInit name='priv:JobMorvaneDriverData'>\n    "
        "<a:Value i:type='d:string'>\n" +
        data +
        "\n</a:Value>\n  </a:ParameterInit>\n"
        "  <a:ParameterInit name='priv:JobCopiesAllDocuments'><a:Value i:type='d:integer'><![CDATA[6]]></a:Value>"
        "</a:ParameterInit>\n  <a:Feature name='b:PageColorManagement'>\n <a:ScoredProperty name='b:OptionName'>\n"
        "<a:Value i:type='d:QName'>\n b:System\n</a:Value></a:ScoredProperty> </a:Feature>\n</a:PrintTicket>";
    TestDevmode devmode = MakeTestDevmode(1);
    const auto ticket = Load(foreign);
    ticket->put_preserveWhiteSpace(VARIANT_TRUE);  // the system's document object then shows it
    ASSERT_EQ(press.ToDevmode(ticket, devmode), S_OK);
    EXPECT_EQ(devmode.Get()->dmCopies, 6);
    EXPECT_EQ(devmode.Get()->dmICMMethod, 2u);
    EXPECT_EQ(devmode.CopyBlock(), source.CopyBlock());
}

// What one printer's provider does is not seen by another's, on one thread or on several.
TEST_F(Conversion, OfSeveralPrintersKeepsThemApart) {
    const auto convert = [](const BoundProvider& provider, LONG number, bool hasColor) {
        TestDevmode devmode = MakeTestDevmode(number), back = MakeTestDevmode(0);
        const auto ticket = LoadUsual("PrintTicket", "");
        EXPECT_EQ(provider.ToTicket(devmode, ticket), S_OK);
        EXPECT_EQ(ValueOf(ticket, "Feature", "psk:PageColorManagement") != "-", hasColor);
        EXPECT_EQ(provider.ToDevmode(ticket, back), S_OK);
        EXPECT_EQ(back.CopyBlock(), devmode.CopyBlock());
        const auto capabilities = LoadUsual("PrintCapabilities", "");
        EXPECT_EQ(provider->CompletePrintCapabilities(ticket.Get(), capabilities.Get()), S_OK);
        EXPECT_EQ(ContentOf(capabilities).find("psk:PageColorManagement") != std::string::npos, hasColor);
    };
    std::thread first([&] {
        for (int i = 0; i < 50; ++i) convert(press, i, true);
    });
    std::thread second([&] {
        for (int i = 0; i < 50; ++i) convert(office, i, false);
    });
    first.join();
    second.join();
}

}  // namespace
