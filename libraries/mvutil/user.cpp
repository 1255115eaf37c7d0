// User: the current user's registry values of the driver family.
#include <mvutil/user.h>

#include <mvutil/cachelocation.h>

#include "registryread.h"

#include <iterator>

namespace {

CXString UserPath(const CXString& key) { return CXString(kDriverFamilyKey) + W("\\") + key; }

bool StoreValue(const CXString& key, const CXString& name, DWORD type, const void* value, std::size_t bytes) {
    ForgetLastKey();
    UniqueKey opened;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, UserPath(key).GetString(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE,
                        nullptr, opened.Put(), nullptr) != ERROR_SUCCESS)
        return false;
    return RegSetValueExW(opened.Get(), name.GetString(), 0, type, static_cast<const BYTE*>(value),
                          static_cast<DWORD>(bytes)) == ERROR_SUCCESS;
}

}  // namespace

std::vector<CXString> User::EnumUserKeyNames(const CXString& key) {
    std::vector<CXString> names;
    const UniqueKey parent = OpenKey(HKEY_CURRENT_USER, UserPath(key), KEY_READ);
    if (!parent) return names;
    for (DWORD index = 0; index < kMaximumKeyNames; ++index) {
        WCHAR name[256];  // a key's name has at most 255 characters
        DWORD length = static_cast<DWORD>(std::size(name));
        const LSTATUS status = RegEnumKeyExW(parent.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status != ERROR_SUCCESS) break;
        names.emplace_back(name, length);
    }
    return names;
}

LONG User::GetUserDataLongFromRegistry(const CXString& key, const CXString& name, LONG defaultValue) {
    ByteBuffer value;
    if (!ReadRegistryValue(HKEY_CURRENT_USER, UserPath(key), name, value)) return defaultValue;
    return value.getDword() == sizeof(LONG) ? value.getAsLongValue() : defaultValue;
}

bool User::GetUserDataBooleanFromRegistry(const CXString& key, const CXString& name, bool defaultValue) {
    return GetUserDataLongFromRegistry(key, name, defaultValue ? 1 : 0) != 0;
}

bool User::GetUserDataBytesFromRegistry(const CXString& key, const CXString& name, ByteBuffer& value) {
    return ReadRegistryValue(HKEY_CURRENT_USER, UserPath(key), name, value);
}

bool User::StoreUserDataBytesInRegistry(const CXString& key, const CXString& name, const ByteBuffer& value) {
    return StoreValue(key, name, REG_BINARY, value.getLpbyte(), value.getDword());
}

bool User::StoreUserDataLongInRegistry(const CXString& key, const CXString& name, LONG value) {
    return StoreValue(key, name, REG_DWORD, &value, sizeof(value));
}

bool User::StoreUserDataStringInRegistry(const CXString& key, const CXString& name, const CXString& value) {
    return StoreValue(key, name, REG_SZ, value.GetString(), (value.GetLength() + 1) * sizeof(WCHAR));
}
