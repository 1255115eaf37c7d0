// Text of the spooler: 16-bit names, their comparison, and their conversion from and to 8 bits.
#pragma once

#include <widetext.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

using WideString = std::basic_string<WCHAR>;
using WideStringView = std::basic_string_view<WCHAR>;

// Path conversion is the one of the standard library that takes UTF-8 to 16-bit text on both hosts. Throws on text that
// is not UTF-8, or not UTF-16.
inline WideString WidenUtf8(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end())).string<WCHAR>();
}
inline std::string NarrowToUtf8(const WideString& text) {
    const std::u8string narrow = std::filesystem::path(text).u8string();
    return {narrow.begin(), narrow.end()};
}
// To the 8-bit text that the functions whose names end in A take. Throws SpoolerError when it cannot be said in it.
std::string NarrowToAnsi(const WideString& text);

// A path of the store's, which may be written with backslashes on either host, as the host's file functions take it.
inline std::filesystem::path GetFilePath(WideString path) {
    std::replace(path.begin(), path.end(), W('\\'), W('/'));
    return path;
}

// ASCII letters fold.
inline bool EqualNoCase(WideStringView a, WideStringView b) noexcept {
    const auto fold = [](WCHAR c) { return c >= W('A') && c <= W('Z') ? static_cast<WCHAR>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](WCHAR x, WCHAR y) { return fold(x) == fold(y); });
}

inline WideString TextOrEmpty(const WCHAR* text) { return text ? WideString(text) : WideString(); }
