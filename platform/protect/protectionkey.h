// The key under which data is protected: one for each store.
#pragma once

#include <sodium.h>

#include <array>
#include <filesystem>
#include <mutex>
#include <optional>
#include <stdexcept>

namespace mvplatform {

// A key that is wiped when its life ends.
struct SecretKey {
    SecretKey() = default;
    SecretKey(const SecretKey&) = default;
    SecretKey& operator=(const SecretKey&) = default;
    ~SecretKey() { sodium_memzero(bytes.data(), bytes.size()); }

    std::array<unsigned char, crypto_secretbox_KEYBYTES> bytes{};
};

// The key file is there and cannot be used, or it cannot be made.
class KeyError : public std::runtime_error {
public:
    KeyError(unsigned windowsError, const char* reason) : std::runtime_error(reason), error_(windowsError) {}
    unsigned GetError() const noexcept { return error_; }

private:
    unsigned error_;
};

// Of a store in a folder: the file "protection.key" there, its owner's alone (mode 0600), made when it is first
// needed. Of a store in memory: kept in memory and forgotten with the store.
class ProtectionKey {
public:
    static ProtectionKey& GetInstance();

    // Another store; none stands for one in memory.
    void UseFolder(std::optional<std::filesystem::path> folder) noexcept;
    // The key, made when it is missing. Throws KeyError.
    SecretKey GetOrMake();
    // The key, or none when nothing was protected yet. Throws KeyError.
    std::optional<SecretKey> Find();

private:
    ProtectionKey() = default;

    std::mutex mutex_;
    std::optional<std::filesystem::path> folder_;
    std::optional<SecretKey> inMemory_;
};

}  // namespace mvplatform
