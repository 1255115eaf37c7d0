// The state of the store: a number that every change renews.
#include <storestate.h>

#include "openkeys.h"
#include "storechange.h"

#include <atomic>
#include <mutex>

namespace {

std::atomic<StoreState> storeState = 1;

}  // namespace

void mvplatform::NoteStoreChange() noexcept { storeState.fetch_add(1); }

// This process's changes are noted; those of others are found by each connection for itself.
StoreState GetStoreState() noexcept {
    using namespace mvplatform;
    try {
        OpenKeys& keys = OpenKeys::GetInstance();
        const std::lock_guard lock(keys.GetMutex());
        if (keys.GetStore()->WasChangedElsewhere()) NoteStoreChange();
        return storeState.load();
    } catch (...) {
        return kUnknownStoreState;
    }
}
