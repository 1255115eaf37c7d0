// GlobalCaches: what the process has already parsed of private DEVMODE blocks, shared by all objects and threads.
#pragma once

#include <mvutil/attributebytes.h>

#include <memory>
#include <utility>
#include <vector>

// Bounded: the least recently used entry goes first. Safe for many threads. The caches copy what is added, so that no
// entry outlives the library that added it; what they hand out is shared and never changed in place.
class MVUTIL_API GlobalCaches {
public:
    using PropertyBag = std::vector<std::pair<WORD, std::shared_ptr<const ByteBuffer>>>;
    static constexpr std::size_t kMaximumEntries = 64;       // of each of the caches
    static constexpr std::size_t kMaximumBytes = 16u << 20;  // of each of the caches, as estimated from its values

    // Keyed by the block's checksum. True fills the bag.
    static bool CheckXDevmodePropertyBagCache(DWORD checksum, PropertyBag& bag);
    static void AddXDevmodePropertyBagCacheEntry(DWORD checksum, const PropertyBag& bag);
    // Keyed by namespace and checksum; the cache's name is a label for readers of the call. True fills the list.
    static bool CheckXDevmodeAttributeBytesIndexedListCache(DWORD namespaceId, DWORD checksum,
                                                            AttributeBytesIndexedList& list);
    static void AddXDevmodeAttributeBytesIndexedListCacheEntry(const WCHAR* cacheName, DWORD namespaceId,
                                                               DWORD checksum, const AttributeBytesIndexedList& list);
    // For tests and benchmarks.
    struct Counters {
        std::size_t propertyBagHits = 0, propertyBagMisses = 0, listHits = 0, listMisses = 0;
    };
    static Counters GetCounters();
    static void Clear();  // forgets every entry and zeroes the counters
};
