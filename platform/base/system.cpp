// The error of the last call, interface ids, COM memory, critical sections, version, process and debugger.
#include <livecounts.h>
#include <objbase.h>
#include <oleauto.h>
#include <textcodec.h>

#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace {
constinit thread_local DWORD lastError = ERROR_SUCCESS;

std::recursive_mutex& Mutex(LPCRITICAL_SECTION section) {
    return *static_cast<std::recursive_mutex*>(section->section);
}
}  // namespace

extern "C" {

extern const IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
extern const IID IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
extern const IID IID_IDispatch = {0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

DWORD WINAPI GetLastError() { return lastError; }
void WINAPI SetLastError(DWORD error) { lastError = error; }

LPVOID WINAPI CoTaskMemAlloc(SIZE_T bytes) { return std::malloc(bytes ? bytes : 1); }
void WINAPI CoTaskMemFree(LPVOID block) { std::free(block); }

void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section) { section->section = new std::recursive_mutex; }
void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section) { Mutex(section).lock(); }
void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section) { Mutex(section).unlock(); }
void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section) {
    delete &Mutex(section);
    section->section = nullptr;
}

BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW information) {
    if (!information || information->dwOSVersionInfoSize != sizeof(OSVERSIONINFOW)) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    *information = {};
    information->dwOSVersionInfoSize = sizeof(OSVERSIONINFOW);
    information->dwMajorVersion = 10;
    information->dwBuildNumber = 19045;
    information->dwPlatformId = VER_PLATFORM_WIN32_NT;
    return TRUE;
}

DWORD WINAPI GetCurrentProcessId() { return static_cast<DWORD>(getpid()); }

void WINAPI GetSystemTimeAsFileTime(LPFILETIME time) {
    using Steps = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    constexpr Steps kFrom1601To1970 = std::chrono::seconds(11644473600);
    const auto since1970 = std::chrono::duration_cast<Steps>(std::chrono::system_clock::now().time_since_epoch());
    const auto steps = static_cast<std::uint64_t>((since1970 + kFrom1601To1970).count());
    time->dwLowDateTime = static_cast<DWORD>(steps);
    time->dwHighDateTime = static_cast<DWORD>(steps >> 32);
}

BOOL WINAPI CloseHandle(HANDLE) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}

void WINAPI OutputDebugStringW(LPCWSTR text) {
    if (text && std::getenv("MVPT_DEBUG")) std::fputs(Utf8FromWide(text, BadText::Keep).c_str(), stderr);
}

void WINAPI DebugBreak() { raise(SIGTRAP); }

}  // extern "C"
