// Text between UTF-8 and UTF-16, and names without regard to case: once, for all floors.
#pragma once

#include <widetext.h>

#include <string>
#include <string_view>

// What becomes of text that is not well-formed.
enum class BadText {
    Replace,  // U+FFFD for a half of a character, and for bytes as far as they could have begun one
    Keep,     // a half is three bytes that are no UTF-8, and these are the half again; other bytes as with Replace
    Refuse,   // std::range_error is thrown
};

std::string Utf8FromWide(WideStringView text, BadText bad);
WideString WideFromUtf8(std::string_view text, BadText bad);
bool IsUtf8(std::string_view text) noexcept;

// The bytes of a text as its byte order mark states them; UTF-8, or some other 8-bit text, where there is none.
enum class ByteForm { Unmarked, MarkedUtf8, LittleUtf16, BigUtf16 };
struct MarkedText {
    ByteForm form;
    std::string_view content;  // without the mark
};
MarkedText TakeMark(std::string_view bytes) noexcept;
// The units of UTF-16 of that order, halves of characters among them; an odd last byte is left out.
WideString WideFromUtf16(std::string_view bytes, ByteForm order);

// The registry's rule, for names of what the system keeps: keys and values, printers, forms, files, programs. Each
// letter whose capital is one unit counts as its capital, whatever the user's locale; no letter beyond ASCII counts as
// one of ASCII. Names compare by unit, less than 0 when the left one comes first.
int CompareRegistryNames(WideStringView left, WideStringView right) noexcept;
inline bool EqualRegistryNames(WideStringView left, WideStringView right) noexcept {
    return left.size() == right.size() && CompareRegistryNames(left, right) == 0;
}
// Small letters in place of the capitals of that rule.
void LowerRegistryName(WideString& text) noexcept;

// The Print Schema's rule, for words of its documents and of what goes with them: the letters of ASCII alone.
std::string LowerSchemaWord(std::string_view word);
WideString LowerSchemaWord(WideStringView word);
