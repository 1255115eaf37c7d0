// LoadProduct: the bounded cache of parsed products.
#include "productparser.h"

#include <filestate.h>

#include <algorithm>
#include <atomic>
#include <list>
#include <mutex>
#include <shared_mutex>
#include <utility>
#include <vector>

ProductError::~ProductError() = default;

namespace {

struct CachedProduct {
    std::filesystem::path file;
    std::vector<std::pair<std::filesystem::path, FileState>> states;
    std::shared_ptr<const ProductDescription> product;

    bool IsCurrent() const {
        return std::all_of(states.begin(), states.end(),
                           [](const auto& state) { return GetFileState(state.first) == state.second; });
    }
};

constexpr std::size_t kMostCached = 16;

std::mutex readingMutex;      // held while a product is parsed, so that no two threads parse the same
std::shared_mutex listMutex;  // of the list alone: who finds a product waits for no file
std::list<std::shared_ptr<const CachedProduct>> cache;  // the last one read first
std::atomic<std::size_t> readCount = 0;

// Null when there is none, or when one of its files has changed.
std::shared_ptr<const ProductDescription> FindCurrent(const std::filesystem::path& file) {
    std::shared_ptr<const CachedProduct> found;
    {
        const std::shared_lock lock(listMutex);
        const auto place =
            std::find_if(cache.begin(), cache.end(), [&](const auto& cached) { return cached->file == file; });
        if (place != cache.end()) found = *place;
    }
    return found && found->IsCurrent() ? found->product : nullptr;
}

void Keep(CachedProduct product) {
    auto kept = std::make_shared<const CachedProduct>(std::move(product));
    const std::scoped_lock lock(listMutex);
    std::erase_if(cache, [&](const auto& cached) { return cached->file == kept->file; });
    cache.push_front(std::move(kept));
    if (cache.size() > kMostCached) cache.pop_back();
}

}  // namespace

std::shared_ptr<const ProductDescription> LoadProduct(const std::filesystem::path& file) {
    if (auto found = FindCurrent(file)) return found;
    const std::scoped_lock lock(readingMutex);
    if (auto found = FindCurrent(file)) return found;
    // The state is taken before the file is read: a change during the reading is seen by the next call.
    CachedProduct read{.file = file, .states = {{file, GetFileState(file)}}, .product = nullptr};
    ++readCount;
    auto product = std::make_shared<const ProductDescription>(ParseProduct(file));
    for (const std::filesystem::path& strings : product->stringFiles)
        read.states.emplace_back(strings, GetFileState(strings));
    read.product = product;
    Keep(std::move(read));
    return product;
}

std::size_t GetProductReadCount() noexcept { return readCount; }
