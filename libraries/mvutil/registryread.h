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

// A Win32 error code; ERROR_FILE_NOT_FOUND when the key or the value does not exist.
inline DWORD QueryRegistryValue(HKEY hive, const CXString& path, const CXString& name, ByteBuffer& value) {
    UniqueKey key;
    const LSTATUS status = RegOpenKeyExW(hive, path.GetString(), 0, KEY_READ, key.Put());
    if (status != ERROR_SUCCESS) return static_cast<DWORD>(status);
    SizedBytes bytes(SizedBytes::kBytesOfCache);
    DWORD type = REG_NONE;
    const DWORD error = ReadRegistryValue(key.Get(), name.GetString(), type, bytes);
    if (error == ERROR_SUCCESS) value.setWithLpbyte(bytes.Get().data(), bytes.Get().size());
    return error;
}

// False when the value does not exist or cannot be read.
inline bool ReadRegistryValue(HKEY hive, const CXString& path, const CXString& name, ByteBuffer& value) {
    return QueryRegistryValue(hive, path, name, value) == ERROR_SUCCESS;
}
