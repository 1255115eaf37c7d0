// The table of open printer handles: a handle is a number in it and is never looked behind.
#pragma once

#include "spoolertext.h"

// What a handle stands for: a printer by name, or the local print server (empty name).
HANDLE OpenHandle(const WideString& printerName);
WideString GetNameBehind(HANDLE handle);  // throws ERROR_INVALID_HANDLE
void CloseHandleOf(HANDLE handle);        // throws ERROR_INVALID_HANDLE
