// The user's paper and measurement conventions, and 8-bit text, as the SDK's windows.h gives them.
#pragma once

#include <windows.h>

using LCTYPE = DWORD;
#define LOCALE_USER_DEFAULT 0x0400
#define LOCALE_IMEASURE 0x0000000D
#define LOCALE_IPAPERSIZE 0x0000100A
#define LOCALE_RETURN_NUMBER 0x20000000

// Answers LOCALE_IMEASURE and LOCALE_IPAPERSIZE from HKEY_CURRENT_USER "Control Panel\International" ("iMeasure",
// "iPaperSize"; metric and A4 when absent). With LOCALE_RETURN_NUMBER the buffer receives a DWORD (two characters).
extern "C" int WINAPI GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR buffer, int characters);

#define CP_ACP 0
#define CP_UTF8 65001
