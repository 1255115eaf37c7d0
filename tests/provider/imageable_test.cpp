// Imageable size and area: margins from the margin file or the device settings, turned with the page.
#include "boundprovider.h"

#include <support/storedcaches.h>

namespace {

std::string Ticket(const std::string& width, const std::string& height, const std::string& orientation) {
    return Feature("PageMediaSize", Option("psk:CustomMediaSize", ScoredProperty("MediaSizeWidth", width) +
                                                                      ScoredProperty("MediaSizeHeight", height))) +
           (orientation.empty() ? "" : Feature("PageOrientation", Option("psk:" + orientation)));
}

// The press with a margin file and margin settings of its own: left 1000, top 2000, right 3000, bottom 4000
// micrometres.
class ImageableTest : public testing::Test {
protected:
    ImageableTest() {
        WriteMargins("");
        StorePapers(press_.GetPrinter(), {MakePaper(1, 2159, 2794, 6430, 25001, W("Letter")),
                                          MakePaper(34, 1760, 2500, 6500, 25001, W("B5 Envelope"))});
    }

    void WriteMargins(const std::string& lines) {
        WriteTestFile(product_.GetFile().parent_path() / "press8434-margin.ini",
                      "[Other]\n612x792=0 0 1 1\n[PostScript]\n" + lines);
    }

    // The imageable sizes, origin and extents.
    std::string Area(const std::string& ticketChildren) {
        const auto ticket = LoadUsual("PrintTicket", ticketChildren);
        const std::string old = "<psf:Property name='psk:PageImageableSize'/>";
        return TextsOf(press_.Complete(old + old, ticket), "/*/psf:Property[@name='psk:PageImageableSize']//psf:Value");
    }

    TestStore store_;
    const ChangedProduct product_{kPress,
                                  {{"422 = 423", "422 = 100"},
                                   {"424 = 423", "424 = 200"},
                                   {"423 = 423", "423 = 300"},
                                   {"425 = 423", "425 = 400"}}};
    const BoundProvider press_{W("Imageable"), product_.GetFile()};
};

TEST_F(ImageableTest, AreaTurnsWithThePage) {
    // Margins left 1000, top 2000, right 3000 and bottom 4000 micrometres.
    const std::pair<const char*, const char*> cases[] = {
        {"", "215900 279400 1000 2000 211900 273400"},
        {"Portrait", "215900 279400 1000 2000 211900 273400"},
        {"ReversePortrait", "215900 279400 3000 4000 211900 273400"},
        {"Landscape", "279400 215900 4000 1000 273400 211900"},
        {"ReverseLandscape", "279400 215900 2000 3000 273400 211900"},
    };
    for (const auto& [orientation, area] : cases) EXPECT_EQ(Area(Ticket("215900", "279400", orientation)), area);
    EXPECT_EQ(Area(Ticket("2147483647", "1000", "")), "2147483600 1000 1000 2000 2147479600 -5000");

    ProviderProbe::SetCapabilityFlags(*press_, 0x200);
    EXPECT_EQ(Area(Ticket("215900", "279400", "")), "-") << "left as it was";
}

TEST_F(ImageableTest, MarginsComeFromTheLineOfThePagesSize) {
    const std::string fromSettings = "1000 2000";
    const struct {
        const char *what, *lines, *origin;
    } cases[] = {
        {"the first of two lines, in whole millimetres", "613x792=28 0 612 763\n612x792=18 18 594 774\n",
         "10231 10583"},
        {"fractions are dropped", "612x792=17.99 18 594 774.5\n", "6350 6350"},
        {"white space before numbers, text behind the last", " 612x\t792= 18  18\t594 774 points\n", "6703 6703"},
        {"no digit before the point", "612x792=.5 18 594 774\n", "353 6703"},
        {"signs and exponents", "+6.12e2x792=-0.5 18 594 774\n", "0 6703"},
        {"a space in front of the x", "612 x792=18 18 594 774\n", nullptr},
        {"five numbers", "612x792=18 18 594\n", nullptr},
        {"hexadecimal", "0x264x792=18 18 594 774\n612x792=0x12 18 594 774\n", nullptr},
        {"no numbers", "612x792=nan 18 594 774\n612x792=18 18 594 inf\n612x792=-inf 18 594 774\n", nullptr},
        {"numbers out of range", "612x792=1e39 18 594 774\n612x792=18 18 594 -1e9\n612x792=18 18 1e-50 774\n", nullptr},
        {"a bad line before a good one", "612x792\n=\nx\n612x792=18 18 594 774\n", "6703 6703"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        WriteMargins(test.lines);
        const std::string area = Area(Ticket("215900", "279400", ""));
        EXPECT_EQ(area.substr(0, area.find(' ', area.find(' ', 14) + 1)),
                  "215900 279400 " + (test.origin ? test.origin : fromSettings));
    }
    std::string many;
    while (many.size() < 4094 - 22) many += "1x1=0 0 0 0\n";
    WriteMargins(many + "612x792=18 18 594 774.123456789\n");
    EXPECT_EQ(Area(Ticket("215900", "279400", "")).substr(14, 9), fromSettings) << "a line cut in a number is none";
}

TEST_F(ImageableTest, EnvelopesOfB5SizeHaveTheLargestMargins) {
    WriteMargins("499x709=9 9 490 700\n499x709=14 14 485 695\n499x709=8 9 489 700\n499x709=13 14 484 695\n");
    EXPECT_EQ(Area(Ticket("176000", "250000", "")).substr(14), "5292 5292 165416 239416") << "number 34";
    StorePapers(press_.GetPrinter(), {MakePaper(1, 2159, 2794, 6430, 25001, W("Letter"))});
    EXPECT_EQ(Area(Ticket("176000", "250000", "")).substr(14), "3528 3528 168944 242944") << "a size of the user's";
}

}  // namespace
