// The module that this code is linked into: the component, or a program that links its sources.
#pragma once

#include <windows.h>

// What the entry point recorded; null before that, which stands for the program itself.
HMODULE GetComponentModule() noexcept;
void SetComponentModule(HMODULE module) noexcept;
