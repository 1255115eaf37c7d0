// Lack of memory, as system calls report it.
#pragma once

#include <windows.h>

#include <new>

// It stays what it is, whoever met it: an error that says so becomes std::bad_alloc and never another failure.
inline void ThrowIfLackOfMemory(DWORD error) {
    if (error == ERROR_NOT_ENOUGH_MEMORY || error == ERROR_OUTOFMEMORY) throw std::bad_alloc();
}
