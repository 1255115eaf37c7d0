// Protection of data for the current user (DPAPI), as the SDK's wincrypt.h gives it. Implemented in platform/protect.
#pragma once

#include <windows.h>

struct DATA_BLOB {
    DWORD cbData;
    BYTE* pbData;
};
struct CRYPTPROTECT_PROMPTSTRUCT;

#define CRYPTPROTECT_UI_FORBIDDEN 0x1

// Encrypts and authenticates under a key that belongs to the store, and back. The result's bytes are freed with
// LocalFree. Descriptions, prompts and flags other than CRYPTPROTECT_UI_FORBIDDEN are not offered: FALSE and
// ERROR_NOT_SUPPORTED. What was not protected here, under this key and with this entropy, or was changed since, gives
// FALSE and ERROR_INVALID_DATA; a key file that others may read, FALSE and ERROR_ACCESS_DENIED.
extern "C" {
BOOL WINAPI CryptProtectData(DATA_BLOB* data, LPCWSTR description, DATA_BLOB* entropy, PVOID reserved,
                             CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* result);
BOOL WINAPI CryptUnprotectData(DATA_BLOB* data, LPWSTR* description, DATA_BLOB* entropy, PVOID reserved,
                               CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* result);
}
