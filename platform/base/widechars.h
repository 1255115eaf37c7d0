// Conversions between 16-bit and 8-bit text, and the comparison of names without regard to case.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace mvplatform {

using WideString = std::basic_string<WCHAR>;
using WideView = std::basic_string_view<WCHAR>;

// UTF-8. A lone surrogate becomes the three bytes that its number would have, so that WideFromUtf8 gives it back.
std::string Utf8FromWide(WideView text);

// UTF-16. Each byte that is not part of a well-formed sequence becomes U+FFFD; an encoded lone surrogate is kept.
WideString WideFromUtf8(std::string_view text);

// The form in which names are compared: every character that has a capital of one 16-bit unit is replaced by it.
WideString FoldCase(WideView text);
bool EqualIgnoringCase(WideView a, WideView b);

}  // namespace mvplatform
