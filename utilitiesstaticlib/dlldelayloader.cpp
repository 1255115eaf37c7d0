// Loading of libraries at their first use: the hooks, the search, and the unloading at the end.
#include <dlldelayloader.h>

#include <modulehandle.h>
#include <throwscheme.h>

#include <windows.h>
// After windows.h, which they need.
#include <delayimp.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>

namespace {

FARPROC WINAPI OnDelayLoadNotification(unsigned notification, PDelayLoadInfo information);
FARPROC WINAPI OnDelayLoadFailure(unsigned notification, PDelayLoadInfo information);

}  // namespace

extern "C" {
PfnDliHook __pfnDliNotifyHook2 = OnDelayLoadNotification;
PfnDliHook __pfnDliFailureHook2 = OnDelayLoadFailure;
}

namespace {

// Initialised before any other static object of the module and destroyed after all of them: priority 101 is the first
// that a program may use. The critical section comes first, so that the loader's destructor still has it.
struct Section {
    Section() noexcept { InitializeCriticalSection(&section); }
    CRITICAL_SECTION section;
};
[[gnu::init_priority(101)]] Section listSection;
[[gnu::init_priority(102)]] constinit DllDelayLoader delayLoader;

class SectionLock {
public:
    SectionLock() noexcept { EnterCriticalSection(&listSection.section); }
    ~SectionLock() { LeaveCriticalSection(&listSection.section); }
    SectionLock(const SectionLock&) = delete;
    SectionLock& operator=(const SectionLock&) = delete;
};

// A path of at most 260 characters. Text that does not fit spoils the path: it is never cut.
class CandidatePath {
public:
    static constexpr DWORD kCapacity = 261;  // characters, the terminating NUL included

    char* GetBuffer() noexcept { return buffer_; }
    void CutAfterLastBackslash() noexcept {
        char* const last = std::strrchr(buffer_, '\\');
        (last ? last[1] : buffer_[0]) = '\0';
    }
    bool Append(const char* text) noexcept {
        const std::size_t length = std::strlen(buffer_);
        const std::size_t added = std::strlen(text);
        if (length + added >= kCapacity) return false;
        std::memcpy(buffer_ + length, text, added + 1);
        return true;
    }
    HMODULE Load() const noexcept { return LoadLibraryExA(buffer_, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH); }

private:
    char buffer_[kCapacity + 1] = {};  // terminated, whatever a call leaves in it
};

// A reference on the module of that name that is already in the process.
HMODULE ReferLoaded(const char* library) {
    using GetModuleHandleExFunction = BOOL(WINAPI*)(DWORD, LPCSTR, HMODULE*);
    const HMODULE kernel = GetModuleHandleA("kernel32.dll");
    const FARPROC found = kernel ? GetProcAddress(kernel, "GetModuleHandleExA") : nullptr;
    if (!found) return GetModuleHandleA(library) ? LoadLibraryA(library) : nullptr;
    const auto getModuleHandleEx = reinterpret_cast<GetModuleHandleExFunction>(reinterpret_cast<void (*)()>(found));
    HMODULE module = nullptr;
    return getModuleHandleEx(0, library, &module) ? module : nullptr;
}

HMODULE LoadBesideComponent(const char* library) {
    CandidatePath path;
    const HMODULE component = GetComponentModule();
    if (component) {
        const DWORD length = GetModuleFileNameA(component, path.GetBuffer(), CandidatePath::kCapacity);
        if (length >= CandidatePath::kCapacity) return nullptr;
        path.CutAfterLastBackslash();
    }
    return path.Append(library) ? path.Load() : nullptr;
}

HMODULE LoadFromDriverDirectory(const char* library) {
    CandidatePath path;
    DWORD needed = 0;
    GetPrinterDriverDirectoryA(nullptr, nullptr, 1, reinterpret_cast<LPBYTE>(path.GetBuffer()),
                               CandidatePath::kCapacity, &needed);
    return path.Append("\\3\\") && path.Append(library) ? path.Load() : nullptr;
}

FARPROC WINAPI OnDelayLoadNotification(unsigned notification, PDelayLoadInfo information) {
    if (!delayLoader.IsActive() || notification != dliNotePreLoadLibrary) return nullptr;
    return reinterpret_cast<FARPROC>(delayLoader.Resolve(information->szDll));
}

// A library that was found but lacks the function is as good as none.
FARPROC WINAPI OnDelayLoadFailure(unsigned, PDelayLoadInfo information) {
    if (!delayLoader.IsActive()) return nullptr;
    ThrowDelayLoadDllLoadFailureException(information->szDll);
}

}  // namespace

DllDelayLoader& GetDllDelayLoader() noexcept { return delayLoader; }

DllDelayLoader::~DllDelayLoader() {
    if (shuttingDown_.exchange(true)) return;
    if (!processEnding_) {
        for (std::size_t index = 0; index < libraries_.size(); ++index) {
            // Import libraries without an unload table make the routine refuse; its reference is then given back here.
            if (!__FUnloadDelayLoadedDLL2(libraries_[index].c_str())) FreeLibrary(modules_[index]);
        }
    }
    DeleteCriticalSection(&listSection.section);
}

void DllDelayLoader::Reserved() {}

HMODULE DllDelayLoader::Resolve(const char* library) {
    HMODULE module = ReferLoaded(library);
    if (!module) module = LoadBesideComponent(library);
    if (!module) module = LoadFromDriverDirectory(library);
    if (!module) ThrowDelayLoadDllLoadFailureException(library);
    Record(library, module);
    return module;
}

std::vector<std::string> DllDelayLoader::GetLibraries() const {
    const SectionLock lock;
    return libraries_;
}

void DllDelayLoader::Record(const char* library, HMODULE module) noexcept {
    const SectionLock lock;
    try {
        if (std::find(libraries_.begin(), libraries_.end(), library) != libraries_.end()) return;
        modules_.reserve(modules_.size() + 1);
        libraries_.emplace_back(library);
        modules_.push_back(module);
    } catch (const std::bad_alloc&) {
        // The library is usable all the same; it merely stays loaded at the end.
    }
}

void AttachModule(HMODULE module) noexcept {
    SetComponentModule(module);
    if (module == GetModuleHandleA(nullptr)) delayLoader.NoteProcessEnding();
    delayLoader.Attach();
}

void NoteProcessEnding() noexcept { delayLoader.NoteProcessEnding(); }

void ThrowDelayLoadDllLoadFailureException(const char*) {
    // The name stays out of the message, which is empty for every exception of this kind.
    ThrowException(&GetExceptionDelayLoadDllLoadFailure, W("ThrowDelayLoadDllLoadFailureException"),
                   W("dlldelayloader"));
}
