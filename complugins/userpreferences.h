// Names of the user's remembered job preferences, for the source of the data model that carries them.
#pragma once

#include <facts/features.h>
#include <widetext.h>
#include <windows.h>

#include <span>

namespace userpreferences {

inline constexpr LONG kIntegerDefault = 5;

// The eleven preferences as they are stored together.
struct MaskBit {
    DWORD feature;
    LONG bit;
};
// The bits' order is not the features'.
inline constexpr DWORD kFirstOfMask = facts::feature::kFirstMaskedPreference;
inline constexpr MaskBit kMaskBits[] = {{kFirstOfMask, 0x1},       {kFirstOfMask + 2, 0x2},   {kFirstOfMask + 1, 0x4},
                                        {kFirstOfMask + 4, 0x8},   {kFirstOfMask + 3, 0x10},  {kFirstOfMask + 5, 0x20},
                                        {kFirstOfMask + 6, 0x40},  {kFirstOfMask + 7, 0x80},  {kFirstOfMask + 8, 0x100},
                                        {kFirstOfMask + 9, 0x200}, {kFirstOfMask + 10, 0x400}};
inline constexpr LONG kWholeMask = 0x7FF;

// Source kinds of title, sender and recipient.
inline constexpr LONG kSystemText = 1;
inline constexpr LONG kCustomText = 2;

// The user's key, and what stands before the controller family in the names of its protected values.
inline constexpr const WCHAR* kKey = W("Job Preferences");
inline constexpr const WCHAR* kMaskValue = W("XPreferenceMask");
inline constexpr const WCHAR* kCompanionValue = W("XPreferenceCompanion");
inline constexpr const WCHAR* kIntegerValue = W("XPreferenceInteger");
inline constexpr const WCHAR* kProtectedValue = W("XProtectedString");
inline constexpr const WCHAR* kProtectedTimeValue = W("XProtectedStringTime");
inline constexpr const WCHAR* kSecondProtectedValue = W("XSecondProtectedString");

}  // namespace userpreferences
