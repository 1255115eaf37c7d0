// What the numbers in a DEVMODE's public fields stand for, in words for people.
#pragma once

namespace facts {

struct DevmodeWord {
    long value;
    const char* word;
};

inline constexpr DevmodeWord kOrientationWords[] = {{1, "portrait"}, {2, "landscape"}};
inline constexpr DevmodeWord kDuplexWords[] = {
    {1, "one-sided"}, {2, "two-sided, long edge"}, {3, "two-sided, short edge"}};
inline constexpr DevmodeWord kColorWords[] = {{1, "monochrome"}, {2, "colour"}};
inline constexpr DevmodeWord kCollateWords[] = {{0, "uncollated"}, {1, "collated"}};
inline constexpr DevmodeWord kQualityWords[] = {{-4, "high"}, {-3, "medium"}, {-2, "low"}, {-1, "draft"}};
inline constexpr DevmodeWord kTrueTypeWords[] = {
    {1, "bitmaps"}, {2, "downloaded"}, {3, "substituted by device fonts"}, {4, "downloaded as outlines"}};
inline constexpr DevmodeWord kColorMethodWords[] = {{1, "none"}, {2, "system"}, {3, "driver"}, {4, "device"}};
inline constexpr DevmodeWord kColorIntentWords[] = {
    {1, "business graphics"}, {2, "photographs"}, {3, "relative colorimetric"}, {4, "absolute colorimetric"}};
inline constexpr DevmodeWord kDitherWords[] = {{1, "none"},     {2, "coarse"},          {3, "fine"},
                                               {4, "line art"}, {5, "error diffusion"}, {10, "grey scale"}};

}  // namespace facts
