// Text between the command line's UTF-8 and the driver's UTF-16, and numbers on the command line.
#include "hosttext.h"

#include <charconv>

#include "hosterror.h"

std::string ToUtf8(WideStringView text) { return Utf8FromWide(text, BadText::Replace); }

std::optional<WideString> ToWide(std::string_view utf8) {
    if (!IsUtf8(utf8)) return std::nullopt;
    return WideFromUtf8(utf8, BadText::Refuse);
}

WideString ArgumentToWide(std::string_view utf8) {
    if (std::optional<WideString> text = ToWide(utf8)) return *std::move(text);
    throw InputError("an argument is not UTF-8 text; use a UTF-8 locale");
}

std::string ToLowerHex(std::uint64_t value, int digits) {
    char buffer[16];
    const std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, value, 16);
    std::string text(buffer, result.ptr);
    if (text.size() < static_cast<std::size_t>(digits)) text.insert(0, digits - text.size(), '0');
    return text;
}

std::string FormatHex(std::uint64_t value, int digits) {
    std::string text = ToLowerHex(value, digits);
    for (char& character : text)
        if (character >= 'a') character = static_cast<char>(character - 'a' + 'A');
    return "0x" + text;
}

std::optional<std::int64_t> ParseNumber(std::string_view text) {
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        base = 16;
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}
