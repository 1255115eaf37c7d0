// A stand-in for mvcoreC0 whose root object is the number MARK.
#include <windows.h>

extern "C" __declspec(dllexport) const void* GetMvCoreLibrary() {
    static const int mark = MARK;
    return &mark;
}
