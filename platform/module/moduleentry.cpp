// Calls the entry point of the shared library that this file is linked into, as the Windows loader does.
#include <windows.h>

extern "C" {
// The library's own; its answer cannot stop a library from being loaded here.
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

// The name by which the linker is asked for this file.
extern const char mvModuleEntry = 0;
}

namespace {

bool detached = false;

void Notify(DWORD reason, LPVOID reserved) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       &mvModuleEntry, &module);
    DllMain(module, reason, reserved);
}

// When the process ends, static objects go first and the library's destructors are called after them; when the library
// is unloaded, the destructors come first. So this object's end shows which of the two it is.
class ProcessEnd {
public:
    ProcessEnd() { Notify(DLL_PROCESS_ATTACH, nullptr); }
    ~ProcessEnd() {
        if (detached) return;
        detached = true;
        Notify(DLL_PROCESS_DETACH, &detached);  // not null: the process is ending
    }
};

// Attached when the static objects of the library's own files are there: this file is linked after them.
ProcessEnd processEnd;

__attribute__((destructor)) void Unload() {
    if (detached) return;
    detached = true;
    Notify(DLL_PROCESS_DETACH, nullptr);
}

}  // namespace
