// The writer of job tickets: every line with every word, their order, and texts that try to be more than a value.
#include <mvcore/testmodel.h>
#include <mvjtwriter.h>

#include <gtest/gtest.h>

#include <sstream>
#include <variant>

namespace {

struct Setting {
    std::vector<DWORD> path;
    std::variant<int, const WCHAR*> value;
};

// A model of the press with settings made. Options are offered first: the writer knows more than one product has.
class PressModel {
public:
    explicit PressModel(const std::vector<Setting>& settings = {}) {
        TextResourceLoader::Initialize(printer_.GetHandle(), false);  // the names of values are the product's texts
        for (const Setting& setting : settings) Set(setting);
    }
    std::string Write() {
        ByteBuffer buffer;
        WriteMvjt(model_.GetServices(), buffer);
        return {reinterpret_cast<const char*>(buffer.getLpbyte()), buffer.getDword()};
    }
    FeatureServices& GetServices() { return model_.GetServices(); }

private:
    void Set(const Setting& setting) {
        const FeatureIdWithContext id = Id(setting.path);
        const DWORD feature = setting.path.back();
        if (const auto* text = std::get_if<const WCHAR*>(&setting.value)) {
            EXPECT_TRUE(model_.GetServices().GetStringFeature(id).SetValue(*text));
            return;
        }
        const int number = std::get<int>(setting.value);
        const bool isInteger = feature == 43 || feature == 176 || feature == 179;
        if (isInteger) {
            EXPECT_TRUE(model_.GetServices().GetIntegerFeature(id).SetValue(number));
        } else if (feature >= 95 && feature <= 98) {
            const Dimension shift(number, Dimension::Micrometres);
            EXPECT_TRUE(model_.GetServices().GetDimensionFeature(id).SetValue(shift));
        } else {
            model_.GetIntegration().AddOptionValues(id, {ValueId(static_cast<DWORD>(number))}, 1);
            EXPECT_TRUE(model_.SetOption(id, static_cast<DWORD>(number)));
        }
    }

    TestStore store_;
    TestPrinter printer_{kPress};
    TestModel model_{ProductFile(kPress), {}};
};

// The values of the lines of that keyword, joined by "|"; "-" when there is none.
std::string ValuesOf(const std::string& ticket, const std::string& keyword) {
    const std::string start = "%MVN" + keyword + ": ";
    std::istringstream lines(ticket);
    std::string all;
    bool found = false;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(start)) continue;
        all += (found ? "|" : "") + line.substr(start.size());
        found = true;
    }
    return found ? all : "-";
}

