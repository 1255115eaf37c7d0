// The user's conventions of paper and measurement, changed for a test.
#pragma once

#include <uniquehandle.h>
#include <widetext.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

// Both conventions, as the registry writes them, for as long as the object lives. Natively they are the open store's,
// and A4 and millimetres hold where none is open; on Windows the system keeps what it has read, so it is notified
// itself, and what was there comes back.
class UserConventions {
public:
    UserConventions(const WCHAR* paper, const WCHAR* measure) {
        for (const auto& [type, text] : {std::pair{LOCALE_IPAPERSIZE, paper}, {LOCALE_IMEASURE, measure}}) {
            WCHAR before[16] = {};
            EXPECT_GT(GetLocaleInfoW(LOCALE_USER_DEFAULT, type, before, 16), 0);
            before_.emplace_back(type, before);
            Set(type, text);
        }
    }
    // American papers and inches, or A4 and millimetres.
    explicit UserConventions(bool isEnglish)
        : UserConventions(isEnglish ? W("1") : W("9"), isEnglish ? W("1") : W("0")) {}
    ~UserConventions() {
        for (const auto& [type, text] : before_) Set(type, text.c_str());
    }
    UserConventions(const UserConventions&) = delete;
    UserConventions& operator=(const UserConventions&) = delete;

private:
    static void Set(LCTYPE type, const WCHAR* text) {
#ifdef _WIN32
        EXPECT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, type, text));
#else
        UniqueKey key;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, W("Control Panel\\International"), 0, nullptr, 0, KEY_WRITE, nullptr,
                            key.Put(), nullptr) != ERROR_SUCCESS)
            return;
        RegSetValueExW(key.Get(), type == LOCALE_IMEASURE ? W("iMeasure") : W("iPaperSize"), 0, REG_SZ,
                       reinterpret_cast<const BYTE*>(text),
                       static_cast<DWORD>(std::char_traits<WCHAR>::length(text) + 1) * sizeof(WCHAR));
#endif
    }

    std::vector<std::pair<LCTYPE, std::basic_string<WCHAR>>> before_;
};
