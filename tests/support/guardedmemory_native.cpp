// Guarded memory from mmap.
#include <sys/mman.h>

#include <new>

#include <support/guardedmemory.h>

namespace {
constexpr std::size_t kPage = 4096;
}

GuardedMemory::GuardedMemory(std::size_t bytes) : regionBytes_((bytes + kPage - 1) / kPage * kPage + kPage) {
    region_ = mmap(nullptr, regionBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (region_ == MAP_FAILED) throw std::bad_alloc();
    char* guard = static_cast<char*>(region_) + regionBytes_ - kPage;
    mprotect(guard, kPage, PROT_NONE);
    memory_ = guard - bytes;
}

GuardedMemory::~GuardedMemory() { munmap(region_, regionBytes_); }
