// The user's paper and measurement conventions, from where the registry keeps them.
#include <uniquehandle.h>
#include <widetext.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

struct Convention {
    LCTYPE type;
    const WCHAR* valueName;
    const WCHAR* fallback;
};
constexpr Convention conventions[] = {
    {LOCALE_IMEASURE, W("iMeasure"), W("0")},      // metric
    {LOCALE_IPAPERSIZE, W("iPaperSize"), W("9")},  // A4
};

// The value's digits; the fallback when the value is absent or is something else than a few digits.
WideString Read(const Convention& convention) {
    UniqueKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, W("Control Panel\\International"), 0, KEY_READ, key.Put()) != ERROR_SUCCESS)
        return convention.fallback;
    std::array<WCHAR, 5> digits = {};
    DWORD type = REG_NONE;
    DWORD bytes = sizeof digits - sizeof(WCHAR);
    const LSTATUS status = RegQueryValueExW(key.Get(), convention.valueName, nullptr, &type,
                                            reinterpret_cast<LPBYTE>(digits.data()), &bytes);
    const WideString text(digits.data());
    const auto isDigit = [](WCHAR unit) { return unit >= W('0') && unit <= W('9'); };
    const bool isNumber = !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
    return status == ERROR_SUCCESS && type == REG_SZ && isNumber ? text : WideString(convention.fallback);
}

}  // namespace

extern "C" int WINAPI GetLocaleInfoW(LCID, LCTYPE type, LPWSTR buffer, int characters) {
    const auto convention = std::find_if(std::begin(conventions), std::end(conventions), [&](const Convention& entry) {
        return entry.type == (type & ~static_cast<LCTYPE>(LOCALE_RETURN_NUMBER));
    });
    if (convention == std::end(conventions) || characters < 0 || (characters > 0 && !buffer)) {
        SetLastError(convention == std::end(conventions) ? ERROR_INVALID_FLAGS : ERROR_INVALID_PARAMETER);
        return 0;
    }
    WideString answer = Read(*convention);
    if (type & LOCALE_RETURN_NUMBER) {
        DWORD number = 0;
        for (const WCHAR digit : answer) number = number * 10 + (digit - W('0'));
        answer.resize(sizeof number / sizeof(WCHAR));
        std::memcpy(answer.data(), &number, sizeof number);
    } else {
        answer += W('\0');
    }
    const int needed = static_cast<int>(answer.size());
    if (characters == 0) return needed;
    if (characters < needed) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::copy(answer.begin(), answer.end(), buffer);
    return needed;
}
