// Reading one registry value whole.
#include "registryread.h"

#include "operationmemory.h"

namespace {

DWORD Query(HKEY key, const CXString& name, ByteBuffer& value) {
    SizedBytes bytes(SizedBytes::kBytesOfCache);
    DWORD type = REG_NONE;
    const DWORD error = ReadRegistryValue(key, name.GetString(), type, bytes);
    if (error == ERROR_SUCCESS) value.setWithLpbyte(bytes.Get().data(), bytes.Get().size());
    return error;
}

}  // namespace

UniqueKey OpenKey(HKEY hive, const CXString& path, REGSAM access) {
    UniqueKey key;
    if (RegOpenKeyExW(hive, path.GetString(), 0, access, key.Put()) != ERROR_SUCCESS) return UniqueKey();
    return key;
}

void ForgetLastKey() {
    if (OperationMemory* const memory = GetOperationMemory()) memory->lastKey.Reset();
}

DWORD QueryRegistryValue(HKEY hive, const CXString& path, const CXString& name, ByteBuffer& value) {
    OperationMemory* const memory = GetOperationMemory();
    if (memory && memory->lastKey && memory->lastHive == hive && memory->lastPath == path.AsWideString())
        return Query(memory->lastKey.Get(), name, value);
    UniqueKey key;
    const LSTATUS status = RegOpenKeyExW(hive, path.GetString(), 0, KEY_READ, key.Put());
    if (status != ERROR_SUCCESS) return static_cast<DWORD>(status);
    const DWORD error = Query(key.Get(), name, value);
    if (memory) {
        memory->lastKey = std::move(key);
        memory->lastHive = hive;
        memory->lastPath = path.AsWideString();
    }
    return error;
}
