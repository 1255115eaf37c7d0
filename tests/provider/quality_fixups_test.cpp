// Output quality, and the fix-ups of orientation and resolution.
#include "boundprovider.h"

#include <support/storedcaches.h>

namespace {

using OutputQuality = ProviderTest;
using Orientation = ProviderTest;
using Resolutions = ProviderTest;

std::string DisplayName(const std::string& text) {
    return "<psf:Property name='psk:DisplayName'><psf:Value>" + text + "</psf:Value></psf:Property>";
}
std::string Resolution(const std::string& x, const std::string& y) {
    return Option("psk:" + x + "x" + y, DisplayName("core") + (x.empty() ? "" : ScoredProperty("ResolutionX", x)) +
                                            (y.empty() ? "" : ScoredProperty("ResolutionY", y)));
}

// The display names of a feature and of its options.
std::string NamesIn(const ComPtr<IXMLDOMDocument2>& document, const std::string& feature) {
    return TextsOf(document,
                   "//psf:Feature[@name='psk:" + feature + "']//psf:Property[@name='psk:DisplayName']/psf:Value");
}

TEST_F(OutputQuality, IsAutomaticOnOneFamilyAndAbsentOnOthers) {
    const std::string old = Feature("PageOutputQuality", Option("psk:Draft") + Option("psk:High"));
    for (const auto& [provider, wanted] : {std::pair{&office, "psk:Automatic"}, {&press, "-"}}) {
        SCOPED_TRACE(wanted);
        const auto capabilities = provider->Complete(old + old);
        EXPECT_EQ(ValueOf(capabilities, "Feature", "psk:PageOutputQuality"), wanted);
        EXPECT_EQ(NamesIn(capabilities, "PageOutputQuality"), *wanted == '-' ? "-" : "Print Quality Automatic");

        TestDevmode devmode = MakeTestDevmode();
        provider->Apply(old, devmode);
        EXPECT_EQ(devmode.Get()->dmPrintQuality, 0) << "the ticket's quality goes nowhere";
        EXPECT_EQ(ValueOf(provider->MakeTicket(devmode, old), "Feature", "psk:PageOutputQuality"), wanted);
    }
}

TEST_F(Orientation, IsTakenOutOnceWhenDoubled) {
    const std::string doubled =
        Feature("PageOrientation", Option("psk:Landscape")) + Feature("PageOrientation", Option("psk:Portrait"));
    TestDevmode devmode = MakeTestDevmode();
    EXPECT_EQ(ValueOf(office.Complete(doubled), "Feature", "psk:PageOrientation"), "psk:Portrait");
    EXPECT_EQ(ValueOf(office.MakeTicket(devmode, doubled), "Feature", "psk:PageOrientation"), "psk:Portrait");
}

TEST_F(Resolutions, AreThoseOfTheDevice) {
    StoreResolutions(office.GetPrinter(),
                     {MakeResolution(300, 300, W("low")), MakeResolution(600, 600, W("fine")),
                      MakeResolution(600, 600, W("again")), MakeResolution(600, 1200, W("finest"))});
    const struct {
        const char* what;
        std::string options;
        const char *wanted, *names;
    } cases[] = {
        {"one too many", Resolution("300", "300") + Resolution("600", "600") + Resolution("1200", "1200"),
         "psk:300x300 psk:600x600", "Resolution low fine"},
        {"swapped", Resolution("1200", "600") + Resolution("600", "1200"), "psk:600x1200", "Resolution finest"},
        {"an option without values ends it", Resolution("1", "1") + Resolution("600", "") + Resolution("300", "300"),
         "psk:600x psk:300x300", "Resolution core core"},
        {"none left", Resolution("1", "1"), "-", "Resolution"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        const auto capabilities = office.Complete(Feature("PageResolution", DisplayName("core") + test.options));
        EXPECT_EQ(ValueOf(capabilities, "Feature", "psk:PageResolution"), test.wanted);
        EXPECT_EQ(NamesIn(capabilities, "PageResolution"), test.names);
    }
    StoreResolutions(office.GetPrinter(), {});
    EXPECT_EQ(NamesIn(office.Complete(Feature("PageResolution", DisplayName("core") + Resolution("1", "1"))),
                      "PageResolution"),
              "core core")
        << "without a list nothing is changed";
}

}  // namespace
