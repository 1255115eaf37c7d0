// The five operations as a whole: arguments, documents of any shape, several printers and threads.
#include "boundprovider.h"

#include <support/guardedmemory.h>

#include <thread>

namespace {

TEST(Conversion, RefusesADevmodeThatIsNotWhole) {
    const TestStore store;
    const BoundProvider office(kOffice);
    TestDevmode devmode = MakeTestDevmode();
    const ULONG whole = BoundProvider::BytesOf(devmode);
    const struct {
        const char* what;
        ULONG bytes;
        WORD publicBytes;
        HRESULT expected;
    } cases[] = {{"no bytes", 0, 220, E_INVALIDARG},
                 {"ends before the sizes", 60, 220, E_INVALIDARG},
                 {"ends before its public fields", 195, 220, E_INVALIDARG},
                 {"claims one byte more than there is", whole - 1, 220, E_INVALIDARG},
                 {"public part too short to be read", whole, 195, E_INVALIDARG},
                 {"bytes behind the DEVMODE", whole, 196, S_OK},
                 {"whole", whole, 220, S_OK}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        devmode.Get()->dmSize = test.publicBytes;
        const auto ticket = LoadUsual("PrintTicket", "");
        EXPECT_EQ(office->ConvertDevModeToPrintTicket(test.bytes, devmode.Get(), 0, nullptr, ticket.Get()),
                  test.expected);
        EXPECT_EQ(ContentOf(ticket).empty(), FAILED(test.expected));
        EXPECT_EQ(office->ConvertPrintTicketToDevMode(ticket.Get(), test.bytes, devmode.Get(), 0, nullptr),
                  test.expected);
    }
    const auto ticket = LoadUsual("PrintTicket", "");
    EXPECT_EQ(office->ConvertDevModeToPrintTicket(whole, nullptr, 0, nullptr, ticket.Get()), E_INVALIDARG);
    EXPECT_EQ(office->ConvertDevModeToPrintTicket(whole, devmode.Get(), 0, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(office->ConvertPrintTicketToDevMode(nullptr, whole, devmode.Get(), 0, nullptr), E_INVALIDARG);
    EXPECT_EQ(office->CompletePrintCapabilities(ticket.Get(), nullptr), E_INVALIDARG);
}

// Nothing behind the DEVMODE is touched: every byte after it is unreadable.
TEST(Conversion, StaysInsideTheDevmode) {
    const TestStore store;
    const BoundProvider press(kPress);
    TestDevmode whole = MakeTestDevmode(2);
    for (const std::size_t bytes :
         {std::size_t{196}, sizeof(DEVMODEW), sizeof(DEVMODEW) + 120, std::size_t{BoundProvider::BytesOf(whole)}}) {
        SCOPED_TRACE(bytes);
        GuardedMemory memory(bytes);
        auto* devmode = static_cast<DEVMODEW*>(memory.Get());
        std::copy_n(reinterpret_cast<BYTE*>(whole.Get()), bytes, static_cast<BYTE*>(memory.Get()));
        devmode->dmSize = static_cast<WORD>(std::min(bytes, sizeof(DEVMODEW)));
        devmode->dmDriverExtra = static_cast<WORD>(bytes - devmode->dmSize);
        const auto ticket = LoadUsual("PrintTicket", "");
        const ULONG size = static_cast<ULONG>(bytes);
        EXPECT_EQ(press->ConvertDevModeToPrintTicket(size, devmode, 0, nullptr, ticket.Get()), S_OK);
        EXPECT_EQ(press->ConvertPrintTicketToDevMode(ticket.Get(), size, devmode, 0, nullptr), S_OK);
    }
}

TEST(Conversion, OfADocumentOfAnotherKindIsOneReportAndNoChange) {
    const TestStore store;
    const BoundProvider press(kPress);
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
TEST(Conversion, ReadsTheSameTicketInAnyDress) {
    const TestStore store;
    const BoundProvider press(kPress);
    TestDevmode source = MakeTestDevmode(11);
    const auto ticket = LoadUsual("PrintTicket", "");
    ASSERT_EQ(press.ToTicket(source, ticket), S_OK);
    const std::string data = ValueOf(ticket, "ParameterInit", "mk:JobMorvaneDriverData");
    const std::string usual = "<psf:PrintTicket xmlns:psf='{psf}' xmlns:psk='{psk}' xmlns:mk='{mk}' version='1'>" +
                              Feature("PageColorManagement", Option("psk:System")) +
                              Parameter("mk:JobCopiesAllDocuments", "6") + Parameter("mk:JobMorvaneDriverData", data) +
                              "</psf:PrintTicket>";
    const std::string foreign =
        "<!-- by hand --><?pi x?><a:PrintTicket version='1' xmlns:priv='{mk}' xmlns:i='{xsi}' xmlns:b='{psk}' "
        "xmlns:d='{xsd}' xmlns:a='{psf}'>\n  <a:ParameterInit name='priv:JobMorvaneDriverData'>\n    "
        "<a:Value i:type='d:string'>\n" +
        data +
        "\n</a:Value>\n  </a:ParameterInit>\n"
        "  <a:ParameterInit name='priv:JobCopiesAllDocuments'><a:Value i:type='d:integer'><![CDATA[6]]></a:Value>"
        "</a:ParameterInit>\n  <a:Feature name='b:PageColorManagement'>\n <a:Option name='b:System'/> </a:Feature>\n"
        "</a:PrintTicket>";
    for (const std::string& text : {usual, foreign}) {
        SCOPED_TRACE(text.substr(0, 40));
        TestDevmode devmode = MakeTestDevmode(1);
        ASSERT_EQ(press.ToDevmode(Load(text), devmode), S_OK);
        EXPECT_EQ(devmode.Get()->dmCopies, 6);
        EXPECT_EQ(devmode.Get()->dmICMMethod, 2u);
        EXPECT_EQ(devmode.CopyBlock(), source.CopyBlock());
    }
}

TEST(Conversion, ValidationChangesThePrivatePrefixAndNothingElse) {
    const auto provider = ComPtr<MorvanePtProvider>::Adopt(new MorvanePtProvider);  // needs no printer
    const auto ticket = Load(
        "<p:PrintTicket xmlns:p='{psf}' xmlns:ns0001='{mk}' version='1'>"
        "<p:ParameterInit name='ns0001:Job'><p:Value>ns0001:x</p:Value></p:ParameterInit>"
        "</p:PrintTicket>");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(provider->ValidatePrintTicket(ticket.Get()), S_NO_CONFLICT);
        EXPECT_EQ(TextOf(ticket),
                  Expand("<p:PrintTicket xmlns:p=\"{psf}\" version=\"1\" xmlns:mk=\"{mk}\">"
                         "<p:ParameterInit name=\"mk:Job\"><p:Value>ns0001:x</p:Value></p:ParameterInit>"
                         "</p:PrintTicket>"));
    }
}

// What one printer's provider does is not seen by another's, on one thread or on several.
TEST(Conversion, OfSeveralPrintersKeepsThemApart) {
    const TestStore store;
    const BoundProvider press(kPress, W("Press")), office(kOffice, W("Office"));
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
