// The program as a library: it imports the driver's DLLs, which the launcher must first make findable.
#include <windows.h>

#include <iostream>

#include <subsystem/hostplatform.h>
#include "runhost.h"

extern "C" __declspec(dllexport) int RunProgram() {
    return RunHost(GetProgramArguments(0, nullptr), std::cout, std::cerr);
}
