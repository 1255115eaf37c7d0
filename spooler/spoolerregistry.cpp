// Reading and writing of registry values.
#include "spoolerregistry.h"

#include "spoolererror.h"

#include <sizedread.h>

#include <cstring>

namespace {

constexpr DWORD kLongestName = 16384;  // characters, the NUL included

void Check(LSTATUS status) {
    if (status != ERROR_SUCCESS) throw SpoolerError{static_cast<DWORD>(status)};
}

// The text in REG_SZ or REG_MULTI_SZ bytes, however it ends.
WideString TextFromBytes(const std::vector<BYTE>& bytes) {
    WideString text(bytes.size() / sizeof(WCHAR), W('\0'));
    if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(WCHAR));
    return text;
}

// Hands each name to the visitor, as long as that wants more.
template <class Enumerate, class Visit>
void VisitNames(Enumerate enumerate, Visit wantsMore) {
    WideString buffer(kLongestName, W('\0'));
    for (DWORD index = 0;; ++index) {
        auto characters = static_cast<DWORD>(buffer.size());
        const LSTATUS status = enumerate(index, buffer.data(), &characters);
        if (status == ERROR_NO_MORE_ITEMS) return;
        Check(status);
        if (!wantsMore(buffer.substr(0, characters))) return;
    }
}

template <class Visit>
void VisitKeys(const UniqueKey& key, Visit wantsMore) {
    VisitNames(
        [&](DWORD index, WCHAR* name, DWORD* characters) {
            return RegEnumKeyExW(key.Get(), index, name, characters, nullptr, nullptr, nullptr, nullptr);
        },
        wantsMore);
}

}  // namespace

UniqueKey OpenKey(const WideString& path, HKEY hive) {
    UniqueKey key;
    const LSTATUS status = RegOpenKeyExW(hive, path.c_str(), 0, KEY_READ, key.Put());
    if (status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND) return {};
    Check(status);
    return key;
}

UniqueKey CreateKey(const WideString& path, bool* created) {
    UniqueKey key;
    DWORD disposition = 0;
    Check(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE,
                          nullptr, key.Put(), &disposition));
    if (created) *created = disposition == REG_CREATED_NEW_KEY;
    return key;
}

void DeleteKey(const WideString& path, HKEY hive) {
    const LSTATUS status = RegDeleteTreeW(hive, path.c_str());
    if (status != ERROR_FILE_NOT_FOUND && status != ERROR_PATH_NOT_FOUND) Check(status);
}

std::optional<RegistryData> ReadValue(const UniqueKey& key, const WCHAR* name, DWORD usualBytes) {
    DWORD type = REG_NONE;
    SizedBytes bytes(usualBytes);
    const DWORD error = ReadRegistryValue(key.Get(), name, type, bytes);
    if (error == ERROR_FILE_NOT_FOUND) return std::nullopt;
    Check(static_cast<LSTATUS>(error));
    return RegistryData{type, {bytes.Get().begin(), bytes.Get().end()}};
}

WideString ReadText(const UniqueKey& key, const WCHAR* name) {
    const auto value = ReadValue(key, name);
    if (!value || (value->type != REG_SZ && value->type != REG_EXPAND_SZ)) return {};
    const WideString text = TextFromBytes(value->bytes);
    return text.substr(0, text.find(W('\0')));
}

WideString ReadTexts(const UniqueKey& key, const WCHAR* name) {
    const auto value = ReadValue(key, name);
    if (!value || value->type != REG_MULTI_SZ) return {};
    const WideString stored = TextFromBytes(value->bytes);
    WideString texts;
    for (std::size_t start = 0; start < stored.size() && stored[start] != W('\0');) {
        const WideString text = stored.substr(start, stored.find(W('\0'), start) - start);
        texts += text;
        texts += W('\0');
        start += text.size() + 1;
    }
    return texts;
}

DWORD ReadNumber(const UniqueKey& key, const WCHAR* name) {
    const auto value = ReadValue(key, name);
    DWORD number = 0;
    if (value && value->type == REG_DWORD && value->bytes.size() == sizeof number)
        std::memcpy(&number, value->bytes.data(), sizeof number);
    return number;
}

void WriteValue(const UniqueKey& key, const WCHAR* name, DWORD type, const void* data, std::size_t bytes) {
    Check(RegSetValueExW(key.Get(), name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(bytes)));
}

void WriteText(const UniqueKey& key, const WCHAR* name, const WideString& text) {
    WriteValue(key, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(WCHAR));
}

void WriteTexts(const UniqueKey& key, const WCHAR* name, const WideString& texts) {
    WriteValue(key, name, REG_MULTI_SZ, texts.c_str(), (texts.size() + 1) * sizeof(WCHAR));
}

void WriteNumber(const UniqueKey& key, const WCHAR* name, DWORD number) {
    WriteValue(key, name, REG_DWORD, &number, sizeof number);
}

std::vector<WideString> ListKeys(const UniqueKey& key) {
    std::vector<WideString> names;
    VisitKeys(key, [&](WideString name) {
        names.push_back(std::move(name));
        return true;
    });
    return names;
}

bool AnyKey(const UniqueKey& key, const std::function<bool(const WideString& name)>& test) {
    bool found = false;
    VisitKeys(key, [&](const WideString& name) { return !(found = test(name)); });
    return found;
}

std::vector<WideString> ListValues(const UniqueKey& key) {
    std::vector<WideString> names;
    VisitNames(
        [&](DWORD index, WCHAR* name, DWORD* characters) {
            return RegEnumValueW(key.Get(), index, name, characters, nullptr, nullptr, nullptr, nullptr);
        },
        [&](WideString name) {
            names.push_back(std::move(name));
            return true;
        });
    return names;
}
