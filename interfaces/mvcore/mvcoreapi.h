// mvcoreC0, the maker's data-model library: its one entry point. The library is loaded at the first call of it.
#pragma once

#include <windows.h>

class MvCoreLibrary;

#ifdef MVCORE_EXPORTS
#define MVCORE_API extern "C" __declspec(dllexport)
#else
#define MVCORE_API extern "C"
#endif

// The library's root object. It belongs to the library and lives until it is unloaded.
MVCORE_API MvCoreLibrary* GetMvCoreLibrary();
