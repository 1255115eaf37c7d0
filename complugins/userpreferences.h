// Numbers and names of the user's remembered job preferences, for the source of the data model that carries them.
#pragma once

#include <widetext.h>
#include <windows.h>

#include <span>

namespace userpreferences {

inline constexpr DWORD kProtectedString = 42;
inline constexpr DWORD kMaskSwitch = 162;
inline constexpr DWORD kControllerFamily = 285;
inline constexpr DWORD kText = 441;
inline constexpr DWORD kInteger = 571;
inline constexpr LONG kIntegerDefault = 5;
inline constexpr DWORD kCompanionOfDevice = 575;
inline constexpr DWORD kFirstOfMask = 580;  // to kCompanion - 1
inline constexpr DWORD kCompanion = 591;
inline constexpr DWORD kSecondProtectedString = 648;

// The eleven preferences as they are stored together.
struct MaskBit {
    DWORD feature;
    LONG bit;
};
inline constexpr MaskBit kMaskBits[] = {{580, 0x1},  {582, 0x2},  {581, 0x4},   {584, 0x8},   {583, 0x10}, {585, 0x20},
                                        {586, 0x40}, {587, 0x80}, {588, 0x100}, {589, 0x200}, {590, 0x400}};
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
