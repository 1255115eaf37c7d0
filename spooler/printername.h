// What a printer may be called.
#pragma once

#include <textcodec.h>
#include <widetext.h>

#include <algorithm>

inline constexpr std::size_t kLongestPrinterName = 219;

// Whether the registry can keep it as a key's name, of that length and without the characters that are refused.
inline bool IsSpoolerKeyName(WideStringView name, std::size_t longest, WideStringView refused) noexcept {
    const auto isBad = [&](auto c) { return c < 0x20 || c == 0x7F || refused.find(c) != WideStringView::npos; };
    return !name.empty() && name.size() <= longest && std::none_of(name.begin(), name.end(), isBad);
}

// Names that the registry can keep and a program can say: 1 to 219 characters, none of them "\", ",", "!" or a control.
inline bool IsPrinterName(WideStringView name) noexcept {
    return IsSpoolerKeyName(name, kLongestPrinterName, W("\\,!"));
}
