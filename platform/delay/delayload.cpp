// The delay-load routine: loads a library at the first call of one of its functions, and unloads it on request.
#include "delayload.h"

#include <delayimp.h>

#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string>

extern "C" {
// A module that wants to be notified defines its own.
__attribute__((weak)) PfnDliHook __pfnDliNotifyHook2 = nullptr;
__attribute__((weak)) PfnDliHook __pfnDliFailureHook2 = nullptr;
}

namespace {

constinit std::mutex loadedMutex;
constinit ImgDelayDescr* loadedLibraries = nullptr;  // guarded by loadedMutex

FARPROC Ask(PfnDliHook hook, unsigned notification, DelayLoadInfo& information) {
    return hook ? hook(notification, &information) : nullptr;
}

FARPROC Notify(unsigned notification, DelayLoadInfo& information) {
    return Ask(__pfnDliNotifyHook2, notification, information);
}

FARPROC ReportFailure(unsigned notification, DelayLoadInfo& information) {
    information.dwLastError = GetLastError();
    return Ask(__pfnDliFailureHook2, notification, information);
}

HMODULE LoadDelayed(ImgDelayDescr& library, DelayLoadInfo& information) {
    HMODULE module = reinterpret_cast<HMODULE>(Notify(dliNotePreLoadLibrary, information));
    if (!module) module = LoadLibraryA(library.name);
    if (!module) module = reinterpret_cast<HMODULE>(ReportFailure(dliFailLoadLib, information));
    if (!module) throw std::runtime_error(std::string(library.name) + " cannot be loaded");
    // One reference is kept, whatever number of threads came here at once.
    if (library.module.exchange(module) == module) FreeLibrary(module);
    const std::lock_guard lock(loadedMutex);
    if (!library.listed) {
        library.next = loadedLibraries;
        library.listed = true;
        loadedLibraries = &library;
    }
    return module;
}

}  // namespace

FARPROC BindDelayImport(ImgDelayDescr& library, DelayImport& import) {
    FARPROC address = nullptr;
    DelayLoadInfo information = {};
    information.cb = sizeof information;
    information.pidd = &library;
    information.ppfn = &address;
    information.szDll = library.name;
    information.dlp.fImportByName = TRUE;
    information.dlp.szProcName = import.name;

    address = Notify(dliStartProcessing, information);
    if (!address) {
        information.hmodCur = library.module.load();
        if (!information.hmodCur) information.hmodCur = LoadDelayed(library, information);
        address = Notify(dliNotePreGetProcAddress, information);
        if (!address) address = GetProcAddress(information.hmodCur, import.name);
        if (!address) address = ReportFailure(dliFailGetProc, information);
        if (!address) throw std::runtime_error(std::string(library.name) + " lacks the function " + import.name);
        import.address.store(address, std::memory_order_release);
    }
    information.pfnCur = address;
    Notify(dliNoteEndProcessing, information);
    return address;
}

extern "C" BOOL WINAPI __FUnloadDelayLoadedDLL2(LPCSTR name) {
    const std::lock_guard lock(loadedMutex);
    for (ImgDelayDescr* library = loadedLibraries; library; library = library->next) {
        if (std::strcmp(library->name, name) != 0) continue;
        const HMODULE module = library->module.exchange(nullptr);
        if (!module) return FALSE;
        for (std::size_t index = 0; index < library->importCount; ++index) library->imports[index].address = nullptr;
        FreeLibrary(module);
        return TRUE;
    }
    return FALSE;
}
