// The component's entry point.
#include <dlldelayloader.h>

#include <windows.h>

// Succeeds for every notification. Attaching records the module's handle; a detach with a reserved argument means that
// the process is ending, when libraries must not be unloaded any more.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH) AttachModule(module);
    if (reason == DLL_PROCESS_DETACH && reserved) NoteProcessEnding();
    return TRUE;
}