TEST(MvjtWriter, WritesEachLine) {
    const struct {
        std::vector<Setting> settings;
        const char *keyword, *values;
    } cases[] = {
        {{}, "begin", "001.0300"},
        {{}, "title", "Default job"},
        {{{{78}, W("A & B")}}, "title", "A & B"},
        {{}, "senderName", "Default Sender"},
        {{{{82}, W("Ann")}}, "senderName", "Ann"},
        {{}, "recipientName", "-"},
        {{{{83}, W("Bob")}}, "recipientName", "Bob"},
        {{{{84}, W("hello")}}, "message", "hello"},
        {{{{85}, W("load red")}}, "jobStartMessage", "load red"},
        {{}, "signature", "False"},
        {{{{59}, 5510}}, "signature", "False"},
        {{{{59}, 5511}}, "signature", "True"},
        {{{{59}, 5512}}, "signature", "-"},
        {{{{43}, 12}}, "copyCount", "12"},
        {{{{46}, 5420}, {{45}, 5412}}, "requirements", "simplex"},
        {{{{46}, 5421}, {{45}, 5410}}, "requirements", "duplex|collated"},
        {{{{46}, 5422}, {{45}, 5411}}, "requirements", "duplex(tumble)|uncollated"},
        {{{{46}, 5423}, {{45}, 5412}}, "requirements", "5423"},
        {{{{46}, 5001}, {{45}, 5001}}, "requirements", "-"},
        {{{{146}, 6320}}, "outputLocation", "FinishingBypass Stacker"},
        {{{{146}, 6320}, {{144}, 6254}}, "edgeStitching", "-"},
        {{{{146}, 6320}, {{144}, 6275}}, "binding", "-"},
        {{{{146}, 6320}, {{144}, 6252}}, "bookletMaker", "-"},
        {{{{146}, 6320}, {{208, 145}, 6310}}, "requirements", "simplex|collated"},
        {{{{208, 145}, 6310}}, "requirements", "simplex|slipSheeting|collated"},
        {{{{208, 145}, 6310}, {{144}, 6254}}, "edgeStitching", "None"},
        {{}, "binding", "None"},
        {{}, "edgeStitching", "None"},
        {{}, "bookletMaker", "False"},
        {{{{144}, 6252}}, "bookletMaker", "True"},
        {{{{144}, 6252}}, "edgeStitching", "None"},
        {{{{144}, 6253}}, "bookletMaker", "False"},
        {{{{144}, 6254}}, "edgeStitching", "SinglePortrait"},
        {{{{144}, 6255}}, "edgeStitching", "SingleLandscape"},
        {{{{144}, 6256}}, "edgeStitching", "RightSinglePortrait"},
        {{{{144}, 6257}}, "edgeStitching", "RightSingleLandscape"},
        {{{{144}, 6258}}, "edgeStitching", "DualLandscape"},
        {{{{144}, 6259}}, "edgeStitching", "DualPortrait"},
        {{{{144}, 6260}}, "edgeStitching", "RightDualLandscape"},
        {{{{144}, 6261}}, "edgeStitching", "RightDualPortrait"},
        {{{{144}, 6275}}, "binding", "left"},
        {{{{144}, 6276}}, "binding", "right"},
        {{{{144}, 6276}}, "bookletMaker", "False"},
        {{}, "rotation", "-"},
        {{{{88}, 5600}}, "rotation", "0"},
        {{{{88}, 5601}}, "rotation", "90"},
        {{{{88}, 5602}}, "rotation", "180"},
        {{{{88}, 5603}}, "rotation", "270"},
        {{{{88}, 5604}}, "rotation", "0"},
        {{{{95}, 12499}}, "xImageShift", "12"},
        {{{{95}, 12501}}, "xImageShift", "13"},
        {{{{96}, -3000}}, "yImageShift", "-3"},
        {{{{46}, 5420}, {{97}, 4000}}, "x2ImageShift", "-"},
        {{{{46}, 5420}, {{98}, 4000}}, "y2ImageShift", "-"},
        {{{{46}, 5422}, {{97}, 4000}}, "x2ImageShift", "4"},
        {{{{46}, 5001}, {{98}, 4000}}, "y2ImageShift", "4"},
        {{{{63}, 5530}}, "disposition", "PRINT"},
        {{{{63}, 5531}}, "disposition", "SAVE"},
        {{{{63}, 5532}}, "disposition", "PRINT&SAVE"},
        {{{{63}, 5533}}, "disposition", "-"},
        {{{{103}, 5850}}, "highlightMappingAlgorithm", "Automatic"},
        {{{{103}, 5851}}, "highlightMappingAlgorithm", "Pictorial"},
        {{{{103}, 5852}}, "highlightMappingAlgorithm", "Presentation"},
        {{{{103}, 5853}}, "highlightMappingAlgorithm", "PictorialTable"},
        {{{{103}, 5854}}, "highlightMappingAlgorithm", "ColorToHighlight"},
        {{{{103}, 5855}}, "highlightMappingAlgorithm", "Monochrome"},
        {{{{104}, 5900}}, "mismatchedHighlightPrintingColor", "selectCurrent"},
        {{{{104}, 5901}}, "mismatchedHighlightPrintingColor", "hold"},
        {{{{104}, 5902}}, "mismatchedHighlightPrintingColor", "abort"},
        {{{{101}, 5761}}, "highlightPrintingColor", "-"},
        {{}, "documentPaperColors", "-"},
        {{{{174}, 6762}}, "documentPaperColors", "6762"},
        {{{{477, 210, 175}, 5001}}, "paperType-opacity", "-"},
        {{{{477, 210, 175}, 6800}}, "paperType-opacity", "opaque"},
        {{{{477, 210, 175}, 6801}}, "paperType-opacity", "transparency"},
        {{{{477, 210, 175}, 6800}, {{176}, 5}}, "paperType-preFinish", "Plain 0 0"},
        {{{{477, 210, 175}, 6801}, {{178}, 6921}}, "paperType-preFinish", "PlainDrilled 3 0"},
        {{{{477, 210, 175}, 6803}, {{176}, 5}}, "paperType-preFinish", "PlainPreCutTab 0 5"},
        {{{{477, 210, 175}, 6804}, {{178}, 6921}}, "paperType-preFinish", "DrilledPreCutTab 3 0"},
        {{{{477, 210, 175}, 6890}, {{178}, 6920}}, "paperType-preFinish", "Preprinted 0 0"},
        {{{{477, 210, 175}, 6890}, {{178}, 6921}, {{176}, 5}}, "paperType-preFinish", "PreprintedDrilled 3 0"},
        {{{{477, 210, 175}, 6820}, {{176}, 5}}, "paperType-preFinish", "opaque 0 5"},
        {{{{477, 210, 175}, 6820}, {{178}, 6921}}, "paperType-preFinish", "opaque 3 0"},
        {{{{179}, 120}}, "paperType-weight", "120"},
    };
    for (const auto& test : cases) {
        PressModel press(test.settings);
        std::string settings;
        for (const Setting& setting : test.settings) settings += std::to_string(setting.path.back()) + " ";
        EXPECT_EQ(ValuesOf(press.Write(), test.keyword), test.values) << test.keyword << " of " << settings;
    }
}

