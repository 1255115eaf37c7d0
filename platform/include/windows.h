// The Windows names that the project uses, for hosts that are not Windows. Implemented in platform/.
#pragma once

#include <cstddef>
#include <cstdint>

// ---- calling conventions and attributes
#define STDMETHODCALLTYPE
#define WINAPI
#define MV_DECLSPEC_dllexport __attribute__((visibility("default")))
#define MV_DECLSPEC_dllimport __attribute__((visibility("default")))
#define __declspec(attribute) MV_DECLSPEC_##attribute

// ---- base types: LONG has 32 bits, WCHAR 16
using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using CHAR = char;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using SIZE_T = std::size_t;
using WCHAR = char16_t;
using HRESULT = LONG;
using LSTATUS = LONG;
using LCID = DWORD;
using LPVOID = void*;
using PVOID = void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using LPSTR = CHAR*;
using LPCSTR = const CHAR*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using HANDLE = void*;
using LPHANDLE = HANDLE*;

// Handles of distinct kinds are distinct pointer types, as in the SDK under STRICT.
#define DECLARE_HANDLE(name) \
    struct name##__;         \
    using name = name##__*
DECLARE_HANDLE(HINSTANCE);
DECLARE_HANDLE(HKEY);
DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HDC);
using HMODULE = HINSTANCE;
using PHKEY = HKEY*;
using REGSAM = DWORD;
using FARPROC = std::intptr_t (*)();

#define TRUE 1
#define FALSE 0
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};
using PFILETIME = FILETIME*;
using LPFILETIME = FILETIME*;

struct GUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFIID = const IID&;
using REFCLSID = const CLSID&;
inline bool operator==(const GUID& a, const GUID& b) { return __builtin_memcmp(&a, &b, sizeof(GUID)) == 0; }
inline bool operator!=(const GUID& a, const GUID& b) { return !(a == b); }
inline BOOL IsEqualIID(REFIID a, REFIID b) { return a == b ? TRUE : FALSE; }
inline BOOL IsEqualCLSID(REFCLSID a, REFCLSID b) { return a == b ? TRUE : FALSE; }

// ---- results and errors
#define SUCCEEDED(hr) (static_cast<HRESULT>(hr) >= 0)
#define FAILED(hr) (static_cast<HRESULT>(hr) < 0)
#define S_OK (static_cast<HRESULT>(0))
#define S_FALSE (static_cast<HRESULT>(1))
#define E_NOTIMPL (static_cast<HRESULT>(0x80004001u))
#define E_NOINTERFACE (static_cast<HRESULT>(0x80004002u))
#define E_POINTER (static_cast<HRESULT>(0x80004003u))
#define E_ABORT (static_cast<HRESULT>(0x80004004u))
#define E_FAIL (static_cast<HRESULT>(0x80004005u))
#define E_PENDING (static_cast<HRESULT>(0x8000000Au))
#define E_UNEXPECTED (static_cast<HRESULT>(0x8000FFFFu))
#define E_OUTOFMEMORY (static_cast<HRESULT>(0x8007000Eu))
#define E_INVALIDARG (static_cast<HRESULT>(0x80070057u))
#define CLASS_E_NOAGGREGATION (static_cast<HRESULT>(0x80040110u))
#define CLASS_E_CLASSNOTAVAILABLE (static_cast<HRESULT>(0x80040111u))
#define DISP_E_BADVARTYPE (static_cast<HRESULT>(0x80020008u))
#define HRESULT_FROM_WIN32(error)                                   \
    (static_cast<HRESULT>(error) <= 0 ? static_cast<HRESULT>(error) \
                                      : static_cast<HRESULT>((static_cast<DWORD>(error) & 0xFFFFu) | 0x80070000u))

#define ERROR_SUCCESS 0
#define ERROR_FILE_NOT_FOUND 2
#define ERROR_PATH_NOT_FOUND 3
#define ERROR_ACCESS_DENIED 5
#define ERROR_INVALID_HANDLE 6
#define ERROR_NOT_ENOUGH_MEMORY 8
#define ERROR_INVALID_DATA 13
#define ERROR_OUTOFMEMORY 14
#define ERROR_NOT_SUPPORTED 50
#define ERROR_INVALID_PARAMETER 87
#define ERROR_DISK_FULL 112
#define ERROR_INSUFFICIENT_BUFFER 122
#define ERROR_INVALID_LEVEL 124
#define ERROR_MOD_NOT_FOUND 126
#define ERROR_PROC_NOT_FOUND 127
#define ERROR_BAD_PATHNAME 161
#define ERROR_BUSY 170
#define ERROR_MORE_DATA 234
#define ERROR_NO_MORE_ITEMS 259
#define ERROR_INVALID_FLAGS 1004
#define ERROR_REGISTRY_CORRUPT 1015
#define ERROR_REGISTRY_IO_FAILED 1016
#define ERROR_KEY_DELETED 1018
#define ERROR_NOT_FOUND 1168
#define ERROR_UNKNOWN_PRINTER_DRIVER 1797
#define ERROR_INVALID_PRINTER_NAME 1801
#define ERROR_PRINTER_ALREADY_EXISTS 1802

extern "C" {
DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD error);
}

// ---- system version
struct OSVERSIONINFOW {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    WCHAR szCSDVersion[128];
};
using LPOSVERSIONINFOW = OSVERSIONINFOW*;
#define VER_PLATFORM_WIN32_NT 2

// Fills the record with the version that this host answers for: 10.0. FALSE when the record's size is not the
// structure's.
extern "C" BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW information);

#include <winbase.h>
#include <wingdi.h>
#include <winnls.h>
#include <winreg.h>
