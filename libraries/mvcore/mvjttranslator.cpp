// Job ticket text: a first line with the version of the text, then a line for each setting that has a keyword.
#include "mvjttranslator.h"

#include <facts/jobticketwords.h>
#include <facts/units.h>
#include <mvutil/morvaneutilities.h>

#include <memory>
#include <optional>

namespace {

namespace ticket = facts::jobticket;

constexpr const ticket::Line* kLines[] = {
    &ticket::kTitle,
    &ticket::kSender,
    &ticket::kRecipient,
    &ticket::kMessage,
    &ticket::kStartMessage,
    &ticket::kSignature,
    &ticket::kCopies,
    &ticket::kSides,
    &ticket::kBinding,
    &ticket::kEdgeStitching,
    &ticket::kBookletMaker,
    &ticket::kCollation,
    &ticket::kRotation,
    &ticket::kImageShiftX,
    &ticket::kImageShiftY,
    &ticket::kImageShiftX2,
    &ticket::kImageShiftY2,
    &ticket::kDisposition,
    &ticket::kHighlightPrintingColor,
    &ticket::kHighlightMappingColor,
    &ticket::kHighlightMapping,
    &ticket::kHighlightMismatch,
    &ticket::kPaperColor,
    &ticket::kPaperWeight,
};

// Nothing for a value of an option that has no word.
std::optional<CXString> GetText(const FeatureValue& value, FeatureKind kind, const ticket::Line& line) {
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
                                     .GetLongValue(facts::kToNearest));
            return text;
        default:
            const char* word = line.FindWord(static_cast<DWORD>(value.number));
            return word ? std::optional<CXString>(word) : std::nullopt;
    }
}

CXString MakeLine(const char* keyword, const CXString& text) {
    return CXString(ticket::kLineStart) + CXString(keyword) + W(": ") + text + W("\n");
}

class Translator final : public MvjtTranslator {
public:
    explicit Translator(const ModelParts& parts) noexcept : parts_(parts) {}

    void Destroy() noexcept override { std::default_delete<Translator>()(this); }

    bool ExportToBuffer(ByteBuffer& buffer, bool withDefaults) override {
        CXString lines;
        for (const ticket::Line* line : kLines) {
            const Feature* feature = parts_.root.Find(FeatureId(line->feature));
            if (!feature || (!withDefaults && !feature->IsSet())) continue;
            const std::optional<FeatureValue> value = feature->GetEffective();
            const std::optional<CXString> text = value ? GetText(*value, feature->GetKind(), *line) : std::nullopt;
            if (text) lines += MakeLine(line->keyword, *text);
        }
        buffer.appendAscii(MakeLine(ticket::kBegin, ticket::kVersion) + lines);
        return !lines.IsEmpty();
    }

private:
    const ModelParts& parts_;
};

}  // namespace

MvjtTranslator* MakeMvjtTranslator(const ModelParts& parts) { return std::make_unique<Translator>(parts).release(); }
