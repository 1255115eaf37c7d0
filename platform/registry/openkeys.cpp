// The process's store and its open registry keys.
#include "openkeys.h"

#include "storechange.h"

#include <registryrequests.h>

namespace mvplatform {
namespace {

// No handle can be taken for a predefined key, nor for a null one; which place it was made in can be seen from it.
constexpr std::uintptr_t handleStep = 4;
constexpr std::uintptr_t firstHandle = 0x100;  // a multiple of what all places give out in a round

// A predefined key's number, with its upper half either way that a cast can leave it; nothing for other handles.
std::optional<KeyId> PredefinedKey(HKEY handle) {
    const auto number = reinterpret_cast<std::intptr_t>(handle);
    const auto is = [&](HKEY key) {
        const auto predefined = reinterpret_cast<std::intptr_t>(key);
        return number == predefined || number == static_cast<std::intptr_t>(static_cast<DWORD>(predefined));
    };
    if (is(HKEY_CURRENT_USER)) return currentUserKey;
    if (is(HKEY_LOCAL_MACHINE)) return localMachineKey;
    return std::nullopt;
}

}  // namespace

OpenKeys::Use::Use(OpenKeys& keys) : keys_(keys), place_(keys.places_[GetPlaceNumber()]), lock_(place_.mutex) {}

OpenKeys& OpenKeys::GetInstance() {
    // Never destroyed: libraries may use the registry while the process ends.
    static OpenKeys& instance = *new OpenKeys;
    return instance;
}

std::size_t OpenKeys::GetPlaceNumber() noexcept {
    static std::atomic<std::size_t> next = 0;
    static thread_local const std::size_t number = next++ % placeCount;
    return number;
}

std::shared_ptr<SharedStore> OpenKeys::GetStore() {
    const std::lock_guard lock(mutex_);
    if (!store_) store_ = std::make_shared<SharedStore>(":memory:", StoreAccess::Write);
    return store_;
}

StoreView& OpenKeys::GetView(Place& place) {
    if (!place.view) place.view.emplace(GetStore());
    return *place.view;
}

void OpenKeys::Replace(std::shared_ptr<SharedStore> store) noexcept {
    AllLocks locks;
    for (std::size_t at = 0; at < placeCount; ++at) locks[at] = std::unique_lock(places_[at].mutex);
    for (Place& place : places_) place.view.reset();
    for (Handles& handles : handles_) {
        const std::lock_guard lock(handles.mutex);
        handles.keys.clear();
    }
    const StoreChange change;
    const std::lock_guard lock(mutex_);
    if (store_) store_->Close();
    store_ = std::move(store);
}

std::size_t OpenKeys::CountRequests() const noexcept {
    std::size_t count = 0;
    for (const Place& place : places_) count += place.requests.load(std::memory_order_relaxed);
    return count;
}

OpenKeys::Handles& OpenKeys::GetHandles(std::uintptr_t handle) noexcept {
    return handles_[handle / handleStep % placeCount];
}

KeyId OpenKeys::Find(HKEY handle, REGSAM wanted) {
    if (const std::optional<KeyId> predefined = PredefinedKey(handle)) return *predefined;
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    Handles& handles = GetHandles(number);
    const std::lock_guard lock(handles.mutex);
    const auto found = handles.keys.find(number);
    if (found == handles.keys.end()) throw RegistryError(ERROR_INVALID_HANDLE, "there is no such open key");
    if ((found->second.access & wanted) != wanted)
        throw RegistryError(ERROR_ACCESS_DENIED, "the key was not opened for this");
    return found->second.id;
}

HKEY OpenKeys::Add(KeyId id, REGSAM access) {
    const std::size_t place = GetPlaceNumber();
    Handles& handles = handles_[place];
    const std::lock_guard lock(handles.mutex);
    const std::uintptr_t handle = firstHandle + (handles.count * placeCount + place) * handleStep;
    handles.keys.emplace(handle, Key{id, access});
    ++handles.count;
    return reinterpret_cast<HKEY>(handle);  // NOLINT(performance-no-int-to-ptr): a handle is a number
}

bool OpenKeys::Remove(HKEY handle) {
    if (PredefinedKey(handle)) return true;
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    Handles& handles = GetHandles(number);
    const std::lock_guard lock(handles.mutex);
    return handles.keys.erase(number) != 0;
}

void OpenKeys::Forget(KeyId last) noexcept {
    for (Handles& handles : handles_) {
        const std::lock_guard lock(handles.mutex);
        for (auto& [handle, key] : handles.keys)
            if (key.id > last) key.id = noKey;
    }
}

}  // namespace mvplatform

std::size_t GetRegistryRequestCount() noexcept { return mvplatform::OpenKeys::GetInstance().CountRequests(); }
