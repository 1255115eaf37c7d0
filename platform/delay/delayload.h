// What the generated stubs of delayed imports stand on.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstddef>

struct DelayImport {
    const char* name;
    std::atomic<FARPROC> address{nullptr};
};

// A library whose functions are bound at their first call. Lives as long as its module.
struct ImgDelayDescr {
    const char* name;
    DelayImport* imports;
    std::size_t importCount;
    std::atomic<HMODULE> module{nullptr};
    ImgDelayDescr* next = nullptr;  // in the list of libraries that were loaded
    bool listed = false;
};

// Loads the library when needed, asks the module's hook on the way, and binds the import. Any thread may call it at any
// time. Throws what a hook throws, and std::runtime_error when neither hooks nor loader give the function.
FARPROC BindDelayImport(ImgDelayDescr& library, DelayImport& import);

inline FARPROC GetDelayImport(ImgDelayDescr& library, DelayImport& import) {
    const FARPROC address = import.address.load(std::memory_order_acquire);
    return address ? address : BindDelayImport(library, import);
}
