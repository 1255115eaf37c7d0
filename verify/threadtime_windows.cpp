// From the performance counter: the thread's own times come in steps that are too coarse.
#include "threadtime.h"

#include <windows.h>

double GetThreadSeconds() {
    LARGE_INTEGER ticks, perSecond;
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&perSecond);
    return static_cast<double>(ticks.QuadPart) / static_cast<double>(perSecond.QuadPart);
}
