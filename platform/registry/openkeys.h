// The process's store and its open registry keys.
#pragma once

#include <windows.h>
#include "registrystore.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace mvplatform {

// What the process sees as the registry. A handle is a number that is looked up here and is never given out twice.
class OpenKeys {
public:
    struct Key {
        KeyId id;
        REGSAM access;
    };

    static OpenKeys& GetInstance();

    // Held during every call of the other functions.
    std::mutex& GetMutex() noexcept { return mutex_; }

    // The store; one that ends with the process when none was chosen. Throws RegistryError.
    std::shared_ptr<RegistryStore> GetStore();
    // Another store, or none; closes all keys and the store before.
    void Replace(std::shared_ptr<RegistryStore> store) noexcept;

    // The key behind a handle. Throws RegistryError: ERROR_INVALID_HANDLE; ERROR_ACCESS_DENIED when the key was opened
    // without one of the wanted rights.
    KeyId Find(HKEY handle, REGSAM wanted) const;
    // The keys that were made after the last one are there no more, whoever gets their numbers.
    void Forget(KeyId last) noexcept;
    HKEY Add(KeyId id, REGSAM access);
    // False when there is no such handle. The predefined keys stay open.
    bool Remove(HKEY handle);

private:
    OpenKeys() = default;

    std::mutex mutex_;
    std::shared_ptr<RegistryStore> store_;
    std::unordered_map<std::uintptr_t, Key> keys_;
    std::uintptr_t nextHandle_ = 0x100;
};

}  // namespace mvplatform
