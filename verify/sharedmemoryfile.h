// SharedMemoryFile: a file in memory that several processes see, and that stays when one of them ends.
#pragma once

#include <cstddef>
#include <filesystem>

class SharedMemoryFile {
public:
    // Makes the file with that many bytes, zeroed, where it is not there. Throws OperationError when that cannot be.
    SharedMemoryFile(const std::filesystem::path& file, std::size_t bytes);
    ~SharedMemoryFile();
    SharedMemoryFile(const SharedMemoryFile&) = delete;
    SharedMemoryFile& operator=(const SharedMemoryFile&) = delete;

    void* Get() const noexcept { return memory_; }

private:
    void* memory_;
    std::size_t bytes_;
};
