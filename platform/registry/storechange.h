// A change of the store that this process makes.
#pragma once

#include <storestate.h>

namespace mvplatform {

// The store is in another state from now on: what was read before counts no more.
void NoteStoreChange() noexcept;
// Of what this process has noted.
StoreState GetNotedState() noexcept;

// Notes a change at its end, whether it succeeded or not.
class StoreChange {
public:
    StoreChange() = default;
    ~StoreChange() { NoteStoreChange(); }
    StoreChange(const StoreChange&) = delete;
    StoreChange& operator=(const StoreChange&) = delete;
};

}  // namespace mvplatform
