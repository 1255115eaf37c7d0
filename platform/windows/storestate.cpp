// The state of the store on Windows: the registry says when one of its keys or values changes.
#include <registryrequests.h>
#include <storestate.h>
#include <uniquehandle.h>
#include <windows.h>
#include "openstore.h"

#include <mutex>
#include <shared_mutex>
#include <string>

namespace {

struct CloseEvent {
    void operator()(HANDLE event) const noexcept { CloseHandle(event); }
};

// Empty when no store is open.
std::wstring GetOpenStore() {
    std::wstring name(1024, W('\0'));
    const DWORD length = GetEnvironmentVariableW(kOpenStoreVariable, name.data(), static_cast<DWORD>(name.size()));
    name.resize(length < name.size() ? length : 0);
    return name;
}

// Waits for changes of the open store. The registry reports one change to an event; the next one is asked for before
// anything is read under the new state.
class StoreWatch {
public:
    StoreState GetState() {
        const std::wstring store = GetOpenStore();
        if (store.empty()) return kUnknownStoreState;
        {
            const std::shared_lock lock(mutex_);
            if (IsQuiet(store)) return state_;
        }
        const std::unique_lock lock(mutex_);
        if (!IsQuiet(store)) isWatching_ = Watch(store);
        return isWatching_ ? state_ : kUnknownStoreState;
    }

private:
    bool IsQuiet(const std::wstring& store) const {
        return isWatching_ && store == store_ && WaitForSingleObject(changed_.Get(), 0) == WAIT_TIMEOUT;
    }

    bool Watch(const std::wstring& store) {
        user_.Reset();  // closing a key reports to its event, too
        machine_.Reset();
        ++state_;
        store_ = store;
        if (!changed_) changed_ = Event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        return changed_ && ResetEvent(changed_.Get()) && Watch(HKEY_CURRENT_USER, user_) &&
               Watch(HKEY_LOCAL_MACHINE, machine_);
    }

    bool Watch(HKEY hive, UniqueKey& key) const {
        return RegOpenKeyExW(hive, nullptr, 0, KEY_NOTIFY, key.Put()) == ERROR_SUCCESS &&
               RegNotifyChangeKeyValue(key.Get(), TRUE, REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET,
                                       changed_.Get(), TRUE) == ERROR_SUCCESS;
    }

    using Event = UniqueHandle<HANDLE, CloseEvent>;

    std::shared_mutex mutex_;
    Event changed_;
    UniqueKey user_, machine_;
    std::wstring store_;
    StoreState state_ = kUnknownStoreState;
    bool isWatching_ = false;
};

}  // namespace

StoreState GetStoreState() noexcept {
    try {
        // Never destroyed: libraries may ask while the process ends.
        static StoreWatch& watch = *new StoreWatch;
        return watch.GetState();
    } catch (...) {
        return kUnknownStoreState;
    }
}

std::size_t GetRegistryRequestCount() noexcept { return 0; }
