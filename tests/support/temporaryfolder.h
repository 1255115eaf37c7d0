// A folder for the files of one test, which no other test and no other run shares.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

// Throws when the bytes are not all written.
inline void WriteTestFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary);
    if (!stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush())
        throw std::runtime_error("the test's file cannot be written: " + file.string());
}

// Made empty, and gone with this object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() / ("mvtest-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& GetPath() const noexcept { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }
    // Writes a file of that name; its path.
    std::filesystem::path Write(const std::string& name, std::string_view bytes) const {
        WriteTestFile(path_ / name, bytes);
        return path_ / name;
    }

private:
    std::filesystem::path path_;
};
