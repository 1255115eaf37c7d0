// The process's store and its open registry keys.
#pragma once

#include <windows.h>
#include "storeview.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace mvplatform {

// What the process sees as the registry. Threads have places of their own, so that they do not wait for each other. A
// handle is a number that is looked up here and is never given out twice.
class OpenKeys {
    static constexpr std::size_t placeCount = 16;  // more threads than that share places

    struct alignas(64) Place {
        std::mutex mutex;
        std::optional<StoreView> view;
        std::atomic<std::size_t> requests = 0;  // written with the mutex held
    };
    using AllLocks = std::array<std::unique_lock<std::mutex>, placeCount>;

public:
    // While it lives the store is not replaced.
    class Use {
    public:
        Use() : Use(GetInstance()) {}

        void CountRequest() const noexcept {
            place_.requests.store(place_.requests.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        }
        // The store; one that ends with the process when none was chosen. Throws RegistryError.
        StoreView& GetView() const { return keys_.GetView(place_); }
        SharedStore& GetStore() const { return GetView().GetStore(); }
        // The key behind a handle. Throws RegistryError: ERROR_INVALID_HANDLE; ERROR_ACCESS_DENIED when the key was
        // opened without one of the wanted rights.
        KeyId Find(HKEY handle, REGSAM wanted) const { return keys_.Find(handle, wanted); }
        HKEY Add(KeyId id, REGSAM access) const { return keys_.Add(id, access); }

    private:
        explicit Use(OpenKeys& keys);

        OpenKeys& keys_;
        Place& place_;
        const std::lock_guard<std::mutex> lock_;
    };

    static OpenKeys& GetInstance();

    std::shared_ptr<SharedStore> GetStore();
    // Another store, or none; closes all keys and the store before.
    void Replace(std::shared_ptr<SharedStore> store) noexcept;

    std::size_t CountRequests() const noexcept;  // of all threads

    // False when there is no such handle. The predefined keys stay open.
    bool Remove(HKEY handle);
    // The keys that were made after the last one are there no more, whoever gets their numbers.
    void Forget(KeyId last) noexcept;

private:
    struct Key {
        KeyId id;
        REGSAM access;
    };
    struct alignas(64) Handles {
        std::mutex mutex;
        std::unordered_map<std::uintptr_t, Key> keys;
        std::uintptr_t count = 0;  // that were given out
    };

    OpenKeys() = default;

    static std::size_t GetPlaceNumber() noexcept;  // of the calling thread
    StoreView& GetView(Place& place);
    Handles& GetHandles(std::uintptr_t handle) noexcept;
    KeyId Find(HKEY handle, REGSAM wanted);
    HKEY Add(KeyId id, REGSAM access);

    std::array<Place, placeCount> places_;
    std::array<Handles, placeCount> handles_;  // each with those that were made in the place of the same number
    std::mutex mutex_;                         // of the store
    std::shared_ptr<SharedStore> store_;
};

}  // namespace mvplatform
