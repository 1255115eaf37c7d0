// The program's stand-in for the functions below a provider.
#include "failingfunctions.h"

namespace {
FailingFunctions* registered = nullptr;
}

FailingFunctions* GetFailingFunctions() { return registered; }

void SetFailingFunctions(FailingFunctions* functions) { registered = functions; }
