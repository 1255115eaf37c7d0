// Modules, critical sections, interlocked operations, time, debugger and profile files, as the SDK's windows.h gives
// them.
#pragma once

#include <windows.h>

// ---- modules
// Paths are shown with backslashes and accepted with either slash; 8-bit text is UTF-8. A name without a folder is
// looked for among the loaded modules, without regard to case, then (by LoadLibrary) beside the program and where the
// system looks. "kernel32.dll" is the library that implements these functions here.
#define LOAD_WITH_ALTERED_SEARCH_PATH 0x00000008
#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x00000002
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x00000004
#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1

extern "C" {
HMODULE WINAPI LoadLibraryA(LPCSTR name);
HMODULE WINAPI LoadLibraryW(LPCWSTR name);
HMODULE WINAPI LoadLibraryExA(LPCSTR name, HANDLE reserved, DWORD flags);
HMODULE WINAPI LoadLibraryExW(LPCWSTR name, HANDLE reserved, DWORD flags);
BOOL WINAPI FreeLibrary(HMODULE module);
HMODULE WINAPI GetModuleHandleA(LPCSTR name);
BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR name, HMODULE* module);
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD characters);
DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD characters);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);
}

// ---- critical sections
struct CRITICAL_SECTION {
    void* section;  // owned by InitializeCriticalSection / DeleteCriticalSection
};
using LPCRITICAL_SECTION = CRITICAL_SECTION*;
extern "C" {
void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section);
void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section);
void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section);
void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section);
}

// ---- interlocked operations, process, time, debugger
inline LONG InterlockedIncrement(volatile LONG* value) { return __atomic_add_fetch(value, 1, __ATOMIC_SEQ_CST); }
inline LONG InterlockedDecrement(volatile LONG* value) { return __atomic_sub_fetch(value, 1, __ATOMIC_SEQ_CST); }
extern "C" {
DWORD WINAPI GetCurrentProcessId();
// Written to standard error, as UTF-8, when the environment variable MVPT_DEBUG is set; to nowhere otherwise.
void WINAPI OutputDebugStringW(LPCWSTR text);
void WINAPI DebugBreak();
// The present time in steps of 100 nanoseconds since 1601, UTC.
void WINAPI GetSystemTimeAsFileTime(LPFILETIME time);
// There are no kernel objects on this host: FALSE and ERROR_INVALID_HANDLE for every handle.
BOOL WINAPI CloseHandle(HANDLE handle);
}

// ---- memory
using HLOCAL = HANDLE;
// Frees what a function here says is to be freed so; null is let pass. Returns null.
extern "C" HLOCAL WINAPI LocalFree(HLOCAL block);
// Overwrites memory, also where a compiler sees that nobody reads it any more.
inline PVOID SecureZeroMemory(PVOID block, SIZE_T bytes) {
    for (volatile BYTE* byte = static_cast<volatile BYTE*>(block); bytes != 0; --bytes) *byte++ = 0;
    return block;
}

// ---- profile files
// Copies the lines of a section, each NUL-terminated, then one more NUL. Returns the characters copied without that
// last NUL; characters - 2 when the section was cut; 0 when the file or the section is not there. The file is UTF-16LE
// with a byte order mark, or UTF-8.
extern "C" DWORD WINAPI GetPrivateProfileSectionW(LPCWSTR section, LPWSTR buffer, DWORD characters, LPCWSTR file);
