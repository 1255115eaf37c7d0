// A DOM that gives up at any one call: the operation answers, reports, and holds nothing afterwards.
#include "boundprovider.h"

#include <support/failingdom.h>
#include <support/storedcaches.h>

#include <livecounts.h>

#include <functional>

namespace {

using FailingDom = ProviderTest;

ComPtr<IXMLDOMDocument2> LoadAs(const std::string& root) {
    return Load("<psf:" + root + " xmlns:psf='{psf}' xmlns:psk='{psk}' xmlns:xsi='{xsi}' xmlns:xsd='{xsd}'" +
                " xmlns:ns0001='{mk}' version='1'>" + Feature("PageColorManagement", Option("psk:System")) +
                Parameter("ns0001:JobCopiesAllDocuments", "3") + Parameter("ns0001:JobMorvaneDriverData", "AAAA") +
                "</psf:" + root + ">");
}

TEST_F(FailingDom, EndsEveryOperationWithAnHresultAndNothingHeld) {
    // Few of each: every call that is made for one is made to fail, each time in a conversion of its own.
    StorePapers(press.GetPrinter(), {MakePaper(1, 2159, 2794, 6430, 25001, W("Letter")),
                                     MakePaper(256, 2159, 2794, 0, 25008, W("Custom Size"))});
    StoreMedia(press.GetPrinter(), {MakeMedia(6800, W("Plain"))});
    TestDevmode devmode = MakeTestDevmode();
    const struct {
        const char *name, *root;
        std::function<HRESULT(const ComPtr<IXMLDOMDocument2>&)> run;
        HRESULT success;
    } operations[] = {
        {"ticket", "PrintTicket", [&](const auto& d) { return press.ToTicket(devmode, d); }, S_OK},
        {"apply", "PrintTicket", [&](const auto& d) { return press.ToDevmode(d, devmode); }, S_OK},
        {"capabilities", "PrintCapabilities",
         [&](const auto& d) { return press->CompletePrintCapabilities(nullptr, d.Get()); }, S_OK},
        {"expand", "PrintTicket", [&](const auto& d) { return press->ExpandIntentOptions(d.Get()); }, S_OK},
        {"validate", "PrintTicket", [&](const auto& d) { return press->ValidatePrintTicket(d.Get()); }, S_NO_CONFLICT},
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
                ReportCounter reports;
                const HRESULT result = operation.run(MakeFailingDocument(document.Get(), &plan));
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

TEST_F(FailingDom, IsHandedNoTextThatADocumentCannotHold) {
    const WideString bad = {W('A'), 1, 0xD800, W('B'), 0xDC00, 0xFFFF, 0xD83D, 0xDE00, W('\t')};
    const WideString mended = {W('A'), 0xFFFD, 0xFFFD, W('B'), 0xFFFD, 0xFFFD, 0xD83D, 0xDE00, W('\t')};
    StorePapers(press.GetPrinter(), {MakePaper(1, 2159, 2794, 6430, 25001, bad.c_str())});
    DomCallPlan plan;
    const auto document = LoadAs("PrintCapabilities");
    EXPECT_EQ(press->CompletePrintCapabilities(nullptr, MakeFailingDocument(document.Get(), &plan).Get()), S_OK);
    EXPECT_NE(plan.texts.find(mended), WideString::npos);
}

}  // namespace
