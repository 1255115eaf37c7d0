// What makes mvpthost-check another program than mvpthost: its own functions stand in the place of those of the
// libraries below it, which they call, and of the memory of all, and fail when a check wants it.
#include <verify/failingfunctions.h>

#include <oleauto.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <dlfcn.h>

#include <cstdlib>
#include <new>

namespace {

struct Countdown {
    long calls, failAt;
};
thread_local Countdown countdowns[kFailingFunctions];

bool Fails(FailingFunction function) {
    Countdown& countdown = countdowns[static_cast<int>(function)];
    return ++countdown.calls == countdown.failAt;
}

class StandIn final : public FailingFunctions {
public:
    StandIn() { SetFailingFunctions(this); }
    void Arm(FailingFunction function, long n) override { countdowns[static_cast<int>(function)] = {0, n}; }
    long Disarm(FailingFunction function) override {
        const long calls = countdowns[static_cast<int>(function)].calls;
        countdowns[static_cast<int>(function)] = {};
        return calls;
    }
};
StandIn standIn;

template <class Function>
Function* FindNext(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void* Allocate(std::size_t bytes) noexcept {
    return Fails(FailingFunction::Memory) ? nullptr : std::malloc(bytes ? bytes : 1);
}

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t bytes) {
    void* const memory = Allocate(bytes);
    if (!memory) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { return Allocate(bytes); }
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

// Defines a function that fails with the result, or calls the library's.
#define STANDS_IN(function, kind, result, name, parameters, arguments)     \
    __declspec(dllexport) result WINAPI name parameters {                  \
        static auto* const next = FindNext<decltype(name)>(#name);         \
        return Fails(FailingFunction::function) ? (kind) : next arguments; \
    }

extern "C" {

STANDS_IN(Text, nullptr, BSTR, SysAllocStringLen, (const OLECHAR* text, UINT length), (text, length))
STANDS_IN(Registry, ERROR_REGISTRY_IO_FAILED, LSTATUS, RegOpenKeyExW,
          (HKEY key, LPCWSTR path, DWORD options, REGSAM access, PHKEY opened), (key, path, options, access, opened))
STANDS_IN(Registry, ERROR_REGISTRY_IO_FAILED, LSTATUS, RegQueryValueExW,
          (HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD bytes),
          (key, name, reserved, type, data, bytes))
STANDS_IN(Spooler, (SetLastError(ERROR_INVALID_HANDLE), FALSE), BOOL, GetPrinterW,
          (HANDLE printer, DWORD level, LPBYTE data, DWORD bytes, LPDWORD needed),
          (printer, level, data, bytes, needed))
STANDS_IN(Spooler, (SetLastError(ERROR_INVALID_HANDLE), FALSE), BOOL, GetPrinterDriverW,
          (HANDLE printer, LPWSTR environment, DWORD level, LPBYTE data, DWORD bytes, LPDWORD needed),
          (printer, environment, level, data, bytes, needed))
STANDS_IN(Spooler, ERROR_INVALID_HANDLE, DWORD, GetPrinterDataW,
          (HANDLE printer, LPWSTR name, LPDWORD type, LPBYTE data, DWORD bytes, LPDWORD needed),
          (printer, name, type, data, bytes, needed))
STANDS_IN(Spooler, -1, int, DeviceCapabilitiesW,
          (LPCWSTR device, LPCWSTR port, WORD capability, LPWSTR output, const DEVMODEW* devmode),
          (device, port, capability, output, devmode))

}  // extern "C"
