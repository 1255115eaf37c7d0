// Reading one registry value whole.
#pragma once

#include <mvutil/bytebuffer.h>

#include <sizedread.h>
#include <uniquehandle.h>
#include <windows.h>

// The key opened for that access; empty when it does not exist or may not be used so.
inline UniqueKey OpenKey(HKEY hive, const CXString& path, REGSAM access) {
    UniqueKey key;
    if (RegOpenKeyExW(hive, path.GetString(), 0, access, key.Put()) != ERROR_SUCCESS) return UniqueKey();
    return key;
}

// False when the value does not exist or cannot be read.
inline bool ReadRegistryValue(HKEY hive, const CXString& path, const CXString& name, ByteBuffer& value) {
    const UniqueKey key = OpenKey(hive, path, KEY_READ);
    if (!key) return false;
    SizedBytes bytes;
    DWORD type = REG_NONE;
    const DWORD error = ReadRegistryValue(key.Get(), name.GetString(), type, bytes);
    if (error != ERROR_SUCCESS) return false;
    value.setWithLpbyte(bytes.Get().data(), bytes.Get().size());
    return true;
}
