// From the process's heaps, and by asking for each handle that there can be.
#include "processuse.h"

#include <windows.h>

#include <cstdint>
#include <vector>

ProcessUse MeasureProcessUse() {
    constexpr std::uintptr_t kLastHandle = 0x4000, kHandleStep = 4;
    ProcessUse use{0, 0};
    std::vector<HANDLE> heaps(64);
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    for (const HANDLE heap : heaps) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry))
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) use.heapBytes += entry.cbData;
    }
    for (std::uintptr_t handle = kHandleStep; handle <= kLastHandle; handle += kHandleStep) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags)) ++use.openHandles;
    }
    return use;
}
