// Reading and writing of registry values, with SpoolerError for failures.
#pragma once

#include "spoolertext.h"

#include <sizedread.h>
#include <uniquehandle.h>

#include <functional>
#include <optional>
#include <vector>

struct RegistryData {
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};

// Under HKEY_LOCAL_MACHINE unless a hive is named. An absent key or value is an empty result; any other failure throws.
UniqueKey OpenKey(const WideString& path, HKEY hive = HKEY_LOCAL_MACHINE);
UniqueKey CreateKey(const WideString& path, bool* created = nullptr);
void DeleteKey(const WideString& path, HKEY hive = HKEY_LOCAL_MACHINE);  // with all below it; absent is no failure

// A value that is longer than usual is asked for twice.
std::optional<RegistryData> ReadValue(const UniqueKey& key, const WCHAR* name,
                                      DWORD usualBytes = SizedBytes::kFirstBytes);
WideString ReadText(const UniqueKey& key, const WCHAR* name);   // empty when absent or of another type
WideString ReadTexts(const UniqueKey& key, const WCHAR* name);  // REG_MULTI_SZ: each text with its NUL
DWORD ReadNumber(const UniqueKey& key, const WCHAR* name);      // 0 when absent or of another type
void WriteValue(const UniqueKey& key, const WCHAR* name, DWORD type, const void* data, std::size_t bytes);
void WriteText(const UniqueKey& key, const WCHAR* name, const WideString& text);
void WriteTexts(const UniqueKey& key, const WCHAR* name, const WideString& texts);
void WriteNumber(const UniqueKey& key, const WCHAR* name, DWORD number);

std::vector<WideString> ListKeys(const UniqueKey& key);  // names of the keys directly below
// Whether the test holds for one of these names; no further ones are looked at then.
bool AnyKey(const UniqueKey& key, const std::function<bool(const WideString& name)>& test);
std::vector<WideString> ListValues(const UniqueKey& key);  // names of the values
