// The words of the MVJT job ticket format for the values of option features.
#pragma once

#include <widetext.h>
#include <windows.h>

#include <cstddef>

struct MvjtWord {
    DWORD value;
    const WCHAR* word;
};

// The word of a value, or null.
inline const WCHAR* FindMvjtWord(const MvjtWord* words, std::size_t count, DWORD value) {
    for (const MvjtWord* word = words; word != words + count; ++word)
        if (word->value == value) return word->word;
    return nullptr;
}

inline constexpr DWORD kSidesSimplex = 5420;
inline constexpr DWORD kMediaTypeTransparency = 6801;
inline constexpr DWORD kMediaDrilled = 6921;

inline constexpr MvjtWord kSignatureWords[] = {{5001, W("False")}, {5510, W("False")}, {5511, W("True")}};
inline constexpr MvjtWord kSidesWords[] = {
    {kSidesSimplex, W("simplex")}, {5421, W("duplex")}, {5422, W("duplex(tumble)")}};
inline constexpr MvjtWord kCollationWords[] = {{5410, W("collated")}, {5411, W("uncollated")}};
inline constexpr MvjtWord kRotationWords[] = {{5600, W("0")}, {5601, W("90")}, {5602, W("180")}, {5603, W("270")}};
inline constexpr MvjtWord kDispositionWords[] = {{5530, W("PRINT")}, {5531, W("SAVE")}, {5532, W("PRINT&SAVE")}};
inline constexpr MvjtWord kPrintingColorWords[] = {
    {5750, W("red")},     {5751, W("green")},  {5752, W("blue")},     {5753, W("cyan")},
    {5754, W("magenta")}, {5755, W("black")},  {5756, W("cardinal")}, {5757, W("royal")},
    {5758, W("ruby")},    {5759, W("violet")}, {5760, W("brown")},    {5762, W("other")},
};
inline constexpr MvjtWord kMappingColorWords[] = {
    {5800, W("red")},   {5801, W("green")},    {5802, W("blue")},  {5803, W("cyan")}, {5804, W("magenta")},
    {5805, W("black")}, {5806, W("cardinal")}, {5807, W("royal")}, {5808, W("ruby")}, {5809, W("violet")},
    {5810, W("brown")}, {5811, W("yellow")},   {5812, W("other")},
};
inline constexpr MvjtWord kMappingAlgorithmWords[] = {
    {5850, W("Automatic")},      {5851, W("Pictorial")},        {5852, W("Presentation")},
    {5853, W("PictorialTable")}, {5854, W("ColorToHighlight")}, {5855, W("Monochrome")},
};
inline constexpr MvjtWord kMismatchWords[] = {{5900, W("selectCurrent")}, {5901, W("hold")}, {5902, W("abort")}};
inline constexpr MvjtWord kPaperColorWords[] = {
    {6750, W("noColor")}, {6751, W("white")}, {6752, W("pink")},  {6753, W("yellow")},
    {6754, W("blue")},    {6755, W("green")}, {6756, W("buff")},  {6757, W("goldenrod")},
    {6758, W("red")},     {6759, W("gray")},  {6760, W("ivory")}, {6761, W("orange")},
};

// Lines that are an option's word and nothing else, in the order in which they are written.
struct MvjtOptionLine {
    DWORD feature;
    const WCHAR* keyword;
    const MvjtWord* words;
    std::size_t count;
};
template <std::size_t Count>
constexpr MvjtOptionLine MakeOptionLine(DWORD feature, const WCHAR* keyword, const MvjtWord (&words)[Count]) {
    return {feature, keyword, words, Count};
}
inline constexpr MvjtOptionLine kHandlingLines[] = {
    MakeOptionLine(63, W("disposition"), kDispositionWords),
    MakeOptionLine(101, W("highlightPrintingColor"), kPrintingColorWords),
    MakeOptionLine(102, W("highlightMappingColor"), kMappingColorWords),
    MakeOptionLine(103, W("highlightMappingAlgorithm"), kMappingAlgorithmWords),
    MakeOptionLine(104, W("mismatchedHighlightPrintingColor"), kMismatchWords),
};

// What a finishing position (feature 144) asks of each finisher; null where it asks nothing.
struct MvjtFinishing {
    const WCHAR* staple = nullptr;
    const WCHAR* binding = nullptr;
    const WCHAR* booklet = nullptr;
};
inline MvjtFinishing FindMvjtFinishing(DWORD position) {
    constexpr struct {
        DWORD position;
        MvjtFinishing finishing;
    } kPositions[] = {
        {6252, {nullptr, nullptr, W("True")}},
        {6254, {W("SinglePortrait"), nullptr, nullptr}},
        {6255, {W("SingleLandscape"), nullptr, nullptr}},
        {6256, {W("RightSinglePortrait"), nullptr, nullptr}},
        {6257, {W("RightSingleLandscape"), nullptr, nullptr}},
        {6258, {W("DualLandscape"), nullptr, nullptr}},
        {6259, {W("DualPortrait"), nullptr, nullptr}},
        {6260, {W("RightDualLandscape"), nullptr, nullptr}},
        {6261, {W("RightDualPortrait"), nullptr, nullptr}},
        {6275, {nullptr, W("left"), nullptr}},
        {6276, {nullptr, W("right"), nullptr}},
    };
    for (const auto& row : kPositions)
        if (row.position == position) return row.finishing;
    return {};
}

// First field of the pre-finish text by media type, and whether the tab count follows it.
struct MvjtPreFinish {
    DWORD mediaType;
    const WCHAR* notDrilled;
    const WCHAR* drilled;
    bool withTabs;
};
inline constexpr MvjtPreFinish kPreFinishes[] = {
    {6800, W("Plain"), W("PlainDrilled"), false},
    {6801, W("Plain"), W("PlainDrilled"), false},
    {6803, W("PlainPreCutTab"), W("DrilledPreCutTab"), true},
    {6804, W("PlainPreCutTab"), W("DrilledPreCutTab"), true},
    {6890, W("Preprinted"), W("PreprintedDrilled"), false},
};
inline const MvjtPreFinish* FindMvjtPreFinish(DWORD mediaType) {
    for (const MvjtPreFinish& preFinish : kPreFinishes)
        if (preFinish.mediaType == mediaType) return &preFinish;
    return nullptr;
}
