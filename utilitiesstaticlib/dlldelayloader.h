// DllDelayLoader: finds the libraries that are loaded at their first use, and unloads them with the component.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <vector>

// One object a module, static. Its hooks answer the platform's delay-load routine; what that cannot find, a library or
// a function of it, becomes ExceptionDelayLoadDllLoadFailure.
class DllDelayLoader {
public:
    // No code runs for the construction: the object is good before any other static one.
    constexpr DllDelayLoader() noexcept = default;
    // Unloads every recorded library once, in the order of their recording; nothing when the process is ending.
    virtual ~DllDelayLoader();
    virtual void Reserved();  // keeps its place in the table; does nothing
    DllDelayLoader(const DllDelayLoader&) = delete;
    DllDelayLoader& operator=(const DllDelayLoader&) = delete;

    bool IsActive() const noexcept { return attached_ && !shuttingDown_; }
    void Attach() noexcept { attached_ = true; }
    void NoteProcessEnding() noexcept { processEnding_ = true; }
    // Finds the library of that name: in the process, beside the component, in the printer driver directory's "3".
    // Returns it with a reference for the routine to keep. Throws ExceptionDelayLoadDllLoadFailure when it is nowhere.
    HMODULE Resolve(const char* library);
    // The names of the libraries found so far, as the routine gave them, each once.
    std::vector<std::string> GetLibraries() const;

private:
    void Record(const char* library, HMODULE module) noexcept;

    std::atomic<bool> attached_ = false;
    std::atomic<bool> shuttingDown_ = false;
    std::atomic<bool> processEnding_ = false;
    // Both are guarded by the process-wide critical section, and have the same length.
    std::vector<std::string> libraries_;
    std::vector<HMODULE> modules_;
};

DllDelayLoader& GetDllDelayLoader() noexcept;

// What an entry point does. Attaching records the module and switches the hook on. A program that links these sources
// attaches its own module; since it goes only with its process, nothing is unloaded then.
void AttachModule(HMODULE module) noexcept;
// The module is about to be unloaded because the process ends.
void NoteProcessEnding() noexcept;

[[noreturn]] void ThrowDelayLoadDllLoadFailureException(const char* library);
