// The five operations as a whole: arguments, documents of any shape, several printers and threads.
#include "boundprovider.h"

#include <support/guardedmemory.h>

#include <cstring>
#include <thread>

namespace {

using Conversion = ProviderTest;

TEST_F(Conversion, RefusesADevmodeThatIsNotWhole) {
    TestDevmode devmode = MakeTestDevmode();
    const ULONG whole = BoundProvider::BytesOf(devmode);
    const struct {
        const char* what;
        ULONG bytes;
        WORD publicBytes;
        HRESULT expected;
    } cases[] = {{"no bytes", 0, 220, E_INVALIDARG},
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
}

// Nothing behind the DEVMODE is touched: every byte after it is unreadable.
TEST_F(Conversion, StaysInsideTheDevmode) {
    TestDevmode whole = MakeTestDevmode(2);
    for (const std::size_t bytes :
         {std::size_t{196}, sizeof(DEVMODEW), sizeof(DEVMODEW) + 120, std::size_t{BoundProvider::BytesOf(whole)}}) {
        SCOPED_TRACE(bytes);
        auto* const devmode = reinterpret_cast<DEVMODEW*>(GetEndOfGuardedMemory() - bytes);
        std::memcpy(devmode, whole.Get(), bytes);
        devmode->dmSize = static_cast<WORD>(std::min(bytes, sizeof(DEVMODEW)));
        devmode->dmDriverExtra = static_cast<WORD>(bytes - devmode->dmSize);
        const auto ticket = LoadUsual("PrintTicket", "");
        const ULONG size = static_cast<ULONG>(bytes);
        EXPECT_EQ(press->ConvertDevModeToPrintTicket(size, devmode, 0, nullptr, ticket.Get()), S_OK);
        EXPECT_EQ(press->ConvertPrintTicketToDevMode(ticket.Get(), size, devmode, 0, nullptr), S_OK);
    }
}

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
