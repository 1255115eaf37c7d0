// MorvaneUtilities: paths of modules, and the registry names and hive shared by the driver family.
#include <mvutil/morvaneutilities.h>

#include <mvutil/cachelocation.h>
#include <mvutil/lackofmemory.h>
#include <mvutil/operatingsystem.h>

#include "operationmemory.h"
#include "registryread.h"

CXString MorvaneUtilities::ReplaceControlCharacters(const CXString& text) {
    WideString line = text.AsWideString();
    for (WCHAR& unit : line)
        if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) unit = W(' ');
    return line;
}

CXString MorvaneUtilities::getModulePath(HMODULE module) {
    for (DWORD size = 512; size <= 65536; size *= 2) {
        WideString path(size, WCHAR());
        const DWORD length = GetModuleFileNameW(module, path.data(), size);
        if (length == 0) {
            ThrowIfLackOfMemory(GetLastError());
            break;
        }
        if (length < size) {
            path.resize(length);
            return path;
        }
    }
    return CXString();
}

CXString MorvaneUtilities::getPathFromFileName(const CXString& file) {
    const std::size_t last = file.AsWideString().find_last_of(W("\\/"));
    return last == WideString::npos ? CXString() : CXString(file.AsWideString().substr(0, last + 1));
}

CXString MorvaneUtilities::ConvertPortNameToRegistryKey(const CXString& port) {
    return GetCacheKeyName(port.AsWideString());
}

namespace {

HKEY FindHiveByContext() {
    if (DriverLoadedContext::IsSpoolerOrFilterPipelineExeContext()) return HKEY_LOCAL_MACHINE;
    if (OpenKey(HKEY_LOCAL_MACHINE, kDriverFamilyKey, KEY_WRITE)) return HKEY_LOCAL_MACHINE;
    UniqueKey key;
    const LSTATUS status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, kDriverFamilyKey, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                           KEY_WRITE, nullptr, key.Put(), nullptr);
    return status == ERROR_SUCCESS ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

}  // namespace

HKEY MorvaneUtilities::GetRegistryHiveByContext() {
    OperationMemory* const memory = GetOperationMemory();
    if (!memory) return FindHiveByContext();
    if (!memory->hive) memory->hive = FindHiveByContext();
    return *memory->hive;
}
