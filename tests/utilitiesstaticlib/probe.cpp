// A module that loads mvcoreC0 at its first use, with the component's loader and entry point.
#include <dlldelayloader.h>
#include <mvcore/mvcoreapi.h>

#include <mvutil/morvaneexception.h>

#define PROBE_API extern "C" __declspec(dllexport)

// The mark of the library that was found; 0 when the failure of not finding one came, -1 for any other.
PROBE_API int ProbeCall() {
    try {
        return *reinterpret_cast<const int*>(GetMvCoreLibrary());
    } catch (const ExceptionDelayLoadDllLoadFailure&) {
        return 0;
    } catch (...) {
        return -1;
    }
}

// Resolves the library once more than the routine does; the caller owns the reference.
PROBE_API HMODULE ProbeResolve() { return GetDllDelayLoader().Resolve("mvcoreC0.dll"); }

PROBE_API void ProbeNoteProcessEnding() { NoteProcessEnding(); }

PROBE_API int ProbeRecordCount() { return static_cast<int>(GetDllDelayLoader().GetLibraries().size()); }
