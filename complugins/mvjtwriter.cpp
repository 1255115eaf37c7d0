// The lines of an MVJT job ticket, in their order.
#include "mvjtwriter.h"

#include <facts/jobticketwords.h>
#include <facts/units.h>
#include <mvutil/morvaneutilities.h>

namespace {

using DataModelIds::kCurrentValue;
using DataModelIds::kNotSet;
using facts::jobticket::Line;
namespace feature = facts::feature;
namespace ticket = facts::jobticket;

const ticket::PreFinish* FindPreFinish(DWORD mediaType) {
    for (const ticket::PreFinish& preFinish : ticket::kPreFinishes)
        if (preFinish.mediaType == mediaType) return &preFinish;
    return nullptr;
}

class Writer {
public:
    explicit Writer(FeatureServices& services) : services_(services) {}

    const CXString& Write() {
        WriteNames();
        WriteSignature();
        WriteInteger(ticket::kCopies);
        const DWORD sides = WriteSides();
        WriteFinishing();
        WriteOption(ticket::kCollation);
        WriteRotation();
        WriteImageShifts(sides);
        for (const Line* line :
             {&ticket::kDisposition, &ticket::kHighlightPrintingColor, &ticket::kHighlightMappingColor,
              &ticket::kHighlightMapping, &ticket::kHighlightMismatch})
            WriteOption(*line);
        WriteWordOrName(ticket::kPaperColor);
        WritePaperType();
        WriteInteger(ticket::kPaperWeight);
        ReadPageExceptions();
        return text_;
    }

private:
    // A control character in the value would end the line, or say something to whoever reads the ticket.
    void WriteLine(const char* keyword, const CXString& value) {
        text_ += CXString(ticket::kLineStart) + CXString(keyword) + W(": ") +
                 MorvaneUtilities::ReplaceControlCharacters(value) + W("\n");
    }

    DWORD GetOption(const FeatureIdWithContext& id) { return services_.GetOptionFeature(id).GetValue().GetValueEnum(); }
    DWORD GetOption(DWORD id) { return GetOption(FeatureIdWithContext(FeatureId(id))); }
    CXString GetOptionName(DWORD id) { return services_.GetOptionFeature(FeatureId(id)).GetValue().GetValueName(); }

    // A text that is there but empty counts as not given.
    void WriteString(const Line& line, const WCHAR* defaultText = nullptr) {
        CXString value;
        const bool given =
            services_.GetStringFeature(FeatureId(line.feature)).GetValue(value, kCurrentValue) && !value.IsEmpty();
        if (given) {
            WriteLine(line.keyword, value);
        } else if (defaultText) {
            WriteLine(line.keyword, defaultText);
        }
    }

    void WriteInteger(const Line& line) {
        LONG value = 0;
        if (services_.GetIntegerFeature(FeatureId(line.feature)).GetValue(value, kCurrentValue))
            WriteLine(line.keyword, MorvaneUtilities::SafeFormatString(W("%ld"), value));
    }

    // A value without a word writes nothing.
    void WriteOption(const Line& line) {
        if (const char* word = line.FindWord(GetOption(line.feature))) WriteLine(line.keyword, word);
    }

    // The value. One that is set and has no word of its own stands under its name.
    DWORD WriteWordOrName(const Line& line) {
        const DWORD value = GetOption(line.feature);
        if (value == kNotSet) return value;
        const char* word = line.FindWord(value);
        WriteLine(line.keyword, word ? CXString(word) : GetOptionName(line.feature));
        return value;
    }

    void WriteNames() {
        WriteLine(ticket::kBegin, ticket::kVersion);
        WriteString(ticket::kTitle, W("Default job"));
        WriteString(ticket::kSender, W("Default Sender"));
        WriteString(ticket::kRecipient);
        WriteString(ticket::kMessage);
        WriteString(ticket::kStartMessage);
    }

