// The process's store and its open registry keys.
#include "openkeys.h"

#include "storechange.h"

#include <optional>

namespace mvplatform {
namespace {

constexpr std::uintptr_t handleStep = 4;  // no handle can be taken for a predefined key

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

OpenKeys& OpenKeys::GetInstance() {
    // Never destroyed: libraries may use the registry while the process ends.
    static OpenKeys& instance = *new OpenKeys;
    return instance;
}

std::shared_ptr<RegistryStore> OpenKeys::GetStore() {
    if (!store_) store_ = std::make_shared<RegistryStore>(":memory:", FileUse::Make);
    return store_;
}

void OpenKeys::Replace(std::shared_ptr<RegistryStore> store) noexcept {
    const StoreChange change;
    keys_.clear();
    store_ = std::move(store);
}

KeyId OpenKeys::Find(HKEY handle, REGSAM wanted) const {
    if (const std::optional<KeyId> predefined = PredefinedKey(handle)) return *predefined;
    const auto found = keys_.find(reinterpret_cast<std::uintptr_t>(handle));
    if (found == keys_.end()) throw RegistryError(ERROR_INVALID_HANDLE, "there is no such open key");
    if ((found->second.access & wanted) != wanted)
        throw RegistryError(ERROR_ACCESS_DENIED, "the key was not opened for this");
    return found->second.id;
}

void OpenKeys::Forget(KeyId last) noexcept {
    for (auto& [handle, key] : keys_)
        if (key.id > last) key.id = noKey;
}

HKEY OpenKeys::Add(KeyId id, REGSAM access) {
    const std::uintptr_t handle = nextHandle_;
    keys_.emplace(handle, Key{id, access});
    nextHandle_ += handleStep;
    return reinterpret_cast<HKEY>(handle);  // NOLINT(performance-no-int-to-ptr): a handle is a number
}

bool OpenKeys::Remove(HKEY handle) {
    return PredefinedKey(handle) || keys_.erase(reinterpret_cast<std::uintptr_t>(handle)) != 0;
}

}  // namespace mvplatform
