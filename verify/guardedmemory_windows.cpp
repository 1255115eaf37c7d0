// Guarded memory from VirtualAlloc.
#include "guardedmemory.h"

#include <windows.h>

std::byte* GetEndOfGuardedMemory() {
    static void* const memory = VirtualAlloc(nullptr, 2 * kGuardedBytes, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    std::byte* const end = static_cast<std::byte*>(memory) + kGuardedBytes;
    DWORD before;
    VirtualProtect(end, kGuardedBytes, PAGE_NOACCESS, &before);
    return end;
}
