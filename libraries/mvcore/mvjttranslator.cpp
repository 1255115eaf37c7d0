// Job ticket text: a first line with the version of the text, then a line for each setting that has a keyword.
#include "mvjttranslator.h"

#include <mvutil/morvaneutilities.h>

#include <memory>
#include <optional>
#include <span>

namespace {

struct Word {
    LONG value;
    const WCHAR* text;
};

// clang-format off
constexpr Word kSignatures[]   = {{5510, W("False")}, {5511, W("True")}};
constexpr Word kSides[]        = {{5420, W("simplex")}, {5421, W("duplex")}, {5422, W("duplex(tumble)")}};
constexpr Word kCollations[]   = {{5410, W("collated")}, {5411, W("uncollated")}};
constexpr Word kRotations[]    = {{5600, W("0")}, {5601, W("90")}, {5602, W("180")}, {5603, W("270")}};
constexpr Word kDispositions[] = {{5530, W("PRINT")}, {5531, W("SAVE")}, {5532, W("PRINT&SAVE")}};
constexpr Word kBindings[]     = {{6275, W("left")}, {6276, W("right")}};
constexpr Word kBooklets[]     = {{6252, W("True")}};
constexpr Word kStitches[]     = {
    {6254, W("SinglePortrait")},      {6255, W("SingleLandscape")},
    {6256, W("RightSinglePortrait")}, {6257, W("RightSingleLandscape")},
    {6258, W("DualLandscape")},       {6259, W("DualPortrait")},
    {6260, W("RightDualLandscape")},  {6261, W("RightDualPortrait")},
};
constexpr Word kInks[] = {  // of highlight printing, from 5750; of highlight mapping, from 5800
    {5750, W("red")}, {5751, W("green")}, {5752, W("blue")}, {5753, W("cyan")}, {5754, W("magenta")},
    {5755, W("black")}, {5756, W("cardinal")}, {5757, W("royal")}, {5758, W("ruby")}, {5759, W("violet")},
    {5760, W("brown")}, {5762, W("other")},
    {5800, W("red")}, {5801, W("green")}, {5802, W("blue")}, {5803, W("cyan")}, {5804, W("magenta")},
    {5805, W("black")}, {5806, W("cardinal")}, {5807, W("royal")}, {5808, W("ruby")}, {5809, W("violet")},
    {5810, W("brown")}, {5811, W("yellow")}, {5812, W("other")},
};
constexpr Word kMappings[] = {
    {5850, W("Automatic")},      {5851, W("Pictorial")},        {5852, W("Presentation")},
    {5853, W("PictorialTable")}, {5854, W("ColorToHighlight")}, {5855, W("Monochrome")},
};
constexpr Word kMismatches[]   = {{5900, W("selectCurrent")}, {5901, W("hold")}, {5902, W("abort")}};
constexpr Word kPaperColours[] = {
    {6750, W("noColor")}, {6751, W("white")}, {6752, W("pink")}, {6753, W("yellow")}, {6754, W("blue")},
    {6755, W("green")}, {6756, W("buff")}, {6757, W("goldenrod")}, {6758, W("red")}, {6759, W("gray")},
    {6760, W("ivory")}, {6761, W("orange")},
};

// Options without words are left out, as is a value that is not among them; other kinds need none.
struct Line {
    DWORD feature;
    const WCHAR* keyword;
    std::span<const Word> words;
};
constexpr Line kLines[] = {
    { 78, W("title"), {}},
    { 82, W("senderName"), {}},
    { 83, W("recipientName"), {}},
    { 84, W("message"), {}},
    { 85, W("jobStartMessage"), {}},
    { 59, W("signature"), kSignatures},
    { 43, W("copyCount"), {}},
    { 46, W("requirements"), kSides},
    {144, W("binding"), kBindings},
    {144, W("edgeStitching"), kStitches},
    {144, W("bookletMaker"), kBooklets},
    { 45, W("requirements"), kCollations},
    { 88, W("rotation"), kRotations},
    { 95, W("xImageShift"), {}},
    { 96, W("yImageShift"), {}},
    { 97, W("x2ImageShift"), {}},
    { 98, W("y2ImageShift"), {}},
    { 63, W("disposition"), kDispositions},
    {101, W("highlightPrintingColor"), kInks},
    {102, W("highlightMappingColor"), kInks},
    {103, W("highlightMappingAlgorithm"), kMappings},
    {104, W("mismatchedHighlightPrintingColor"), kMismatches},
    {174, W("documentPaperColors"), kPaperColours},
    {179, W("paperType-weight"), {}},
};
// clang-format on

constexpr double kRounding = 0.499999;

std::optional<CXString> GetText(const FeatureValue& value, FeatureKind kind, std::span<const Word> words) {
    CXString text;
    switch (kind) {
        case FeatureKind::String:
            return MorvaneUtilities::ReplaceControlCharacters(value.text);
        case FeatureKind::Integer:
            text.Format(W("%d"), value.number);
            return text;
        case FeatureKind::Dimension:
            text.Format(W("%d"), Dimension(value.number, Dimension::Micrometres)
                                     .GetValue(Dimension::Millimetres)
                                     .GetLongValue(kRounding));
            return text;
        default:
            for (const Word& word : words)
                if (word.value == value.number) return CXString(word.text);
            return std::nullopt;
    }
}

class Translator final : public MvjtTranslator {
public:
    explicit Translator(const ModelParts& parts) noexcept : parts_(parts) {}

    void Destroy() noexcept override { std::default_delete<Translator>()(this); }

    bool ExportToBuffer(ByteBuffer& buffer, bool withDefaults) override {
        CXString ticket;
        for (const Line& line : kLines) {
            const Feature* feature = parts_.root.Find(FeatureId(line.feature));
            if (!feature || (!withDefaults && !feature->IsSet())) continue;
            const std::optional<FeatureValue> value = feature->GetEffective();
            const std::optional<CXString> text = value ? GetText(*value, feature->GetKind(), line.words) : std::nullopt;
            if (text) ticket += CXString(W("%MVN")) + line.keyword + W(": ") + *text + W("\n");
        }
        buffer.appendAscii(CXString(W("%MVNbegin: 001.0300\n")) + ticket);
        return !ticket.IsEmpty();
    }

private:
    const ModelParts& parts_;
};

}  // namespace

MvjtTranslator* MakeMvjtTranslator(const ModelParts& parts) { return std::make_unique<Translator>(parts).release(); }
