// Export mark of mvutilC0, the maker's utility library.
#pragma once

#include <windows.h>
#include <widetext.h>

#ifdef MVUTIL_EXPORTS
#define MVUTIL_API __declspec(dllexport)
#else
#define MVUTIL_API __declspec(dllimport)
#endif
