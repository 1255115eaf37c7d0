// The lines of an MVJT job ticket, in their order.
#include "mvjtwriter.h"

#include <mvutil/morvaneutilities.h>

#include <iterator>

#include "mvjtwords.h"

namespace {

using DataModelIds::kCurrentValue;
using DataModelIds::kNotSet;

class Writer {
public:
    explicit Writer(FeatureServices& services) : services_(services) {}

    const CXString& Write() {
        WriteNames();
        WriteOption(59, W("signature"), kSignatureWords, std::size(kSignatureWords));
        WriteInteger(43, W("copyCount"));
        const DWORD sides = WriteSides();
        WriteFinishing();
        WriteOption(45, W("requirements"), kCollationWords, std::size(kCollationWords));
        WriteRotation();
        WriteImageShifts(sides);
        for (const MvjtOptionLine& line : kHandlingLines)
            WriteOption(line.feature, line.keyword, line.words, line.count);
        WriteDocumentPaperColor();
        WritePaperType();
        WriteInteger(179, W("paperType-weight"));
        ReadPageExceptions();
        return text_;
    }

private:
    // A control character in the value would end the line, or say something to whoever reads the ticket.
    void WriteLine(const WCHAR* keyword, const CXString& value) {
        text_ += W("%MVN");
        text_ += keyword;
        text_ += W(": ");
        text_ += MorvaneUtilities::ReplaceControlCharacters(value);
        text_ += W("\n");
    }

    DWORD GetOption(FeatureIdWithContext feature) {
        return services_.GetOptionFeature(feature).GetValue().GetValueEnum();
    }
    CXString GetOptionName(DWORD feature) {
        return services_.GetOptionFeature(FeatureId(feature)).GetValue().GetValueName();
    }

    // A text that is there but empty counts as not given.
    void WriteString(DWORD feature, const WCHAR* keyword, const WCHAR* defaultText = nullptr) {
        CXString value;
        const bool given =
            services_.GetStringFeature(FeatureId(feature)).GetValue(value, kCurrentValue) && !value.IsEmpty();
        if (given) {
            WriteLine(keyword, value);
        } else if (defaultText) {
            WriteLine(keyword, defaultText);
        }
    }

    void WriteInteger(DWORD feature, const WCHAR* keyword) {
        LONG value = 0;
        if (services_.GetIntegerFeature(FeatureId(feature)).GetValue(value, kCurrentValue))
            WriteLine(keyword, MorvaneUtilities::SafeFormatString(W("%ld"), value));
    }

    // A value without a word writes nothing.
    void WriteOption(DWORD feature, const WCHAR* keyword, const MvjtWord* words, std::size_t count) {
        if (const WCHAR* word = FindMvjtWord(words, count, GetOption(FeatureId(feature)))) WriteLine(keyword, word);
    }

    void WriteNames() {
        WriteLine(W("begin"), W("001.0300"));
        WriteString(78, W("title"), W("Default job"));
        WriteString(82, W("senderName"), W("Default Sender"));
        WriteString(83, W("recipientName"));
        WriteString(84, W("message"));
        WriteString(85, W("jobStartMessage"));
    }

    // The value, for the image shifts of the second side. One without a word of its own is written by its name.
    DWORD WriteSides() {
        const DWORD sides = GetOption(FeatureId(46));
        if (sides == kNotSet) return sides;
        const WCHAR* word = FindMvjtWord(kSidesWords, std::size(kSidesWords), sides);
        WriteLine(W("requirements"), word ? CXString(word) : GetOptionName(46));
        return sides;
    }

    void WriteFinishing() {
        if (GetOption(FeatureId(146)) != kNotSet) {
            WriteLine(W("outputLocation"), W("FinishingBypass ") + GetOptionName(146));
            return;
        }
        MvjtFinishing finishing;
        if (GetOption({FeatureId(208), FeatureId(145)}) != kNotSet) {
            WriteLine(W("requirements"), W("slipSheeting"));
        } else {
            finishing = FindMvjtFinishing(GetOption(FeatureId(144)));
        }
        WriteLine(W("binding"), finishing.binding ? finishing.binding : W("None"));
        WriteLine(W("edgeStitching"), finishing.staple ? finishing.staple : W("None"));
        WriteLine(W("bookletMaker"), finishing.booklet ? finishing.booklet : W("False"));
    }

    void WriteRotation() {
        const DWORD rotation = GetOption(FeatureId(88));
        if (rotation == kNotSet) return;
        const WCHAR* angle = FindMvjtWord(kRotationWords, std::size(kRotationWords), rotation);
        WriteLine(W("rotation"), angle ? angle : W("0"));
    }

    void WriteImageShift(DWORD feature, const WCHAR* keyword) {
        Dimension shift(0, Dimension::Millimetres);
        if (!services_.GetDimensionFeature(FeatureId(feature)).GetValue(shift, kCurrentValue)) return;
        const int millimetres = shift.GetValue(Dimension::Millimetres).GetLongValue(0.499999);
        WriteLine(keyword, MorvaneUtilities::SafeFormatString(W("%d"), millimetres));
    }

    void WriteImageShifts(DWORD sides) {
        WriteImageShift(95, W("xImageShift"));
        WriteImageShift(96, W("yImageShift"));
        if (sides == kSidesSimplex) return;
        WriteImageShift(97, W("x2ImageShift"));
        WriteImageShift(98, W("y2ImageShift"));
    }

    void WriteDocumentPaperColor() {
        const DWORD color = GetOption(FeatureId(174));
        if (color == kNotSet) return;
        const WCHAR* word = FindMvjtWord(kPaperColorWords, std::size(kPaperColorWords), color);
        WriteLine(W("documentPaperColors"), word ? CXString(word) : GetOptionName(174));
    }

    void WritePaperType() {
        const DWORD mediaType = GetOption(FeatureId(175));
        if (mediaType == kNotSet) return;
        const WCHAR* opacity = mediaType == kMediaTypeTransparency ? W("transparency") : W("opaque");
        const bool drilled = GetOption(FeatureId(178)) == kMediaDrilled;
        LONG tabs = 0;
        services_.GetIntegerFeature(FeatureId(176)).GetValue(tabs, kCurrentValue);
        const MvjtPreFinish* preFinish = FindMvjtPreFinish(mediaType);
        const WCHAR* field = !preFinish ? opacity : drilled ? preFinish->drilled : preFinish->notDrilled;
        WriteLine(W("paperType-opacity"), opacity);
        WriteLine(W("paperType-preFinish"),
                  MorvaneUtilities::SafeFormatString(W("%s %d %ld"), field, drilled ? 3 : 0,
                                                     preFinish && !preFinish->withTabs ? LONG{0} : tabs));
    }

    // The exceptions are walked, so that a model that cannot give them fails here; no line is written for them.
    void ReadPageExceptions() {
        services_.GetListOfValues(FeatureId(200));
        const ListOfValuesRef exceptions = services_.GetListOfValues(FeatureId(199));
        for (std::size_t index = 0; index < exceptions.GetNumItems(); ++index) exceptions.GetListOfFeatures(index);
    }

    FeatureServices& services_;
    CXString text_;
};

}  // namespace

void WriteMvjt(FeatureServices& services, ByteBuffer& buffer) { buffer.appendAscii(Writer(services).Write()); }
