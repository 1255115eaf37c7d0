// Registry path, under either hive, of the capability caches of a port.
#pragma once

#include "spoolertext.h"

#include <mvutil/cachelocation.h>

// Ports that differ only in what a key name cannot hold share their caches.
inline WideString GetCachesKey(const WideString& port) {
    WideString name = port;
    std::replace(name.begin(), name.end(), kKeyNameSeparator, W('_'));
    return WideString(kPrinterCachesKey) + W("\\") + name;
}
