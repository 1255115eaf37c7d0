// Export mark of mvutilC0, the maker's utility library.
#pragma once

#include <widetext.h>
#include <windows.h>

#ifdef MVUTIL_EXPORTS
#define MVUTIL_API __declspec(dllexport)
#else
#define MVUTIL_API __declspec(dllimport)
#endif
