// The writer of job tickets: every line with every word, and their order.
#include <mvcore/testmodel.h>
#include <mvjtwriter.h>

#include <gtest/gtest.h>

#include <sstream>

namespace {

// A model of the press with settings made, such as "46=5421 477/210/175=6803 78=Report".
class PressModel {
public:
    explicit PressModel(const std::string& settings = "") {
        TextResourceLoader::Initialize(printer_.GetHandle(), false);  // the names of values are the product's texts
        std::istringstream words(settings);
        for (std::string path, value; std::getline(words >> std::ws, path, '=') && words >> value;) Set(path, value);
    }
    FeatureServices& GetServices() { return model_.GetServices(); }
    std::string Write(ByteBuffer buffer = {}) {
        WriteMvjt(GetServices(), buffer);
        return {reinterpret_cast<const char*>(buffer.getLpbyte()), buffer.getDword()};
    }

private:
    void Set(const std::string& path, const std::string& value) {
        std::istringstream steps(path);
        std::vector<DWORD> ids;
        for (std::string step; std::getline(steps, step, '/');) ids.push_back(static_cast<DWORD>(std::stoi(step)));
        const FeatureIdWithContext id = Id(ids);
        if (ids.back() >= 78 && ids.back() <= 85) {
            EXPECT_TRUE(GetServices().GetStringFeature(id).SetValue(CXString(value.c_str())));
        } else if (ids.back() == 43 || ids.back() == 176 || ids.back() == 179) {
            EXPECT_TRUE(GetServices().GetIntegerFeature(id).SetValue(std::stoi(value)));
        } else if (ids.back() >= 95 && ids.back() <= 98) {
            EXPECT_TRUE(
                GetServices().GetDimensionFeature(id).SetValue(Dimension(std::stoi(value), Dimension::Micrometres)));
        } else {
            // Offered first: the writer knows more than one product has.
            const auto option = static_cast<DWORD>(std::stoi(value));
            model_.GetIntegration().AddOptionValues(id, {ValueId(option)}, 1);
            EXPECT_TRUE(model_.SetOption(id, option));
        }
    }

    TestStore store_;
    TestPrinter printer_{kPress};
    TestModel model_{ProductFile(kPress), {}};
};

// The values of the lines of those keywords, both joined by "|"; "-" for a keyword without a line.
std::string ValuesOf(const std::string& ticket, const std::string& keywords) {
    std::string all;
    std::istringstream wanted(keywords);
    for (std::string keyword; std::getline(wanted, keyword, '|');) {
        const std::string start = "\n%MVN" + keyword + ": ";
        std::string values;
        for (std::size_t at = ticket.find(start); at != std::string::npos; at = ticket.find(start, at + 1)) {
            const std::size_t value = at + start.size();
            values += "|" + ticket.substr(value, ticket.find('\n', value) - value);
        }
        all += values.empty() ? "|-" : values;
    }
    return all.substr(1);
}

TEST(MvjtWriter, WritesEachLine) {
    const struct {
        const char *settings, *keywords, *values;
    } cases[] = {
        {"", "title|senderName|recipientName|message|jobStartMessage", "Default job|Default Sender|-|-|-"},
        {"", "signature|binding|edgeStitching|bookletMaker", "False|None|None|False"},
        {"46=5420 45=5412", "requirements", "simplex"},
        {"46=5423 45=5412", "requirements", "5423"},
        {"46=5001 45=5001", "requirements", "-"},
        {"146=6320 144=6254", "outputLocation|binding|edgeStitching|bookletMaker", "FinishingBypass Stacker|-|-|-"},
        {"146=6320 208/145=6310", "requirements", "simplex|collated"},
        {"208/145=6310", "requirements", "simplex|slipSheeting|collated"},
        {"208/145=6310 144=6254", "binding|edgeStitching|bookletMaker", "None|None|False"},
        {"144=6276", "binding|edgeStitching|bookletMaker", "right|None|False"},
        {"95=12499 96=12501", "xImageShift|yImageShift", "12|13"},
        {"46=5420 97=4000 98=4000", "x2ImageShift|y2ImageShift", "-|-"},
        {"46=5001 97=4000", "x2ImageShift|y2ImageShift", "4|0"},
        {"477/210/175=5001", "paperType-opacity|paperType-preFinish", "-|-"},
        {"477/210/175=6800 176=5", "paperType-opacity|paperType-preFinish", "opaque|Plain 0 0"},
        {"477/210/175=6801", "paperType-opacity|paperType-preFinish", "transparency|Plain 0 0"},
        {"477/210/175=6801 178=6921", "paperType-preFinish", "PlainDrilled 3 0"},
        {"477/210/175=6804 178=6921", "paperType-preFinish", "DrilledPreCutTab 3 0"},
        {"477/210/175=6890 178=6920", "paperType-preFinish", "Preprinted 0 0"},
        {"477/210/175=6820 176=5", "paperType-preFinish", "opaque 0 5"},
        {"477/210/175=6820 178=6921", "paperType-preFinish", "opaque 3 0"},
    };
    for (const auto& test : cases)
        EXPECT_EQ(ValuesOf(PressModel(test.settings).Write(), test.keywords), test.values) << test.settings;
}

TEST(MvjtWriter, WritesWholeTicketsInOrder) {
    EXPECT_EQ(PressModel("477/210/175=6800").Write(),
              "%MVNbegin: 001.0300\n%MVNtitle: Default job\n%MVNsenderName: Default Sender\n%MVNsignature: False\n"
              "%MVNcopyCount: 1\n%MVNrequirements: simplex\n%MVNbinding: None\n%MVNedgeStitching: None\n"
              "%MVNbookletMaker: False\n%MVNrequirements: collated\n%MVNxImageShift: 0\n%MVNyImageShift: 0\n"
              "%MVNdisposition: PRINT\n%MVNpaperType-opacity: opaque\n%MVNpaperType-preFinish: Plain 0 0\n"
              "%MVNpaperType-weight: 90\n");
    EXPECT_EQ(
        PressModel(
            "78=Report 82=Ann 83=Bob 84=m 85=s 59=5511 43=20 46=5422 208/145=6310 45=5411 88=5601 95=1000 96=2000 "
            "97=3000 98=-4000 63=5532 101=5750 102=5811 103=5854 104=5901 174=6757 477/210/175=6803 176=7 179=120")
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
    EXPECT_EQ(
        PressModel("46=5421 146=6321 477/210/175=6890 178=6921").Write(ByteBuffer("before", 6)),
        "before%MVNbegin: 001.0300\n%MVNtitle: Default job\n%MVNsenderName: Default Sender\n%MVNsignature: False\n"
        "%MVNcopyCount: 1\n%MVNrequirements: duplex\n%MVNoutputLocation: FinishingBypass TopTray\n"
        "%MVNrequirements: collated\n%MVNxImageShift: 0\n%MVNyImageShift: 0\n%MVNx2ImageShift: 0\n"
        "%MVNy2ImageShift: 0\n%MVNdisposition: PRINT\n%MVNpaperType-opacity: opaque\n"
        "%MVNpaperType-preFinish: PreprintedDrilled 3 0\n%MVNpaperType-weight: 90\n");
}

}  // namespace
