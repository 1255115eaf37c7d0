// LoadProduct: the bounded cache of parsed products.
#include "productparser.h"

#include <algorithm>
#include <atomic>
#include <list>
#include <mutex>

ProductError::~ProductError() = default;

namespace {

struct FileState {
    std::filesystem::path file;
    std::uintmax_t size = 0;
    std::filesystem::file_time_type changed;

    friend bool operator==(const FileState&, const FileState&) = default;
};

FileState GetFileState(const std::filesystem::path& file) {
    FileState state{file, 0, {}};
    std::error_code error;
    state.size = std::filesystem::file_size(file, error);
    if (error) state.size = static_cast<std::uintmax_t>(-1);
    const auto changed = std::filesystem::last_write_time(file, error);
    if (!error) state.changed = changed;
    return state;
}

struct CachedProduct {
    std::filesystem::path file;
    std::vector<FileState> states;
    std::shared_ptr<const ProductDescription> product;

    bool IsCurrent() const {
        return std::all_of(states.begin(), states.end(),
                           [](const FileState& state) { return GetFileState(state.file) == state; });
    }
};

constexpr std::size_t kMostCached = 16;

std::mutex cacheMutex;
std::list<CachedProduct> cache;  // the most recently used first
std::atomic<std::size_t> readCount = 0;

}  // namespace

std::shared_ptr<const ProductDescription> LoadProduct(const std::filesystem::path& file) {
    const std::scoped_lock lock(cacheMutex);
    const auto found =
        std::find_if(cache.begin(), cache.end(), [&](const CachedProduct& cached) { return cached.file == file; });
    if (found != cache.end()) {
        if (found->IsCurrent()) {
            cache.splice(cache.begin(), cache, found);
            return found->product;
        }
        cache.erase(found);
    }
    // The state is taken before the file is read: a change during the reading is seen by the next call.
    std::vector<FileState> states = {GetFileState(file)};
    ++readCount;
    ParsedProduct parsed = ParseProduct(file);
    for (std::size_t index = 1; index < parsed.files.size(); ++index)
        states.push_back(GetFileState(parsed.files[index]));
    auto product = std::make_shared<const ProductDescription>(std::move(parsed.product));
    cache.push_front({file, std::move(states), product});
    if (cache.size() > kMostCached) cache.pop_back();
    return product;
}

std::size_t GetProductReadCount() noexcept { return readCount; }

std::vector<std::filesystem::path> FindProductFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::filesystem::path file = entry->path() / entry->path().filename();
        file += ".toml";
        std::error_code ignored;
        if (std::filesystem::is_regular_file(file, ignored)) files.push_back(std::move(file));
    }
    std::sort(files.begin(), files.end());
    return files;
}
