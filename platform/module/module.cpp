// Loading libraries, and asking about loaded modules.
#include <textcodec.h>
#include <widetext.h>
#include <windows.h>
#include "loadedmodules.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <system_error>

namespace mvplatform {
namespace {

namespace fs = std::filesystem;

// What a function answers when it fails, with the error set.
template <class Result>
Result Fail(DWORD error, Result result) {
    SetLastError(error);
    return result;
}

// Held while a module is looked at, for the loader says nothing of how long what it answers is there: another thread
// may unload it. A module that is being loaded may ask for others. As long as the process lives.
std::recursive_mutex& GetLoaderMutex() {
    static auto& mutex = *new std::recursive_mutex;
    return mutex;
}

// Runs a function that hands text about; nothing leaves it but the failure.
template <class Result, class Operation>
Result Guarded(Result failure, Operation operation) noexcept {
    try {
        const std::lock_guard lock(GetLoaderMutex());
        return operation();
    } catch (...) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY, failure);
    }
}

HMODULE Open(const std::string& path) {
    void* reference = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const std::optional<LoadedModule> module = ModuleFromMap(reference);
    if (module) return module->handle;
    if (const char* reason = dlerror()) OutputDebugStringW((WideFromUtf8(reason, BadText::Keep) + W("\n")).c_str());
    return Fail(ERROR_MOD_NOT_FOUND, HMODULE());
}

HMODULE Load(std::string path) {
    path = WithDefaultExtension(SystemPath(std::move(path)));
    std::error_code error;
    // An absolute path stays true when the current folder changes.
    if (path.find('/') != std::string::npos) return Open(fs::absolute(path, error).string());
    const std::optional<LoadedModule> loaded = FindLoadedModule(path);
    if (loaded && loaded->AddReference()) return loaded->handle;
    const std::optional<LoadedModule> program = ModuleFromHandle(nullptr);
    const fs::path beside = program ? fs::path(program->GetPath()).replace_filename(path) : fs::path();
    return fs::exists(beside, error) ? Open(beside.string()) : Open(path);
}

std::optional<LoadedModule> FindByName(const std::string& name) {
    const std::string path = SystemPath(name);
    std::optional<LoadedModule> module = path.empty() ? std::nullopt : FindLoadedModule(path);
    if (!module && WithDefaultExtension(path) != path) module = FindLoadedModule(WithDefaultExtension(path));
    return module;
}

BOOL GetHandle(DWORD flags, const void* address, const std::string* name, HMODULE* result) {
    constexpr DWORD known = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!result) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    *result = nullptr;
    if (flags & ~known) return Fail(ERROR_INVALID_PARAMETER, FALSE);
    const std::optional<LoadedModule> module = flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS
                                                   ? ModuleFromAddress(address)
                                               : name ? FindByName(*name)
                                                      : ModuleFromHandle(nullptr);
    if (!module) return Fail(ERROR_MOD_NOT_FOUND, FALSE);
    if (!(flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) && !module->AddReference())
        return Fail(ERROR_MOD_NOT_FOUND, FALSE);
    *result = module->handle;
    return TRUE;
}

// The module's path with backslashes; empty, with the error set, when there is no such module.
std::string ShownPath(HMODULE handle) {
    const std::optional<LoadedModule> module = ModuleFromHandle(handle);
    std::string path = module ? module->GetPath() : std::string();
    if (path.empty()) SetLastError(ERROR_MOD_NOT_FOUND);
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

// Copies the text and its NUL, cut to the buffer's size; a cut is reported by answering that size.
template <class Character>
DWORD CopyPath(const std::basic_string<Character>& path, Character* buffer, DWORD characters) {
    if (path.empty()) return 0;
    if (!buffer || characters == 0) return Fail(ERROR_INSUFFICIENT_BUFFER, DWORD{0});
    buffer[path.copy(buffer, characters - 1)] = 0;
    if (path.size() >= characters) return Fail(ERROR_INSUFFICIENT_BUFFER, characters);
    return static_cast<DWORD>(path.size());
}

}  // namespace
}  // namespace mvplatform

using namespace mvplatform;

extern "C" {

HMODULE WINAPI LoadLibraryA(LPCSTR name) { return LoadLibraryExA(name, nullptr, 0); }
HMODULE WINAPI LoadLibraryW(LPCWSTR name) { return LoadLibraryExW(name, nullptr, 0); }

HMODULE WINAPI LoadLibraryExA(LPCSTR name, HANDLE reserved, DWORD flags) {
    return Guarded(HMODULE(), [&] {
        // Where a library's own libraries are looked for is written in it; the flag asks for nothing more.
        if (!name || reserved || (flags & ~static_cast<DWORD>(LOAD_WITH_ALTERED_SEARCH_PATH)))
            return Fail(ERROR_INVALID_PARAMETER, HMODULE());
        return *name ? Load(name) : Fail(ERROR_MOD_NOT_FOUND, HMODULE());
    });
}

HMODULE WINAPI LoadLibraryExW(LPCWSTR name, HANDLE reserved, DWORD flags) {
    return Guarded(HMODULE(), [&] {
        return name ? LoadLibraryExA(Utf8FromWide(name, BadText::Keep).c_str(), reserved, flags)
                    : LoadLibraryExA(nullptr, reserved, flags);
    });
}

BOOL WINAPI FreeLibrary(HMODULE handle) {
    const std::lock_guard lock(GetLoaderMutex());
    const std::optional<LoadedModule> module = handle ? ModuleFromHandle(handle) : std::nullopt;
    if (!module || dlclose(module->map) != 0) return Fail(ERROR_INVALID_HANDLE, FALSE);
    return TRUE;
}

HMODULE WINAPI GetModuleHandleA(LPCSTR name) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, name, &module);
    return module;
}

BOOL WINAPI GetModuleHandleExA(DWORD flags, LPCSTR name, HMODULE* module) {
    return Guarded(FALSE, [&] {
        if (!name || (flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS)) return GetHandle(flags, name, nullptr, module);
        const std::string text(name);
        return GetHandle(flags, nullptr, &text, module);
    });
}

DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR path, DWORD characters) {
    return Guarded(DWORD{0}, [&] { return CopyPath(ShownPath(module), path, characters); });
}

DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD characters) {
    return Guarded(DWORD{0},
                   [&] { return CopyPath(WideFromUtf8(ShownPath(module), BadText::Keep), path, characters); });
}

FARPROC WINAPI GetProcAddress(HMODULE handle, LPCSTR name) {
    constexpr std::uintptr_t lastOrdinal = 0xFFFF;  // functions have no numbers here
    const std::lock_guard lock(GetLoaderMutex());
    const std::optional<LoadedModule> module = ModuleFromHandle(handle);
    if (!module) return Fail(ERROR_INVALID_HANDLE, FARPROC());
    if (reinterpret_cast<std::uintptr_t>(name) <= lastOrdinal) return Fail(ERROR_PROC_NOT_FOUND, FARPROC());
    // The loader can search a module that was linked with the program only once it is referred to like a loaded one.
    if (!module->AddReference()) return Fail(ERROR_INVALID_HANDLE, FARPROC());
    void* address = dlsym(module->map, name);
    dlclose(module->map);
    // What the module's own libraries export is not the module's.
    const std::optional<LoadedModule> owner = address ? ModuleFromAddress(address) : std::nullopt;
    if (!owner || owner->map != module->map) return Fail(ERROR_PROC_NOT_FOUND, FARPROC());
    return reinterpret_cast<FARPROC>(address);
}

}  // extern "C"
