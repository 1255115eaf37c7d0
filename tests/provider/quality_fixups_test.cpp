// Output quality, and the fix-ups of orientation, resolution and duplex.
#include "boundprovider.h"

#include <support/capabilitycaches.h>

namespace {

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

TEST(OutputQuality, IsAutomaticOnOneFamilyAndAbsentOnOthers) {
    const TestStore store;
    const std::string old = Feature("PageOutputQuality", Option("psk:Draft") + Option("psk:High"));
    for (const auto& [product, wanted] : {std::pair{kOffice, "psk:Automatic"}, {kPress, "-"}, {kScript, "-"}}) {
        SCOPED_TRACE(product);
        const BoundProvider provider(product, CXString(product));
        const auto capabilities = provider.Complete(old + old);
        EXPECT_EQ(ValueOf(capabilities, "Feature", "psk:PageOutputQuality"), wanted);
        EXPECT_EQ(NamesIn(capabilities, "PageOutputQuality"), *wanted == '-' ? "-" : "Print Quality Automatic");

        TestDevmode devmode = MakeTestDevmode();
        provider.Apply(old, devmode);
        EXPECT_EQ(devmode.Get()->dmPrintQuality, 0) << "the ticket's quality goes nowhere";
        EXPECT_EQ(devmode.CopyBlock(), MakeTestDevmode().CopyBlock());
        EXPECT_EQ(ValueOf(provider.MakeTicket(devmode, old), "Feature", "psk:PageOutputQuality"), wanted);
    }
}

TEST(Orientation, IsTakenOutOnceWhenDoubled) {
    const TestStore store;
    const BoundProvider office(kOffice);
    const std::string first = Feature("PageOrientation", Option("psk:Landscape")),
                      second = Feature("PageOrientation", Option("psk:Portrait"));
    const std::pair<std::string, const char*> cases[] = {{first, "psk:Landscape"}, {first + second, "psk:Portrait"}};
    for (const auto& [children, wanted] : cases) {
        EXPECT_EQ(ValueOf(office.Complete(children), "Feature", "psk:PageOrientation"), wanted);
        TestDevmode devmode = MakeTestDevmode();
        EXPECT_EQ(ValueOf(office.MakeTicket(devmode, children), "Feature", "psk:PageOrientation"), wanted);
    }
}

TEST(Resolutions, AreThoseOfTheDevice) {
    const TestStore store;
    const BoundProvider office(kOffice);
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
        {"text behind the digits", Resolution(" 300dpi", "300"), "psk: 300dpix300", "Resolution low"},
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
    EXPECT_EQ(ValueOf(office.Complete(""), "Feature", "psk:PageResolution"), "-");
    EXPECT_EQ(NamesIn(office.Complete(Feature("PageResolution", Resolution("300", "300"))), "PageResolution"), "low")
        << "a feature without a display name keeps none";

    StoreResolutions(office.GetPrinter(), {});
    EXPECT_EQ(NamesIn(office.Complete(Feature("PageResolution", DisplayName("core") + Resolution("1", "1"))),
                      "PageResolution"),
              "core core")
        << "without a list nothing is changed";
}

TEST(Duplex, HasTheProductsNames) {
    const TestStore store;
    const ChangedProduct nameless(
        kOffice, "nameless", {{"Morvane Office", "Nameless"}, {"[settings]", "[strings]\n10290 = \"\"\n[settings]"}});
    const BoundProvider office(kOffice), withoutName(W("Without a name"), nameless.GetFile());
    const std::string name = "JobDuplexAllDocumentsContiguously";
    const std::string duplex =
        Feature(name, DisplayName("core") + Option("psk:OneSided", DisplayName("core 1")) +
                          Option("psk:TwoSidedLongEdge", DisplayName("core 2")) + Option("psk:TwoSidedShortEdge") +
                          Option("psk:Other", DisplayName("core 3")));
    EXPECT_EQ(NamesIn(office.Complete(duplex), name), "2-Sided Printing 1-Sided Print 2-Sided Print core 3");
    EXPECT_EQ(NamesIn(withoutName.Complete(duplex), name), "2-Sided Printing 1-Sided Print core 2 core 3")
        << "an empty text leaves the name as it is";
    EXPECT_EQ(NamesIn(office.Complete(""), name), "-");
}

}  // namespace
