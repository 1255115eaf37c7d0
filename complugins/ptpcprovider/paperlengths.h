// What the units that deal with paper share: the records' lengths in the Print Schema's unit.
#pragma once

#include <facts/units.h>
#include <windows.h>

#include <algorithm>
#include <limits>

// Micrometres that do not fit are the nearest that do.
inline LONG ClampToLong(LONGLONG value) noexcept {
    using Limits = std::numeric_limits<LONG>;
    return static_cast<LONG>(std::clamp<LONGLONG>(value, Limits::min(), Limits::max()));
}

// Tenths of a millimetre, as paper records hold them, in micrometres.
inline LONG MicrometresOfTenths(LONG tenths) noexcept {
    return ClampToLong(LONGLONG{tenths} * facts::kMicrometresPerTenth);
}
