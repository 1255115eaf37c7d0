// Conversions of text; malformed input of either kind gives well-formed output unless raw text was asked for.
#include "domtext.h"

#include <textcodec.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

namespace dom {
namespace {

// Bounds a text so that libxml2's int lengths hold its UTF-8 form.
constexpr std::size_t kMaximumCharacters = std::numeric_limits<int>::max() / 4;

void RequireRoom(std::size_t characters) {
    if (characters > kMaximumCharacters) throw std::bad_alloc();
}

// Halves of characters are the codec's to replace.
constexpr bool IsXmlUnit(WCHAR unit) noexcept {
    return (unit >= 0x20 && unit < 0xFFFE) || unit == '\t' || unit == '\n' || unit == '\r';
}

}  // namespace

std::string ContentToUtf8(WideStringView text) {
    RequireRoom(text.size());
    // Nearly every text is ASCII.
    std::string ascii(text.size(), '\0');
    std::size_t length = 0;
    while (length < text.size() && IsXmlUnit(text[length]) && text[length] < 0x80) {
        ascii[length] = static_cast<char>(text[length]);
        ++length;
    }
    if (length == text.size()) return ascii;
    if (std::all_of(text.begin(), text.end(), IsXmlUnit)) return Utf8FromWide(text, BadText::Replace);
    WideString writable(text);
    std::replace_if(writable.begin(), writable.end(), std::not_fn(IsXmlUnit), WCHAR{0xFFFD});
    return Utf8FromWide(writable, BadText::Replace);
}

std::string RawToUtf8(WideStringView text) {
    RequireRoom(text.size());
    return Utf8FromWide(text, BadText::Keep);
}

Bstr ToBstr(std::string_view utf8) {
    RequireRoom(utf8.size() / 4);
    return Bstr(WideFromUtf8(utf8, BadText::Replace));
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
