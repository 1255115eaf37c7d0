// Guarded memory from VirtualAlloc.
#include <windows.h>

#include <new>

#include <support/guardedmemory.h>

namespace {
constexpr std::size_t kPage = 4096;
}

GuardedMemory::GuardedMemory(std::size_t bytes) : regionBytes_((bytes + kPage - 1) / kPage * kPage + kPage) {
    region_ = VirtualAlloc(nullptr, regionBytes_, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    if (!region_) throw std::bad_alloc();
    char* guard = static_cast<char*>(region_) + regionBytes_ - kPage;
    DWORD before;
    VirtualProtect(guard, kPage, PAGE_NOACCESS, &before);
    memory_ = guard - bytes;
}

GuardedMemory::~GuardedMemory() { VirtualFree(region_, 0, MEM_RELEASE); }
