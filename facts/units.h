// Lengths of paper: the units' ratios and what a DEVMODE holds.
#pragma once

namespace facts {

inline constexpr int kMicrometresPerTenth = 100;  // a tenth of a millimetre is a DEVMODE's unit
inline constexpr int kMicrometresPerMillimetre = 1000;
// The largest number in a 16-bit field of a DEVMODE, and the longest side of a paper in micrometres that follows.
inline constexpr int kLargestField = 32767;
inline constexpr int kLongestSide = kLargestField * kMicrometresPerTenth;
// In micrometres: comparable software takes two sizes for the same within half a millimetre.
inline constexpr int kSizeTolerance = 500;

}  // namespace facts