TEST(MvjtWriter, KnowsEachColour) {
    const char* const inks[] = {"red",   "green", "blue",   "cyan",  "magenta", "black", "cardinal",
                                "royal", "ruby",  "violet", "brown", "yellow",  "other"};
    const char* const papers[] = {"noColor", "white",     "pink", "yellow", "blue",  "green",
                                  "buff",    "goldenrod", "red",  "gray",   "ivory", "orange"};
    for (int index = 0; index < 13; ++index) {
        PressModel press({{{101}, 5750 + index}, {{102}, 5800 + index}, {{174}, 6750 + std::min(index, 11)}});
        const std::string ticket = press.Write();
        EXPECT_EQ(ValuesOf(ticket, "highlightPrintingColor"), index == 11 ? "-" : inks[index]);
        EXPECT_EQ(ValuesOf(ticket, "highlightMappingColor"), inks[index]);
        EXPECT_EQ(ValuesOf(ticket, "documentPaperColors"), papers[std::min(index, 11)]);
    }
}

TEST(MvjtWriter, WritesWholeTicketsInOrder) {
    EXPECT_EQ(PressModel({{{477, 210, 175}, 6800}}).Write(),
              "%MVNbegin: 001.0300\n%MVNtitle: Default job\n%MVNsenderName: Default Sender\n%MVNsignature: False\n"
              "%MVNcopyCount: 1\n%MVNrequirements: simplex\n%MVNbinding: None\n%MVNedgeStitching: None\n"
              "%MVNbookletMaker: False\n%MVNrequirements: collated\n%MVNxImageShift: 0\n%MVNyImageShift: 0\n"
              "%MVNdisposition: PRINT\n%MVNpaperType-opacity: opaque\n%MVNpaperType-preFinish: Plain 0 0\n"
              "%MVNpaperType-weight: 90\n");
    EXPECT_EQ(PressModel({{{78}, W("Report")}, {{82}, W("Ann")},
                          {{83}, W("Bob")},    {{84}, W("m")},
                          {{85}, W("s")},      {{59}, 5511},
                          {{43}, 20},          {{46}, 5422},
                          {{208, 145}, 6310},  {{45}, 5411},
                          {{88}, 5601},        {{95}, 1000},
                          {{96}, 2000},        {{97}, 3000},
                          {{98}, -4000},       {{63}, 5532},
                          {{101}, 5750},       {{102}, 5811},
                          {{103}, 5854},       {{104}, 5901},
                          {{174}, 6757},       {{477, 210, 175}, 6803},
                          {{176}, 7},          {{179}, 120}})
                  .Write(),
              "%MVNbegin: 001.0300\n%MVNtitle: Report\n%MVNsenderName: Ann\n%MVNrecipientName: Bob\n%MVNmessage: m\n"
              "%MVNjobStartMessage: s\n%MVNsignature: True\n%MVNcopyCount: 20\n%MVNrequirements: duplex(tumble)\n"
              "%MVNrequirements: slipSheeting\n%MVNbinding: None\n%MVNedgeStitching: None\n%MVNbookletMaker: False\n"
              "%MVNrequirements: uncollated\n%MVNrotation: 90\n%MVNxImageShift: 1\n%MVNyImageShift: 2\n"
              "%MVNx2ImageShift: 3\n%MVNy2ImageShift: -4\n%MVNdisposition: PRINT&SAVE\n"
              "%MVNhighlightPrintingColor: red\n%MVNhighlightMappingColor: yellow\n"
              "%MVNhighlightMappingAlgorithm: ColorToHighlight\n%MVNmismatchedHighlightPrintingColor: hold\n"
              "%MVNdocumentPaperColors: goldenrod\n%MVNpaperType-opacity: opaque\n"
              "%MVNpaperType-preFinish: PlainPreCutTab 0 7\n%MVNpaperType-weight: 120\n");
    EXPECT_EQ(PressModel({{{46}, 5421}, {{146}, 6321}, {{477, 210, 175}, 6890}, {{178}, 6921}}).Write(),
              "%MVNbegin: 001.0300\n%MVNtitle: Default job\n%MVNsenderName: Default Sender\n%MVNsignature: False\n"
              "%MVNcopyCount: 1\n%MVNrequirements: duplex\n%MVNoutputLocation: FinishingBypass TopTray\n"
              "%MVNrequirements: collated\n%MVNxImageShift: 0\n%MVNyImageShift: 0\n%MVNx2ImageShift: 0\n"
              "%MVNy2ImageShift: 0\n%MVNdisposition: PRINT\n%MVNpaperType-opacity: opaque\n"
              "%MVNpaperType-preFinish: PreprintedDrilled 3 0\n%MVNpaperType-weight: 90\n");
}

