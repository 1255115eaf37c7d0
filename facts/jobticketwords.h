// The MVJT job ticket format: the keywords of its lines, the features that they speak of, and the words for those
// features' values.
#pragma once

#include <facts/features.h>
#include <facts/values.h>

namespace facts::jobticket {

struct Word {
    unsigned value;
    const char* word;
};

// A line that is a feature's value and nothing else: its text, its number, or its word.
struct Line {
    constexpr Line(unsigned id, const char* word) : feature(id), keyword(word) {}
    template <unsigned Count>
    constexpr Line(unsigned id, const char* word, const Word (&wordsOfValues)[Count])
        : feature(id), keyword(word), words(wordsOfValues), wordCount(Count) {}

    // The word of a value, or null.
    constexpr const char* FindWord(unsigned wanted) const noexcept {
        for (unsigned index = 0; index < wordCount; ++index)
            if (words[index].value == wanted) return words[index].word;
        return nullptr;
    }

    unsigned feature;
    const char* keyword;
    const Word* words = nullptr;  // of an option
    unsigned wordCount = 0;
};

inline constexpr Word kSignatureWords[] = {{value::kOff, "False"}, {value::kOn, "True"}};
inline constexpr Word kSidesWords[] = {
    {value::kOneSided, "simplex"}, {value::kTwoSidedLongEdge, "duplex"}, {value::kTwoSidedShortEdge, "duplex(tumble)"}};
inline constexpr Word kBindingWords[] = {{value::kBoundLeft, "left"}, {value::kBoundRight, "right"}};
inline constexpr Word kEdgeStitchingWords[] = {
    {value::kStaplePortrait, "SinglePortrait"},
    {value::kStapleLandscape, "SingleLandscape"},
    {value::kStapleRightPortrait, "RightSinglePortrait"},
    {value::kStapleRightLandscape, "RightSingleLandscape"},
    {value::kTwoStaplesLandscape, "DualLandscape"},
    {value::kTwoStaplesPortrait, "DualPortrait"},
    {value::kTwoStaplesRightLandscape, "RightDualLandscape"},
    {value::kTwoStaplesRightPortrait, "RightDualPortrait"},
};
inline constexpr Word kBookletWords[] = {{value::kBooklet, "True"}};
inline constexpr Word kCollationWords[] = {{value::kCollated, "collated"}, {value::kUncollated, "uncollated"}};
inline constexpr Word kRotationWords[] = {
    {value::kRotated0, "0"}, {value::kRotated90, "90"}, {value::kRotated180, "180"}, {value::kRotated270, "270"}};
inline constexpr Word kDispositionWords[] = {
    {value::kPrint, "PRINT"}, {value::kSave, "SAVE"}, {value::kPrintAndSave, "PRINT&SAVE"}};
// The numbers of these four tables stand nowhere else.
inline constexpr Word kHighlightPrintingColorWords[] = {
    {5750, "red"},      {5751, "green"}, {5752, "blue"}, {5753, "cyan"},   {5754, "magenta"}, {5755, "black"},
    {5756, "cardinal"}, {5757, "royal"}, {5758, "ruby"}, {5759, "violet"}, {5760, "brown"},   {5762, "other"},
};
inline constexpr Word kHighlightMappingColorWords[] = {
    {5800, "red"},   {5801, "green"},    {5802, "blue"},  {5803, "cyan"}, {5804, "magenta"},
    {5805, "black"}, {5806, "cardinal"}, {5807, "royal"}, {5808, "ruby"}, {5809, "violet"},
    {5810, "brown"}, {5811, "yellow"},   {5812, "other"},
};
inline constexpr Word kHighlightMappingWords[] = {
    {5850, "Automatic"},      {5851, "Pictorial"},        {5852, "Presentation"},
    {5853, "PictorialTable"}, {5854, "ColorToHighlight"}, {5855, "Monochrome"},
};
inline constexpr Word kHighlightMismatchWords[] = {{5900, "selectCurrent"}, {5901, "hold"}, {5902, "abort"}};
inline constexpr Word kPaperColorWords[] = {
    {value::kNoColor, "noColor"}, {value::kWhite, "white"}, {value::kPink, "pink"},   {value::kYellow, "yellow"},
    {value::kBlue, "blue"},       {value::kGreen, "green"}, {value::kBuff, "buff"},   {value::kGoldenrod, "goldenrod"},
    {value::kRed, "red"},         {value::kGrey, "gray"},   {value::kIvory, "ivory"}, {value::kOrange, "orange"},
};

inline constexpr Line kTitle(feature::kTitle, "title");
inline constexpr Line kSender(feature::kSender, "senderName");
inline constexpr Line kRecipient(feature::kRecipient, "recipientName");
inline constexpr Line kMessage(feature::kMessage, "message");
inline constexpr Line kStartMessage(feature::kStartMessage, "jobStartMessage");
inline constexpr Line kSignature(feature::kSignature, "signature", kSignatureWords);
inline constexpr Line kCopies(feature::kCopies, "copyCount");
inline constexpr Line kSides(feature::kSides, "requirements", kSidesWords);
inline constexpr Line kBinding(feature::kFinishing, "binding", kBindingWords);
inline constexpr Line kEdgeStitching(feature::kFinishing, "edgeStitching", kEdgeStitchingWords);
inline constexpr Line kBookletMaker(feature::kFinishing, "bookletMaker", kBookletWords);
inline constexpr Line kCollation(feature::kCollation, "requirements", kCollationWords);
inline constexpr Line kRotation(feature::kRotation, "rotation", kRotationWords);
inline constexpr Line kImageShiftX(feature::kImageShiftX, "xImageShift");
inline constexpr Line kImageShiftY(feature::kImageShiftY, "yImageShift");
inline constexpr Line kImageShiftX2(feature::kImageShiftX2, "x2ImageShift");
inline constexpr Line kImageShiftY2(feature::kImageShiftY2, "y2ImageShift");
inline constexpr Line kDisposition(feature::kDisposition, "disposition", kDispositionWords);
inline constexpr Line kHighlightPrintingColor(feature::kHighlightPrintingColor, "highlightPrintingColor",
                                              kHighlightPrintingColorWords);
inline constexpr Line kHighlightMappingColor(feature::kHighlightMappingColor, "highlightMappingColor",
                                             kHighlightMappingColorWords);
inline constexpr Line kHighlightMapping(feature::kHighlightMapping, "highlightMappingAlgorithm",
                                        kHighlightMappingWords);
inline constexpr Line kHighlightMismatch(feature::kHighlightMismatch, "mismatchedHighlightPrintingColor",
                                         kHighlightMismatchWords);
inline constexpr Line kPaperColor(feature::kPaperColor, "documentPaperColors", kPaperColorWords);
inline constexpr Line kPaperWeight(feature::kPaperWeight, "paperType-weight");

// What stands before every keyword, and the first line with the version of the format.
inline constexpr char kLineStart[] = "%MVN";
inline constexpr char kBegin[] = "begin";
inline constexpr char kVersion[] = "001.0300";

// First field of the line paperType-preFinish by media type, and whether the tab count ends it.
struct PreFinish {
    unsigned mediaType;
    const char* notDrilled;
    const char* drilled;
    bool withTabs;
};
inline constexpr PreFinish kPreFinishes[] = {
    {value::kPlain, "Plain", "PlainDrilled", false},
    {value::kTransparency, "Plain", "PlainDrilled", false},
    {value::kPreCutTabs, "PlainPreCutTab", "DrilledPreCutTab", true},
    {value::kFullTabs, "PlainPreCutTab", "DrilledPreCutTab", true},
    {value::kPreprinted, "Preprinted", "PreprintedDrilled", false},
};

}  // namespace facts::jobticket
