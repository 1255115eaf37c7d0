// What the component puts into a document.
#include "boundprovider.h"

#include <support/storedcaches.h>
#include <verify/failingdom.h>

namespace {

using FailingDom = ProviderTest;

ComPtr<IXMLDOMDocument2> LoadAs(const std::string& root) {
    return Load("<psf:" + root + " xmlns:psf='{psf}' xmlns:psk='{psk}' xmlns:xsi='{xsi}' xmlns:xsd='{xsd}'" +
                " xmlns:ns0001='{mk}' version='1'>" + Feature("PageColorManagement", Option("psk:System")) +
                Parameter("ns0001:JobCopiesAllDocuments", "3") + Parameter("ns0001:JobMorvaneDriverData", "AAAA") +
                "</psf:" + root + ">");
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
