// User: the current user's own registry values of the driver family.
#pragma once

#include <mvutil/bytebuffer.h>

#include <vector>

// Keys are paths under the driver family's key of the current user.
class MVUTIL_API User {
public:
    static constexpr DWORD kMaximumKeyNames = 4096;  // more are no list that a user made
    // Names of the keys directly under the key, in the registry's order, at most that many; none when it does not
    // exist.
    static std::vector<CXString> EnumUserKeyNames(const CXString& key);
    static LONG GetUserDataLongFromRegistry(const CXString& key, const CXString& name, LONG defaultValue);
    static bool GetUserDataBooleanFromRegistry(const CXString& key, const CXString& name, bool defaultValue);
    // False, and the out argument unchanged, when there is no such value.
    static bool GetUserDataBytesFromRegistry(const CXString& key, const CXString& name, ByteBuffer& value);
    // Each replaces the value or adds it, with the keys on the way; whether the registry took it.
    static bool StoreUserDataBytesInRegistry(const CXString& key, const CXString& name, const ByteBuffer& value);
    static bool StoreUserDataLongInRegistry(const CXString& key, const CXString& name, LONG value);
    static bool StoreUserDataStringInRegistry(const CXString& key, const CXString& name, const CXString& value);
};
