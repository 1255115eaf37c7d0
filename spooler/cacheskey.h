// Registry path, under either hive, of the capability caches of a port.
#pragma once

#include "spoolertext.h"

#include <mvutil/cachelocation.h>

inline WideString GetCachesKey(const WideString& port) {
    return WideString(kPrinterCachesKey) + W("\\") + GetCacheKeyName(port);
}
