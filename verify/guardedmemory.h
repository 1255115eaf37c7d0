// Memory that ends at an unreadable page, so that a read or write past it ends the test.
#pragma once

#include <cstddef>

inline constexpr std::size_t kGuardedBytes = 16384;

// The end of that many bytes, behind which nothing can be read; they are the process's, and zeroed at first.
std::byte* GetEndOfGuardedMemory();
