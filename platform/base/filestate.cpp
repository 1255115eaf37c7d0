// The state of a file, from its inode.
#include <filestate.h>

#include <sys/stat.h>

FileState GetFileState(const std::filesystem::path& file) noexcept {
    struct stat found {};
    if (stat(file.c_str(), &found) != 0) return {};
    constexpr std::uint64_t kSecond = 1'000'000'000;
    return {.size = static_cast<std::uint64_t>(found.st_size),
            .changed = static_cast<std::uint64_t>(found.st_mtim.tv_sec) * kSecond +
                       static_cast<std::uint64_t>(found.st_mtim.tv_nsec)};
}
