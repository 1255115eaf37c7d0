// The registry functions.
#include <registryrequests.h>
#include <textcodec.h>
#include <widetext.h>
#include <windows.h>
#include "../text/textcase.h"
#include "openkeys.h"
#include "storechange.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>

namespace mvplatform {
namespace {

constexpr std::size_t longestKeyName = 255;
constexpr std::size_t longestValueName = 16383;

[[noreturn]] void Refuse(LSTATUS status, const char* reason) { throw RegistryError(status, reason); }

void Require(bool condition, const char* reason) {
    if (!condition) Refuse(ERROR_INVALID_PARAMETER, reason);
}

std::atomic<std::size_t> requests;

// Runs an operation on the open keys, one at a time in the process, and turns what it throws into the answer.
template <class Operation>
LSTATUS Guard(Operation operation) noexcept {
    try {
        OpenKeys& keys = OpenKeys::GetInstance();
        const std::lock_guard lock(keys.GetMutex());
        return operation(keys);
    } catch (const RegistryError& error) {
        return error.GetStatus();
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    } catch (...) {
        return ERROR_REGISTRY_IO_FAILED;
    }
}

template <class Operation>
LSTATUS Answer(Operation operation) noexcept {
    requests.fetch_add(1, std::memory_order_relaxed);
    return Guard(operation);
}

RegistryName MakeName(WideStringView text) {
    return {Utf8FromWide(text, BadText::Keep), Utf8FromWide(FoldRegistryName(text), BadText::Keep)};
}

RegistryName ValueName(LPCWSTR name) {
    const WideStringView text = name ? WideStringView(name) : WideStringView();
    Require(text.size() <= longestValueName, "the value's name is too long");
    return MakeName(text);
}

// The names between the backslashes; none for a null or empty path. One backslash may end the path.
KeyPath ParsePath(LPCWSTR path) {
    KeyPath names;
    WideStringView rest = path ? WideStringView(path) : WideStringView();
    while (!rest.empty()) {
        const std::size_t length = std::min(rest.find(W('\\')), rest.size());
        if (length == 0) Refuse(ERROR_BAD_PATHNAME, "a key's name is empty");
        Require(length <= longestKeyName, "a key's name is too long");
        names.push_back(MakeName(rest.substr(0, length)));
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    return names;
}

// The protocol of both functions that hand out data: a null buffer asks for the size, a short one is answered with it.
LSTATUS HandOut(const RegistryValue& value, LPDWORD type, LPBYTE data, LPDWORD bytes) {
    if (type) *type = value.type;
    if (!bytes) return ERROR_SUCCESS;
    const DWORD room = *bytes;
    *bytes = static_cast<DWORD>(value.data.size());
    if (!data) return ERROR_SUCCESS;
    if (room < value.data.size()) return ERROR_MORE_DATA;
    std::copy(value.data.begin(), value.data.end(), data);
    return ERROR_SUCCESS;
}

// Copies a name and its NUL; the size in characters counts the NUL on the way in and not on the way out.
LSTATUS HandOutName(const std::string& utf8, LPWSTR name, LPDWORD characters) {
    const WideString text = WideFromUtf8(utf8, BadText::Keep);
    if (*characters <= text.size()) return ERROR_MORE_DATA;
    name[text.copy(name, text.size())] = 0;
    *characters = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

}  // namespace
}  // namespace mvplatform

std::size_t GetRegistryRequestCount() noexcept { return mvplatform::requests.load(std::memory_order_relaxed); }

using namespace mvplatform;

extern "C" {

LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR path, DWORD reserved, LPWSTR keyClass, DWORD options, REGSAM access,
                               LPSECURITY_ATTRIBUTES security, PHKEY result, LPDWORD disposition) {
    if (result) *result = nullptr;
    return Answer([=](OpenKeys& keys) -> LSTATUS {
        Require(path && result && reserved == 0 && options == REG_OPTION_NON_VOLATILE,
                "an argument is not as required");
        if (keyClass || security) Refuse(ERROR_NOT_SUPPORTED, "key classes and security are not kept");
        bool created = false;
        const KeyId parent = keys.Find(key, 0);
        const KeyId id = keys.GetStore()->CreateKey(parent, ParsePath(path), created);
        if (created) NoteStoreChange();
        *result = keys.Add(id, access);
        if (disposition) *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR path, DWORD options, REGSAM access, PHKEY result) {
    if (result) *result = nullptr;
    return Answer([=](OpenKeys& keys) -> LSTATUS {
        Require(result && options == 0, "an argument is not as required");
        const KeyId parent = keys.Find(key, 0);
        const std::optional<KeyId> found = keys.GetStore()->FindKey(parent, ParsePath(path));
        if (!found) return ERROR_FILE_NOT_FOUND;
        *result = keys.Add(*found, access);
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegCloseKey(HKEY key) {
    return Guard([=](OpenKeys& keys) -> LSTATUS { return keys.Remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE; });
}

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD bytes) {
    return Answer([=](OpenKeys& keys) -> LSTATUS {
        Require(!reserved && (bytes || !data), "an argument is not as required");
        const KeyId id = keys.Find(key, KEY_QUERY_VALUE);
        const std::optional<RegistryValue> value = keys.GetStore()->ReadValue(id, ValueName(name));
        return value ? HandOut(*value, type, data, bytes) : ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes) {
    return Answer([=](OpenKeys& keys) -> LSTATUS {
        Require(reserved == 0 && (data || bytes == 0), "an argument is not as required");
        const KeyId id = keys.Find(key, KEY_SET_VALUE);
        const StoreChange change;
        keys.GetStore()->WriteValue(id, ValueName(name), type, {data, bytes});
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR name) {
    return Answer([=](OpenKeys& keys) -> LSTATUS {
        const KeyId id = keys.Find(key, KEY_SET_VALUE);
        const StoreChange change;
        return keys.GetStore()->DeleteValue(id, ValueName(name)) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS WINAPI RegDeleteTreeW(HKEY key, LPCWSTR path) {
    return Answer([=](OpenKeys& keys) -> LSTATUS {
        const KeyPath names = ParsePath(path);
        // Without a path the rights of the handle itself are needed.
        const REGSAM wanted = names.empty() ? KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_ENUMERATE_SUB_KEYS : 0;
        const std::optional<KeyId> found = keys.GetStore()->FindKey(keys.Find(key, wanted), names);
        if (!found) return ERROR_FILE_NOT_FOUND;
        const StoreChange change;
        keys.GetStore()->DeleteTree(*found, !names.empty());
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD characters, LPDWORD reserved, LPWSTR keyClass,
                             LPDWORD classCharacters, PFILETIME lastWrite) {
    return Answer([=](OpenKeys& keys) -> LSTATUS {
        Require(name && characters && !reserved, "an argument is not as required");
        if (keyClass || classCharacters || lastWrite) Refuse(ERROR_NOT_SUPPORTED, "classes and times are not kept");
        const KeyId id = keys.Find(key, KEY_ENUMERATE_SUB_KEYS);
        const std::optional<std::string> child = keys.GetStore()->ChildName(id, index);
        return child ? HandOutName(*child, name, characters) : ERROR_NO_MORE_ITEMS;
    });
}

LSTATUS WINAPI RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD characters, LPDWORD reserved, LPDWORD type,
                             LPBYTE data, LPDWORD bytes) {
    return Answer([=](OpenKeys& keys) -> LSTATUS {
        Require(name && characters && !reserved && (bytes || !data), "an argument is not as required");
        const KeyId id = keys.Find(key, KEY_QUERY_VALUE);
        const std::optional<RegistryValue> value = keys.GetStore()->ValueAt(id, index);
        if (!value) return ERROR_NO_MORE_ITEMS;
        const LSTATUS named = HandOutName(value->name, name, characters);
        return named == ERROR_SUCCESS ? HandOut(*value, type, data, bytes) : named;
    });
}

}  // extern "C"
