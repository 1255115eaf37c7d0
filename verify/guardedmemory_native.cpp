// Guarded memory from mmap.
#include "guardedmemory.h"

#include <sys/mman.h>

std::byte* GetEndOfGuardedMemory() {
    constexpr std::size_t kBothBytes = 2 * kGuardedBytes;
    static void* const memory = mmap(nullptr, kBothBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    std::byte* const end = static_cast<std::byte*>(memory) + kGuardedBytes;
    mprotect(end, kGuardedBytes, PROT_NONE);
    return end;
}
