// Export mark of mvprodC0, the reader of product descriptions.
#pragma once

#include <windows.h>

#ifdef MVPROD_EXPORTS
#define MVPROD_API __declspec(dllexport)
#else
#define MVPROD_API __declspec(dllimport)
#endif
