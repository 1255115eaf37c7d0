// The program's stand-in for the functions below a provider.
#include "failingfunctions.h"

namespace {
FailingFunctions* standIn = nullptr;
}

FailingFunctions* GetFailingFunctions() { return standIn; }

void SetFailingFunctions(FailingFunctions* functions) { standIn = functions; }
