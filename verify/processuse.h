// What the process holds: for tests that repeat something and look for what is left.
#pragma once

#include <cstddef>

struct ProcessUse {
    std::size_t heapBytes;    // allocated and not freed
    std::size_t openHandles;  // files, registry keys and their like
};

ProcessUse MeasureProcessUse();
