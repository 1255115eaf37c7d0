// Memory that ends at an unreadable page, so that a read or write past it ends the test.
#pragma once

#include <cstddef>

class GuardedMemory {
public:
    explicit GuardedMemory(std::size_t bytes);  // zeroed
    ~GuardedMemory();
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;
    void* Get() const noexcept { return memory_; }

private:
    void* region_ = nullptr;
    std::size_t regionBytes_ = 0;
    void* memory_ = nullptr;
};
