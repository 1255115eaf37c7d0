// A DOM that gives up at any one call: the operation answers, reports, and holds nothing afterwards.
#include "boundprovider.h"

#include <support/capabilitycaches.h>
#include <support/failingdom.h>

#include <livecounts.h>

#include <functional>

namespace {

const std::string kTicket =
    "<psf:Feature name='psk:PageColorManagement'><psf:Option name='psk:System'/></psf:Feature>"
    "<psf:ParameterInit name='ns0001:JobCopiesAllDocuments'><psf:Value>3</psf:Value></psf:ParameterInit>"
    "<psf:ParameterInit name='ns0001:JobMorvaneDriverData'><psf:Value>AAAA</psf:Value></psf:ParameterInit>";

ComPtr<IXMLDOMDocument2> LoadAs(const std::string& root) {
    return Load("<psf:" + root + " xmlns:psf='{psf}' xmlns:psk='{psk}' xmlns:xsi='{xsi}' xmlns:xsd='{xsd}'" +
                " xmlns:ns0001='{mk}' version='1'>" + kTicket + "</psf:" + root + ">");
}

TEST(FailingDom, EndsEveryOperationWithAnHresultAndNothingHeld) {
    const TestStore store;
    const BoundProvider press(kPress);
    // Few of each: every call that is made for one is made to fail, each time in a conversion of its own.
    StorePapers(press.GetPrinter(), {MakePaper(1, 2159, 2794, 6430, 25001, W("Letter")),
                                     MakePaper(256, 2159, 2794, 0, 25008, W("Custom Size"))});
    StoreMedia(press.GetPrinter(), {MakeMedia(6800, W("Plain"))});
    TestDevmode devmode = MakeTestDevmode();
    const struct {
        const char* name;
        const char* root;
        std::function<HRESULT(IXMLDOMDocument2*)> run;
        HRESULT success;
    } operations[] = {
        {"ticket", "PrintTicket",
         [&](auto* d) {
             return press->ConvertDevModeToPrintTicket(BoundProvider::BytesOf(devmode), devmode.Get(), 0, nullptr, d);
         },
         S_OK},
        {"apply", "PrintTicket",
         [&](auto* d) {
             return press->ConvertPrintTicketToDevMode(d, BoundProvider::BytesOf(devmode), devmode.Get(), 0, nullptr);
         },
         S_OK},
        {"capabilities", "PrintCapabilities", [&](auto* d) { return press->CompletePrintCapabilities(nullptr, d); },
         S_OK},
        {"expand", "PrintTicket", [&](auto* d) { return press->ExpandIntentOptions(d); }, S_OK},
        {"validate", "PrintTicket", [&](auto* d) { return press->ValidatePrintTicket(d); }, S_NO_CONFLICT},
    };
    for (const auto& operation : operations) {
        for (const HRESULT failure : {E_FAIL, E_OUTOFMEMORY}) {
            long failures = 0;
            for (long n = 1;; ++n) {
                SCOPED_TRACE(std::string(operation.name) + " failing at call " + std::to_string(n));
                DomCallPlan plan;
                plan.failAt = n;
                plan.failure = failure;
                const auto document = LoadAs(operation.root);
                const long held = LiveDomObjectCount(), texts = LiveBstrCount();
                HRESULT result;
                ReportCounter reports;
                {
                    const auto proxy = MakeFailingDocument(document.Get(), &plan);
                    result = operation.run(proxy.Get());
                }
                EXPECT_TRUE(result == operation.success || result == E_FAIL) << Name(result);
                EXPECT_EQ(reports.count, result == E_FAIL ? 1 : 0);
                EXPECT_EQ(LiveDomObjectCount(), held);
                EXPECT_EQ(LiveBstrCount(), texts);
                failures += result == E_FAIL;
                if (plan.calls < n) {
                    EXPECT_EQ(result, operation.success);
                    break;
                }
            }
            EXPECT_GT(failures, 10) << operation.name << ": a document that cannot be wrapped is a failure";
        }
    }
}

}  // namespace
