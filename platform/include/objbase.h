// COM memory, as the SDK gives it.
#pragma once

#include <unknwn.h>

// A block of the given size in bytes, or null. The receiver frees it with CoTaskMemFree.
extern "C" {
LPVOID WINAPI CoTaskMemAlloc(SIZE_T bytes);
void WINAPI CoTaskMemFree(LPVOID block);
}
