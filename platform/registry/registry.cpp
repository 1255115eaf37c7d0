// The registry functions.
#include <widetext.h>
#include <windows.h>
#include "openkeys.h"

#include <algorithm>
#include <new>

namespace mvplatform {
namespace {

[[noreturn]] void Refuse(LSTATUS status, const char* reason) { throw RegistryError(status, reason); }

void Require(bool condition, const char* reason) {
    if (!condition) Refuse(ERROR_INVALID_PARAMETER, reason);
}

// Runs an operation and turns what it throws into the answer.
template <class Operation>
LSTATUS Answer(Operation operation) noexcept {
    try {
        const OpenKeys::Use keys;
        keys.CountRequest();
        return operation(keys);
    } catch (const RegistryError& error) {
        return error.GetStatus();
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    } catch (...) {
        return ERROR_REGISTRY_IO_FAILED;
    }
}

WideStringView TextOf(LPCWSTR text) { return text ? WideStringView(text) : WideStringView(); }

std::optional<KeyId> FindKey(const OpenKeys::Use& keys, KeyId key, LPCWSTR path) {
    return keys.GetView().Read(
        [&](AnswerCache& cache, AnswerSource& source) { return cache.FindKey(source, key, TextOf(path)); });
}

// The protocol of both functions that hand out data: a null buffer asks for the size, a short one is answered with it.
LSTATUS HandOut(const RegistryValue& value, LPDWORD type, LPBYTE data, DWORD room, LPDWORD bytes) {
    if (type) *type = value.type;
    if (!bytes) return ERROR_SUCCESS;
    *bytes = static_cast<DWORD>(value.data.size());
    if (!data) return ERROR_SUCCESS;
    if (room < value.data.size()) return ERROR_MORE_DATA;
    std::copy(value.data.begin(), value.data.end(), data);
    return ERROR_SUCCESS;
}

// Copies a name and its NUL; the size in characters counts the NUL on the way in and not on the way out.
LSTATUS HandOutName(const WideString& text, LPWSTR name, DWORD room, LPDWORD characters) {
    if (room <= text.size()) return ERROR_MORE_DATA;
    name[text.copy(name, text.size())] = 0;
    *characters = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

}  // namespace
}  // namespace mvplatform

using namespace mvplatform;

extern "C" {

LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR path, DWORD reserved, LPWSTR keyClass, DWORD options, REGSAM access,
                               LPSECURITY_ATTRIBUTES security, PHKEY result, LPDWORD disposition) {
    if (result) *result = nullptr;
    return Answer([=](const OpenKeys::Use& keys) -> LSTATUS {
        Require(path && result && reserved == 0 && options == REG_OPTION_NON_VOLATILE,
                "an argument is not as required");
        if (keyClass || security) Refuse(ERROR_NOT_SUPPORTED, "key classes and security are not kept");
        bool created = false;
        const KeyId parent = keys.Find(key, 0);
        // Most keys exist; looking needs no writer's lock.
        std::optional<KeyId> id = FindKey(keys, parent, path);
        if (!id) id = keys.GetStore().CreateKey(parent, ParseKeyPath(path), created);
        *result = keys.Add(*id, access);
        if (disposition) *disposition = created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR path, DWORD options, REGSAM access, PHKEY result) {
    if (result) *result = nullptr;
    return Answer([=](const OpenKeys::Use& keys) -> LSTATUS {
        Require(result && options == 0, "an argument is not as required");
        const std::optional<KeyId> found = FindKey(keys, keys.Find(key, 0), path);
        if (!found) return ERROR_FILE_NOT_FOUND;
        *result = keys.Add(*found, access);
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegCloseKey(HKEY key) {
    return OpenKeys::GetInstance().Remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD bytes) {
    return Answer([=](const OpenKeys::Use& keys) -> LSTATUS {
        Require(!reserved && (bytes || !data), "an argument is not as required");
        const KeyId id = keys.Find(key, KEY_QUERY_VALUE);
        const DWORD room = bytes ? *bytes : 0;
        return keys.GetView().Read([&](AnswerCache& cache, AnswerSource& source) -> LSTATUS {
            const RegistryValue* const value = cache.GetValues(source, id).Find(TextOf(name));
            return value ? HandOut(*value, type, data, room, bytes) : ERROR_FILE_NOT_FOUND;
        });
    });
}

LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes) {
    return Answer([=](const OpenKeys::Use& keys) -> LSTATUS {
        Require(reserved == 0 && (data || bytes == 0), "an argument is not as required");
        const KeyId id = keys.Find(key, KEY_SET_VALUE);
        keys.GetStore().WriteValue(id, MakeValueName(TextOf(name)), type, {data, bytes});
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR name) {
    return Answer([=](const OpenKeys::Use& keys) -> LSTATUS {
        const KeyId id = keys.Find(key, KEY_SET_VALUE);
        return keys.GetStore().DeleteValue(id, MakeValueName(TextOf(name))) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS WINAPI RegDeleteTreeW(HKEY key, LPCWSTR path) {
    return Answer([=](const OpenKeys::Use& keys) -> LSTATUS {
        // Without a path the rights of the handle itself are needed.
        const bool withKey = !TextOf(path).empty();
        const REGSAM wanted = withKey ? 0 : KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_ENUMERATE_SUB_KEYS;
        const std::optional<KeyId> found = FindKey(keys, keys.Find(key, wanted), path);
        if (!found) return ERROR_FILE_NOT_FOUND;
        keys.GetStore().DeleteTree(*found, withKey);
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD characters, LPDWORD reserved, LPWSTR keyClass,
                             LPDWORD classCharacters, PFILETIME lastWrite) {
    return Answer([=](const OpenKeys::Use& keys) -> LSTATUS {
        Require(name && characters && !reserved, "an argument is not as required");
        if (keyClass || classCharacters || lastWrite) Refuse(ERROR_NOT_SUPPORTED, "classes and times are not kept");
        const KeyId id = keys.Find(key, KEY_ENUMERATE_SUB_KEYS);
        const DWORD room = *characters;
        return keys.GetView().Read([&](AnswerCache& cache, AnswerSource& source) -> LSTATUS {
            const std::vector<WideString>& names = cache.GetChildren(source, id);
            return index < names.size() ? HandOutName(names[index], name, room, characters) : ERROR_NO_MORE_ITEMS;
        });
    });
}

LSTATUS WINAPI RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD characters, LPDWORD reserved, LPDWORD type,
                             LPBYTE data, LPDWORD bytes) {
    return Answer([=](const OpenKeys::Use& keys) -> LSTATUS {
        Require(name && characters && !reserved && (bytes || !data), "an argument is not as required");
        const KeyId id = keys.Find(key, KEY_QUERY_VALUE);
        const DWORD nameRoom = *characters, room = bytes ? *bytes : 0;
        return keys.GetView().Read([&](AnswerCache& cache, AnswerSource& source) -> LSTATUS {
            const RegistryValue* const value = cache.GetValues(source, id).At(index);
            if (!value) return ERROR_NO_MORE_ITEMS;
            const LSTATUS named = HandOutName(value->name, name, nameRoom, characters);
            return named == ERROR_SUCCESS ? HandOut(*value, type, data, room, bytes) : named;
        });
    });
}

}  // extern "C"
