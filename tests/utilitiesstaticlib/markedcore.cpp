// A stand-in for mvcoreC0 whose root object is the number MARK; with MARK 0 one that lacks the function.
#include <windows.h>

#if MARK == 0
#define GetMvCoreLibrary GetSomethingElse
#endif

extern "C" __declspec(dllexport) const void* GetMvCoreLibrary() {
    static const int mark = MARK;
    return &mark;
}
