// The store's registry as a whole: read for an export, changed by an import.
#include "registryexchange.h"

#include <uniquehandle.h>

#include <algorithm>

#include "hosterror.h"
#include "hosttext.h"

namespace {

constexpr DWORD kNameCharacters = 16384;  // the longest value name and its NUL; key names are shorter

void RequireSuccess(LSTATUS status, const std::string& operation, WideStringView path) {
    if (status != ERROR_SUCCESS)
        throw OperationError(operation + " of the registry key '" + ToUtf8(path) + "'", HRESULT_FROM_WIN32(status));
}

// Another process has deleted the key that is being read.
struct KeyIsGone {};

void RequireThere(LSTATUS status, const std::string& operation, WideStringView path) {
    if (status == ERROR_KEY_DELETED) throw KeyIsGone();
    RequireSuccess(status, operation, path);
}

std::vector<RegFileValue> ReadValues(HKEY key, const WideString& path) {
    std::vector<RegFileValue> values;
    WideString name(kNameCharacters, W('\0'));
    for (DWORD index = 0;; ++index) {
        DWORD characters = kNameCharacters;
        DWORD bytes = 0;
        RegFileValue value;
        LSTATUS status = RegEnumValueW(key, index, name.data(), &characters, nullptr, &value.type, nullptr, &bytes);
        if (status == ERROR_NO_MORE_ITEMS) return values;
        RequireThere(status, "enumerating the values", path);
        value.name.assign(name.data(), characters);
        value.data.resize(bytes);
        status = RegQueryValueExW(key, value.name.c_str(), nullptr, &value.type, value.data.data(), &bytes);
        RequireThere(status, "reading a value", path);
        value.data.resize(std::min<std::size_t>(bytes, value.data.size()));
        values.push_back(std::move(value));
    }
}

std::vector<WideString> ReadKeyNames(HKEY key, const WideString& path) {
    std::vector<WideString> names;
    WideString name(kNameCharacters, W('\0'));
    for (DWORD index = 0;; ++index) {
        DWORD characters = kNameCharacters;
        const LSTATUS status = RegEnumKeyExW(key, index, name.data(), &characters, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return names;
        RequireThere(status, "enumerating the keys", path);
        names.emplace_back(name.data(), characters);
    }
}

void ReadKeys(HKEY hive, const WideString& path, const RegPathTest& isWanted, RegFile& file) {
    if (isWanted && !isWanted(path)) return;
    std::vector<WideString> names;
    try {
        UniqueKey key;
        const LSTATUS status = RegOpenKeyExW(hive, path.c_str(), 0, KEY_READ, key.Put());
        RequireThere(status == ERROR_FILE_NOT_FOUND ? ERROR_KEY_DELETED : status, "opening", path);
        RegFileKey entry{hive, path, false, ReadValues(key.Get(), path)};
        names = ReadKeyNames(key.Get(), path);
        file.push_back(std::move(entry));
    } catch (const KeyIsGone&) {
        return;
    }
    const WideString prefix = path.empty() ? path : path + W('\\');
    for (const WideString& name : names) ReadKeys(hive, prefix + name, isWanted, file);
}

void ChangeKey(const RegFileKey& entry) {
    UniqueKey key;
    const LSTATUS status = RegCreateKeyExW(entry.hive, entry.path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                           KEY_READ | KEY_WRITE, nullptr, key.Put(), nullptr);
    RequireSuccess(status, "making", entry.path);
    for (const RegFileValue& value : entry.values) {
        if (!value.remove) {
            RequireSuccess(RegSetValueExW(key.Get(), value.name.c_str(), 0, value.type, value.data.data(),
                                          static_cast<DWORD>(value.data.size())),
                           "setting a value", entry.path);
            continue;
        }
        const LSTATUS removed = RegDeleteValueW(key.Get(), value.name.c_str());
        if (removed != ERROR_FILE_NOT_FOUND) RequireSuccess(removed, "deleting a value", entry.path);
    }
}

}  // namespace

RegFile ExportRegistry(const RegPathTest& isWanted) {
    RegFile file;
    for (const HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) ReadKeys(hive, WideString(), isWanted, file);
    return file;
}

void ImportRegistry(const RegFile& file) {
    for (const RegFileKey& entry : file) {
        if (!entry.remove) {
            ChangeKey(entry);
            continue;
        }
        const LSTATUS removed = RegDeleteTreeW(entry.hive, entry.path.c_str());
        if (removed != ERROR_FILE_NOT_FOUND) RequireSuccess(removed, "deleting", entry.path);
    }
}