TEST(MvjtWriter, KeepsATextInItsLine) {
    const std::pair<const WCHAR*, const char*> cases[] = {
        {W("a\n%MVNdisposition: SAVE"), "a %MVNdisposition: SAVE"},
        {W("%MVNtitle: x\r\n"), "%MVNtitle: x  "},
        {W("\x01\x1F\x7F\x85z"), "    z"},
        {W("caf\u00E9 \u0416\u20AC"), "caf\xE9 ??"},
        {W("\xD800!"), "?!"},
        {W(""), "Default job"},
    };
    for (const auto& [text, expected] : cases) {
        PressModel press({{{78}, text}});
        const std::string ticket = press.Write();
        EXPECT_EQ(ValuesOf(ticket, "title"), expected);
        EXPECT_EQ(ValuesOf(ticket, "disposition"), "PRINT");
    }
    const WideString longText(65536, W('x'));
    EXPECT_EQ(ValuesOf(PressModel({{{78}, longText.c_str()}}).Write(), "title"), std::string(65536, 'x'));
}

TEST(MvjtWriter, AppendsToWhatTheBufferHolds) {
    PressModel press;
    ByteBuffer buffer("before", 6);
    WriteMvjt(press.GetServices(), buffer);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(buffer.getLpbyte()), 12), "before%MVNbe");
}

}  // namespace
