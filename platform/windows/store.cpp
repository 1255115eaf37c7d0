// The store on Windows: a subtree of the current user's hive stands in for both predefined keys.
#include <pathtext.h>
#include <store.h>
#include <uniquehandle.h>
#include <widetext.h>
#include <windows.h>
#include "openstore.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

const std::wstring storesPath = W("Software\\MvptHostStores\\");
constexpr std::size_t longestKeyName = 255;

// The path of the subtree to delete at the end; empty when the store stays.
std::wstring temporaryPath;

// A key name says which folder it stands for: '|' is in no path. Long names are cut and distinguished by a hash.
std::wstring KeyName(const std::string& folderUtf8) {
    std::wstring name = std::filesystem::absolute(PathFromUtf8(folderUtf8)).lexically_normal().wstring();
    while (name.size() > 1 && (name.back() == W('\\') || name.back() == W('/'))) name.pop_back();
    std::replace_if(
        name.begin(), name.end(), [](wchar_t c) { return c == W('\\') || c == W('/'); }, W('|'));
    if (name.size() <= longestKeyName) return name;
    std::uint64_t hash = 0xCBF29CE484222325u;  // FNV-1a
    for (const wchar_t unit : name) hash = (hash ^ unit) * 0x100000001B3u;
    name.resize(longestKeyName - 17);
    name += W('|');
    for (int shift = 60; shift >= 0; shift -= 4) name += W("0123456789abcdef")[(hash >> shift) & 0xF];
    return name;
}

void UndoOverride() noexcept {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
}

std::wstring GetPath(const std::string& folderUtf8) { return storesPath + KeyName(folderUtf8); }

UniqueKey CreateKey(const std::wstring& path, const std::string& folder) {
    UniqueKey key;
    const LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                           KEY_ALL_ACCESS, nullptr, key.Put(), nullptr);
    if (status != ERROR_SUCCESS)
        throw std::runtime_error("The store " + folder + " cannot be opened: the registry answers error " +
                                 std::to_string(status) + ".");
    return key;
}

// Data protection looks up its providers in the machine's hive, which the store hides: it gets a copy of that part.
void CopyCryptographySettings(HKEY machine) {
    const WCHAR* const path = W("Software\\Microsoft\\Cryptography");
    UniqueKey source, copy;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, source.Put()) != ERROR_SUCCESS) return;
    DWORD disposition = 0;
    if (RegCreateKeyExW(machine, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, copy.Put(),
                        &disposition) == ERROR_SUCCESS &&
        disposition == REG_CREATED_NEW_KEY)
        RegCopyTreeW(source.Get(), nullptr, copy.Get());
}

}  // namespace

void OpenStore(const std::string& folderUtf8, StoreAccess access) {
    if (folderUtf8.empty()) throw std::runtime_error("The store needs the name of a folder.");
    CloseStore();
    std::wstring path;
    if (folderUtf8 == ":memory:") {
        path = storesPath;
        for (const char digit : "process " + std::to_string(GetCurrentProcessId())) path += static_cast<wchar_t>(digit);
        // What a process of the same number left when it was killed.
        RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
        static const int registered = std::atexit([] { CloseStore(); });
        if (registered != 0) throw std::runtime_error("The store cannot be opened: out of memory.");
        temporaryPath = path;
    } else {
        if (access != StoreAccess::Write && !IsStore(folderUtf8))
            throw std::runtime_error("There is no store in " + folderUtf8 + ".");
        path = GetPath(folderUtf8);
    }
    const UniqueKey user = CreateKey(path + W("\\User"), folderUtf8);
    const UniqueKey machine = CreateKey(path + W("\\Machine"), folderUtf8);
    CopyCryptographySettings(machine.Get());
    LSTATUS status = RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine.Get());
    if (status == ERROR_SUCCESS) status = RegOverridePredefKey(HKEY_CURRENT_USER, user.Get());
    static unsigned opened = 0;
    const std::wstring name = std::to_wstring(++opened) + W(" ") + path;
    if (status == ERROR_SUCCESS && SetEnvironmentVariableW(kOpenStoreVariable, name.c_str())) return;
    CloseStore();
    throw std::runtime_error("The store " + folderUtf8 + " cannot be opened: the registry answers error " +
                             std::to_string(status) + ".");
}

bool IsStore(const std::string& folderUtf8) {
    UniqueKey key;
    return RegOpenKeyExW(HKEY_CURRENT_USER, GetPath(folderUtf8).c_str(), 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

void CloseStore() noexcept {
    SetEnvironmentVariableW(kOpenStoreVariable, nullptr);
    UndoOverride();
    if (temporaryPath.empty()) return;
    RegDeleteTreeW(HKEY_CURRENT_USER, temporaryPath.c_str());
    temporaryPath.clear();
}

struct StoreTransaction::State {};

StoreTransaction::StoreTransaction() = default;
StoreTransaction::~StoreTransaction() = default;
void StoreTransaction::Commit() {}
