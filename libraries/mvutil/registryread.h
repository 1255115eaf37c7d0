// Reading one registry value whole.
#pragma once

#include <mvutil/bytebuffer.h>

#include <uniquehandle.h>
#include <windows.h>

// The key opened for that access; empty when it does not exist or may not be used so.
UniqueKey OpenKey(HKEY hive, const CXString& path, REGSAM access);

// A Win32 error code; ERROR_FILE_NOT_FOUND when the key or the value does not exist. Within an operation a key stays
// open until another one is read.
DWORD QueryRegistryValue(HKEY hive, const CXString& path, const CXString& name, ByteBuffer& value);
// Before a key is made, which another process may have deleted meanwhile.
void ForgetLastKey();

// False when the value does not exist or cannot be read.
inline bool ReadRegistryValue(HKEY hive, const CXString& path, const CXString& name, ByteBuffer& value) {
    return QueryRegistryValue(hive, path, name, value) == ERROR_SUCCESS;
}
