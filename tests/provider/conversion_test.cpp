// The five operations as a whole: arguments, documents of any shape, several printers and threads.
#include "boundprovider.h"

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

}  // namespace
