// GlobalCaches: two process-wide caches, each with the least recently used entry last.
#include <mvutil/globalcaches.h>

#include <algorithm>
#include <list>
#include <mutex>

namespace {

// A bounded cache of shared, unchanging values. A value's cost counts against the budget; one too costly is not kept.
template <class Key, class Value>
class LruCache {
public:
    explicit LruCache(std::size_t budget) noexcept : budget_(budget) {}

    std::shared_ptr<const Value> Find(const Key& key) {
        const std::lock_guard lock(mutex_);
        if (!MoveToFront(key)) {
            ++misses_;
            return nullptr;
        }
        ++hits_;
        return entries_.front().value;
    }

    void Add(const Key& key, std::shared_ptr<const Value> value, std::size_t cost) {
        std::list<Entry> entry;  // made and unmade outside the lock
        std::list<Entry> dropped;
        entry.push_back({key, std::move(value), cost});
        const std::lock_guard lock(mutex_);
        if (MoveToFront(key)) Drop(entries_.begin(), dropped);
        if (cost > budget_) return;
        entries_.splice(entries_.begin(), entry);
        cost_ += cost;
        while (entries_.size() > GlobalCaches::kMaximumEntries || cost_ > budget_) {
            Drop(std::prev(entries_.end()), dropped);
        }
    }

    void Clear() {
        const std::lock_guard lock(mutex_);
        entries_.clear();
        cost_ = hits_ = misses_ = 0;
    }

    void GetCounters(std::size_t& hits, std::size_t& misses) {
        const std::lock_guard lock(mutex_);
        hits = hits_;
        misses = misses_;
    }

private:
    struct Entry {
        Key key;
        std::shared_ptr<const Value> value;
        std::size_t cost;
    };

    // With so few entries a walk is as quick as an index, and nothing can get out of step.
    bool MoveToFront(const Key& key) {
        const auto found =
            std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return entry.key == key; });
        if (found == entries_.end()) return false;
        entries_.splice(entries_.begin(), entries_, found);
        return true;
    }

    void Drop(typename std::list<Entry>::iterator entry, std::list<Entry>& dropped) {
        cost_ -= entry->cost;
        dropped.splice(dropped.begin(), entries_, entry);
    }

    const std::size_t budget_;
    std::mutex mutex_;
    std::list<Entry> entries_;  // most recently used first
    std::size_t cost_ = 0;
    std::size_t hits_ = 0;
    std::size_t misses_ = 0;
};

using PropertyBagCache = LruCache<DWORD, GlobalCaches::PropertyBag>;
using ListCache = LruCache<std::pair<DWORD, DWORD>, AttributeBytesIndexedList>;

PropertyBagCache& PropertyBags() {
    static PropertyBagCache cache(GlobalCaches::kMaximumBytes);
    return cache;
}

ListCache& Lists() {
    static ListCache cache(GlobalCaches::kMaximumBytes);
    return cache;
}

// Roughly the memory that a value takes, with all that hangs on it.
std::size_t CostOf(const AttributeBytesValue& value) {
    std::size_t cost = sizeof(AttributeBytesRawList::Item) + value.GetText().GetLength() * sizeof(WCHAR) +
                       value.GetDataBlob().getDword();
    for (const auto& [feature, inner] : value.GetList().GetItems()) cost += CostOf(inner);
    return cost;
}

}  // namespace

bool GlobalCaches::CheckXDevmodePropertyBagCache(DWORD checksum, PropertyBag& bag) {
    const auto found = PropertyBags().Find(checksum);
    if (found) bag = *found;
    return found != nullptr;
}

void GlobalCaches::AddXDevmodePropertyBagCacheEntry(DWORD checksum, const PropertyBag& bag) {
    auto copy = std::make_shared<PropertyBag>();
    std::size_t cost = 0;
    for (const auto& [key, buffer] : bag) {
        if (!buffer) continue;
        copy->emplace_back(key, std::make_shared<const ByteBuffer>(*buffer));
        cost += sizeof(ByteBuffer) + buffer->getDword();
    }
    PropertyBags().Add(checksum, std::move(copy), cost);
}

bool GlobalCaches::CheckXDevmodeAttributeBytesIndexedListCache(DWORD namespaceId, DWORD checksum,
                                                               AttributeBytesIndexedList& list) {
    const auto found = Lists().Find({namespaceId, checksum});
    if (found) list = *found;
    return found != nullptr;
}

void GlobalCaches::AddXDevmodeAttributeBytesIndexedListCacheEntry(const WCHAR* /*cacheName*/, DWORD namespaceId,
                                                                  DWORD checksum,
                                                                  const AttributeBytesIndexedList& list) {
    std::size_t cost = 0;
    for (const auto& [feature, value] : list.GetItems()) cost += CostOf(value);
    Lists().Add({namespaceId, checksum}, std::make_shared<const AttributeBytesIndexedList>(list), cost);
}

GlobalCaches::Counters GlobalCaches::GetCounters() {
    Counters counters;
    PropertyBags().GetCounters(counters.propertyBagHits, counters.propertyBagMisses);
    Lists().GetCounters(counters.listHits, counters.listMisses);
    return counters;
}

void GlobalCaches::Clear() {
    PropertyBags().Clear();
    Lists().Clear();
}
