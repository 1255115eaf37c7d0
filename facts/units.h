// Lengths of paper: the units' ratios, rounding, and what a DEVMODE holds.
#pragma once

namespace facts {

inline constexpr int kMicrometresPerTenth = 100;  // a tenth of a millimetre is a DEVMODE's unit
inline constexpr int kMicrometresPerMillimetre = 1000;
// The largest number in a 16-bit field of a DEVMODE, and the longest side of a paper in micrometres that follows.
inline constexpr int kLargestField = 32767;
inline constexpr int kLongestSide = kLargestField * kMicrometresPerTenth;
inline constexpr int kShortestSide = kMicrometresPerTenth;
inline constexpr char kLongestMillimetres[] = "3276.7";  // the longest side, for people
// In micrometres: comparable software takes two sizes for the same within half a millimetre.
inline constexpr int kSizeTolerance = 500;
// What is added before a fraction is dropped: to the nearest whole number, a half down; and up.
inline constexpr double kToNearest = 0.499999;
inline constexpr double kUpwards = 0.999;

}  // namespace facts
