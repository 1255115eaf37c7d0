// What tells whether the store is still as it was.
#pragma once

#include <cstdint>

// A number that no other one is behind and that grows with every change of the store, whatever thread or process makes
// it, a key or a value, and with every store that is opened.
using StoreState = std::uint64_t;
inline constexpr StoreState kUnknownStoreState = 0;  // nothing can be said: it never equals itself

// As long as the state is the same as it was before something was read of the registry, what was read is there still.
StoreState GetStoreState() noexcept;
