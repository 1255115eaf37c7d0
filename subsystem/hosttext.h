// Text between the command line's UTF-8 and the driver's UTF-16, and numbers on the command line.
#pragma once

#include <textcodec.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// A lone surrogate becomes U+FFFD.
std::string ToUtf8(WideStringView text);
// The text, or nothing when it is not well-formed UTF-8.
std::optional<WideString> ToWide(std::string_view utf8);
// The same for an argument of the command line: throws InputError when it is not well-formed.
WideString ArgumentToWide(std::string_view utf8);

// "0x" and upper-case digits, padded with zeros to the number of digits.
std::string FormatHex(std::uint64_t value, int digits = 0);
// Lower-case hex digits without "0x".
std::string ToLowerHex(std::uint64_t value, int digits = 0);
// A whole decimal number with an optional minus sign, or hex behind "0x"; nothing for any other text or one that does
// not fit.
std::optional<std::int64_t> ParseNumber(std::string_view text);
