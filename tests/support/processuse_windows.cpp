// From the C runtime's heap and the system's count of handles.
#include <windows.h>

#include <malloc.h>

#include <support/processuse.h>

ProcessUse MeasureProcessUse() {
    ProcessUse use{0, 0};
    _HEAPINFO entry{};
    while (_heapwalk(&entry) == _HEAPOK)
        if (entry._useflag == _USEDENTRY) use.heapBytes += entry._size;
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    use.openHandles = handles;
    return use;
}
