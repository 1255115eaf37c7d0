// The delay-load routine's notifications, as the SDK gives them. Implemented in platform/delay, once in every module
// that links delayed imports: the hook and the list of loaded libraries are the module's own.
#pragma once

#include <windows.h>

struct ImgDelayDescr;  // what the linker writes of a delayed library; here the routine's own business
using PCImgDelayDescr = const ImgDelayDescr*;

enum {
    dliStartProcessing = 0,  // the hook may give the function: nothing more is done then
    dliNoteStartProcessing = dliStartProcessing,
    dliNotePreLoadLibrary = 1,     // the hook may give the module, as a FARPROC
    dliNotePreGetProcAddress = 2,  // the hook may give the function
    dliFailLoadLib = 3,            // to the failure hook, which may give the module, as a FARPROC
    dliFailGetProc = 4,            // to the failure hook, which may give the function
    dliNoteEndProcessing = 5,
};

struct DelayLoadProc {
    BOOL fImportByName;
    union {
        LPCSTR szProcName;
        DWORD dwOrdinal;
    };
};

struct DelayLoadInfo {
    DWORD cb;  // size of this record
    PCImgDelayDescr pidd;
    FARPROC* ppfn;  // where the function's address goes
    LPCSTR szDll;
    DelayLoadProc dlp;
    HMODULE hmodCur;
    FARPROC pfnCur;
    DWORD dwLastError;
};
using PDelayLoadInfo = DelayLoadInfo*;
using PfnDliHook = FARPROC(WINAPI*)(unsigned notification, PDelayLoadInfo information);

// Set by assignment or by a definition of the module's own. An exception that a hook throws leaves the routine through
// the call that began it; nothing is bound then.
extern "C" PfnDliHook __pfnDliNotifyHook2;
extern "C" PfnDliHook __pfnDliFailureHook2;

// Releases a library that the routine loaded and resets its imports, so that the next call loads it again. The name is
// compared exactly. FALSE when no such library is loaded.
extern "C" BOOL WINAPI __FUnloadDelayLoadedDLL2(LPCSTR name);
