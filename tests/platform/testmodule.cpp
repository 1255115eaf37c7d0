// A library for the tests of module loading: it reports what its entry point was called with.
#include <windows.h>

#include <string>

namespace {

// Needs construction: the entry point must find it made, and not yet gone.
const std::string greeting(40, 'm');

HMODULE attachedAs = nullptr;
LONG attachments = 0;
LONG* detachNotice = nullptr;  // 1 unloaded, 2 the process ended, 3 objects were gone

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    const bool isMade = greeting.size() == 40 && greeting[39] == 'm';
    if (reason == DLL_PROCESS_ATTACH && isMade) {
        attachedAs = module;
        ++attachments;
    }
    if (reason == DLL_PROCESS_DETACH && detachNotice) *detachNotice = !isMade ? 3 : reserved ? 2 : 1;
    return TRUE;
}

__declspec(dllexport) HMODULE AttachedAs() { return attachedAs; }
__declspec(dllexport) LONG Attachments() { return attachments; }
__declspec(dllexport) void NoticeDetach(LONG* notice) { detachNotice = notice; }
}
