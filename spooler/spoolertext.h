// Text of the spooler: 16-bit names, and their conversion from and to 8 bits.
#pragma once

#include <textcodec.h>
#include <widetext.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

// Both throw std::range_error on text that is not well-formed.
inline WideString WidenUtf8(std::string_view text) { return WideFromUtf8(text, BadText::Refuse); }
inline std::string NarrowToUtf8(WideStringView text) { return Utf8FromWide(text, BadText::Refuse); }
// To the 8-bit text that the functions whose names end in A take. Throws SpoolerError when it cannot be said in it.
std::string NarrowToAnsi(const WideString& text);

// A path of the store's, which may be written with backslashes on either host, as the host's file functions take it.
inline std::filesystem::path GetFilePath(WideString path) {
    std::replace(path.begin(), path.end(), W('\\'), W('/'));
    return path;
}

inline WideString TextOrEmpty(const WCHAR* text) { return text ? WideString(text) : WideString(); }
