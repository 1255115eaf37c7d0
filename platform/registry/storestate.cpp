// The state of the store: a number that every change renews.
#include <storestate.h>

#include "openkeys.h"
#include "storechange.h"

#include <atomic>

namespace {

std::atomic<StoreState> storeState = 1;

}  // namespace

void mvplatform::NoteStoreChange() noexcept { storeState.fetch_add(1); }

StoreState mvplatform::GetNotedState() noexcept { return storeState.load(); }

StoreState GetStoreState() noexcept {
    try {
        return mvplatform::OpenKeys::Use().GetView().NoteChanges() ? mvplatform::GetNotedState() : kUnknownStoreState;
    } catch (...) {
        return kUnknownStoreState;
    }
}
