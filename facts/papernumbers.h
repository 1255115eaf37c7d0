// Paper numbers of a DEVMODE and who gives them: ranges that never meet, so that no paper is taken for another.
#pragma once

#include <facts/units.h>

namespace facts {

// From 1: the system's papers, and the built-in forms, which are numbered likewise.
inline constexpr int kLastSystemPaper = 118;
// Behind the system's, without the custom paper's: forms that users and printers add, in the order of the print server.
inline constexpr int kLastFormPaper = 8999;
// Sizes of a product for which the system has no number.
inline constexpr int kFirstProductPaper = 9000;
inline constexpr int kLastProductPaper = 9999;
// Custom sizes that the user keeps; no form has one of these. A DEVMODE's number is signed.
inline constexpr int kFirstUserPaper = 10000;
inline constexpr int kLastUserPaper = kLargestField;

}  // namespace facts
