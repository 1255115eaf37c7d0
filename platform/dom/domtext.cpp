// Conversions of text; malformed input of either kind gives well-formed output unless raw text was asked for.
#include "domtext.h"

#include <widetext.h>

#include <limits>

namespace dom {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
// Bounds a text so that libxml2's int lengths hold its UTF-8 form.
constexpr std::size_t kMaximumCharacters = std::numeric_limits<int>::max() / 4;

constexpr bool IsHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }
constexpr bool IsXmlCharacter(char32_t c) {
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           c >= 0x10000;
}

// The character at the position, which moves behind it; a lone surrogate comes as itself.
char32_t NextCharacter(WideView text, std::size_t* position) {
    const char32_t first = text[(*position)++];
    if (!IsHighSurrogate(first) || *position == text.size()) return first;
    const char32_t second = text[*position];
    if (!IsLowSurrogate(second)) return first;
    ++*position;
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void AppendUtf8(char32_t c, std::string* out) {
    const auto append = [out](char32_t byte) { out->push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
    if (c < 0x80) {
        append(c);
        return;
    }
    if (c < 0x800) {
        append(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            append(0xE0 | (c >> 12));
        } else {
            append(0xF0 | (c >> 18));
            append(0x80 | ((c >> 12) & 0x3F));
        }
        append(0x80 | ((c >> 6) & 0x3F));
    }
    append(0x80 | (c & 0x3F));
}

std::string ToUtf8(WideView text, bool replace) {
    if (text.size() > kMaximumCharacters) throw std::bad_alloc();
    // Nearly all names and values are ASCII: copied unit by unit as far as that goes.
    std::string utf8(text.size(), '\0');
    std::size_t position = 0;
    while (position < text.size() && text[position] >= 0x20 && text[position] < 0x7F) {
        utf8[position] = static_cast<char>(text[position]);
        ++position;
    }
    utf8.resize(position);
    while (position < text.size()) {
        const char32_t c = NextCharacter(text, &position);
        AppendUtf8(replace && !IsXmlCharacter(c) ? kReplacement : c, &utf8);
    }
    return utf8;
}

// The character at the position, which moves behind it; U+FFFD for a byte that starts no well-formed sequence.
char32_t NextUtf8Character(std::string_view text, std::size_t* position) {
    const auto byte = [text](std::size_t index) -> char32_t {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0u;
    };
    const char32_t first = byte((*position)++);
    if (first < 0x80) return first;
    const std::size_t more = first >= 0xF0 && first <= 0xF4 ? 3 : first >= 0xE0 ? 2 : first >= 0xC2 ? 1 : 0;
    if (more == 0 || first > 0xF4) return kReplacement;
    char32_t c = first & (0x3Fu >> more);
    for (std::size_t i = 0; i < more; ++i) {
        if ((byte(*position + i) & 0xC0) != 0x80) return kReplacement;
        c = (c << 6) | (byte(*position + i) & 0x3F);
    }
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[more] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return kReplacement;
    *position += more;
    return c;
}

}  // namespace

std::string ContentToUtf8(WideView text) { return ToUtf8(text, true); }

std::string RawToUtf8(WideView text) { return ToUtf8(text, false); }

Bstr ToBstr(std::string_view utf8) {
    if (utf8.size() > kMaximumCharacters * 4) throw std::bad_alloc();
    std::basic_string<WCHAR> text(utf8.size(), W('\0'));
    std::size_t position = 0;
    while (position < utf8.size() && static_cast<unsigned char>(utf8[position]) < 0x80) {
        text[position] = static_cast<WCHAR>(utf8[position]);
        ++position;
    }
    text.resize(position);
    while (position < utf8.size()) {
        char32_t c = NextUtf8Character(utf8, &position);
        if (c >= 0x10000) {
            c -= 0x10000;
            text.push_back(static_cast<WCHAR>(0xD800 + (c >> 10)));
            c = 0xDC00 + (c & 0x3FF);
        }
        text.push_back(static_cast<WCHAR>(c));
    }
    return Bstr(text);
}

HRESULT ReturnText(std::string_view utf8, BSTR* out) {
    if (!out) return E_INVALIDARG;
    *out = ToBstr(utf8).Detach();
    return S_OK;
}

HRESULT ReturnText(std::string_view utf8, VARIANT* out) {
    if (!out) return E_INVALIDARG;
    Bstr text = ToBstr(utf8);
    VariantInit(out);
    out->bstrVal = text.Detach();
    out->vt = VT_BSTR;
    return S_OK;
}

HRESULT ReturnNothing(BSTR* out) {
    if (!out) return E_INVALIDARG;
    *out = nullptr;
    return S_FALSE;
}

HRESULT ReturnNothing(VARIANT* out) {
    if (!out) return E_INVALIDARG;
    VariantInit(out);
    out->vt = VT_NULL;
    return S_FALSE;
}

bool ContentOf(const VARIANT& value, std::string* utf8) {
    switch (value.vt) {
        case VT_BSTR:
            *utf8 = ContentToUtf8(ViewOf(value.bstrVal));
            return true;
        case VT_I2:
            *utf8 = std::to_string(value.iVal);
            return true;
        case VT_I4:
            *utf8 = std::to_string(value.lVal);
            return true;
        case VT_UI4:
            *utf8 = std::to_string(value.ulVal);
            return true;
        default:
            return false;
    }
}

}  // namespace dom
