// The state of a file, by which a change of it is seen.
#pragma once

#include <cstdint>
#include <filesystem>

struct FileState {
    static constexpr std::uint64_t kNoFile = ~std::uint64_t{0};

    std::uint64_t size = kNoFile;
    std::uint64_t changed = 0;  // the time of its last change, in steps of the system's own

    friend bool operator==(const FileState&, const FileState&) noexcept = default;
};

// Asks the system once. A file that is not there, or that cannot be asked for, has the default state.
FileState GetFileState(const std::filesystem::path& file) noexcept;
