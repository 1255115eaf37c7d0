// The registry's rule of case, where the C library knows the letters.
#include <textcodec.h>
#include <windows.h>

#include <locale.h>
#include <wctype.h>

#include <algorithm>

#include "textcase.h"

namespace {

// The letters do not depend on the user's locale: a store means the same to every process.
locale_t NeutralLocale() noexcept {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

// What the conversion gives for a unit beyond ASCII, as far as that is one unit beyond ASCII, too.
WCHAR ConvertFurther(WCHAR unit, wint_t (*convert)(wint_t, locale_t)) noexcept {
    if (!NeutralLocale()) return unit;
    const wint_t converted = convert(unit, NeutralLocale());
    return converted >= 0x80 && converted <= 0xFFFF ? static_cast<WCHAR>(converted) : unit;
}

WCHAR Capital(WCHAR unit) noexcept {
    if (unit < 0x80) return unit >= W('a') && unit <= W('z') ? static_cast<WCHAR>(unit - W('a') + W('A')) : unit;
    return ConvertFurther(unit, towupper_l);
}

WCHAR Small(WCHAR unit) noexcept {
    const WCHAR capital = Capital(unit);
    if (capital < 0x80)
        return capital >= W('A') && capital <= W('Z') ? static_cast<WCHAR>(capital - W('A') + W('a')) : capital;
    return ConvertFurther(capital, towlower_l);
}

}  // namespace

int CompareRegistryNames(WideStringView left, WideStringView right) noexcept {
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t at = 0; at < common; ++at) {
        if (left[at] == right[at]) continue;
        const int difference = Capital(left[at]) - Capital(right[at]);
        if (difference != 0) return difference;
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

void LowerRegistryName(WideString& text) noexcept { std::transform(text.begin(), text.end(), text.begin(), Small); }

namespace mvplatform {

WideString FoldRegistryName(WideStringView text) {
    WideString folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), Capital);
    return folded;
}

}  // namespace mvplatform
