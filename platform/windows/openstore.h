// The name under which every module of a process finds which store is open.
#pragma once

#include <widetext.h>

// A variable of the process's environment: modules that are linked with this code each have their own copy of its
// objects, but one environment. It names the store and is another one each time that a store is opened; it is not there
// when none is.
inline constexpr const WCHAR* kOpenStoreVariable = W("MVPTHOST_OPEN_STORE");