    // Without a choice there is no signature.
    void WriteSignature() {
        const DWORD value = GetOption(ticket::kSignature.feature);
        const char* word = ticket::kSignature.FindWord(value == kNotSet ? DWORD{facts::value::kOff} : value);
        if (word) WriteLine(ticket::kSignature.keyword, word);
    }

    // The value, for the image shifts of the second side.
    DWORD WriteSides() { return WriteWordOrName(ticket::kSides); }

    void WriteFinishing() {
        if (GetOption(feature::kOutputLocation) != kNotSet) {
            WriteLine("outputLocation", W("FinishingBypass ") + GetOptionName(feature::kOutputLocation));
            return;
        }
        DWORD position = kNotSet;
        if (GetOption({FeatureId(feature::kFinishingSheets), FeatureId(feature::kSlipSheets)}) != kNotSet) {
            WriteLine("requirements", W("slipSheeting"));
        } else {
            position = GetOption(feature::kFinishing);
        }
        // What the position asks of each finisher.
        const auto write = [&](const Line& line, const char* nothing) {
            const char* word = line.FindWord(position);
            WriteLine(line.keyword, word ? word : nothing);
        };
        write(ticket::kBinding, "None");
        write(ticket::kEdgeStitching, "None");
        write(ticket::kBookletMaker, "False");
    }

    void WriteRotation() {
        const DWORD rotation = GetOption(ticket::kRotation.feature);
        if (rotation == kNotSet) return;
        const char* angle = ticket::kRotation.FindWord(rotation);
        WriteLine(ticket::kRotation.keyword, angle ? angle : "0");
    }

    void WriteImageShift(const Line& line) {
        Dimension shift(0, Dimension::Millimetres);
        if (!services_.GetDimensionFeature(FeatureId(line.feature)).GetValue(shift, kCurrentValue)) return;
        const int millimetres = shift.GetValue(Dimension::Millimetres).GetLongValue(facts::kToNearest);
        WriteLine(line.keyword, MorvaneUtilities::SafeFormatString(W("%d"), millimetres));
    }

    void WriteImageShifts(DWORD sides) {
        WriteImageShift(ticket::kImageShiftX);
        WriteImageShift(ticket::kImageShiftY);
        if (sides == facts::value::kOneSided) return;
        WriteImageShift(ticket::kImageShiftX2);
        WriteImageShift(ticket::kImageShiftY2);
    }

    void WritePaperType() {
        const DWORD mediaType = GetOption(feature::kMediaType);
        if (mediaType == kNotSet) return;
        const char* opacity = mediaType == facts::value::kTransparency ? "transparency" : "opaque";
        const bool drilled = GetOption(feature::kDrilledPaper) == facts::value::kDrilled;
        LONG tabs = 0;
        services_.GetIntegerFeature(FeatureId(feature::kTabs)).GetValue(tabs, kCurrentValue);
        const ticket::PreFinish* preFinish = FindPreFinish(mediaType);
        const CXString field(!preFinish ? opacity : drilled ? preFinish->drilled : preFinish->notDrilled);
        WriteLine("paperType-opacity", opacity);
        WriteLine("paperType-preFinish",
                  MorvaneUtilities::SafeFormatString(W("%s %d %ld"), field, drilled ? 3 : 0,
                                                     preFinish && !preFinish->withTabs ? LONG{0} : tabs));
    }

    // The exceptions are walked, so that a model that cannot give them fails here; no line is written for them.
    void ReadPageExceptions() {
        services_.GetListOfValues(FeatureId(feature::kInsertedPages));
        const ListOfValuesRef exceptions = services_.GetListOfValues(FeatureId(feature::kPageExceptions));
        for (std::size_t index = 0; index < exceptions.GetNumItems(); ++index) exceptions.GetListOfFeatures(index);
    }

    FeatureServices& services_;
    CXString text_;
};

}  // namespace

void WriteMvjt(FeatureServices& services, ByteBuffer& buffer) { buffer.appendAscii(Writer(services).Write()); }
