// Conversions between 16-bit and 8-bit text, and the comparison of names without regard to case.
#include "widechars.h"

#include <widetext.h>

#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <cstddef>

namespace mvplatform {
namespace {

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendUtf8(std::string& out, char32_t code) {
    const auto continuation = [&](int shift) { out += static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        continuation(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        continuation(6);
        continuation(0);
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

// Reads the sequence at the start of the text. Returns its length, or 0 when it is not well-formed.
std::size_t ReadUtf8(std::string_view text, char32_t& code) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : (lead & 0xF0) == 0xE0       ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || text.size() < length) return 0;
    code = length == 1 ? lead : lead & (0xFFu >> (length + 1));
    for (std::size_t index = 1; index < length; ++index) {
        const auto byte = static_cast<unsigned char>(text[index]);
        if ((byte & 0xC0) != 0x80) return 0;
        code = code << 6 | (byte & 0x3F);
    }
    const bool tooLong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    return tooLong || code > 0x10FFFF ? 0 : length;
}

// The capital letters do not depend on the user's locale: a store means the same to every process.
locale_t NeutralLocale() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

WCHAR Capital(WCHAR unit) {
    if (unit < 0x80) return unit >= W('a') && unit <= W('z') ? static_cast<WCHAR>(unit - (W('a') - W('A'))) : unit;
    if (!NeutralLocale()) return unit;
    const wint_t capital = towupper_l(unit, NeutralLocale());
    return capital >= 0x80 && capital <= 0xFFFF ? static_cast<WCHAR>(capital) : unit;
}

}  // namespace

std::string Utf8FromWide(WideView text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        char32_t code = text[index];
        if (IsHighSurrogate(code) && index + 1 < text.size() && IsLowSurrogate(text[index + 1]))
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++index] - 0xDC00);
        AppendUtf8(out, code);
    }
    return out;
}

WideString WideFromUtf8(std::string_view text) {
    WideString out;
    out.reserve(text.size());
    while (!text.empty()) {
        char32_t code = 0;
        const std::size_t length = ReadUtf8(text, code);
        text.remove_prefix(std::max<std::size_t>(length, 1));
        if (length == 0) {
            out += W('\uFFFD');
        } else if (code < 0x10000) {
            out += static_cast<WCHAR>(code);
        } else {
            out += static_cast<WCHAR>(0xD800 + ((code - 0x10000) >> 10));
            out += static_cast<WCHAR>(0xDC00 + ((code - 0x10000) & 0x3FF));
        }
    }
    return out;
}

WideString FoldCase(WideView text) {
    WideString folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), Capital);
    return folded;
}

bool EqualIgnoringCase(WideView a, WideView b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](WCHAR x, WCHAR y) { return x == y || Capital(x) == Capital(y); });
}

}  // namespace mvplatform
