// The key file: made whole or not at all, and read only when nobody else may read it.
#include "protectionkey.h"

#include <windows.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace mvplatform {
namespace {

constexpr const char* keyFileName = "protection.key";

class Descriptor {
public:
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    int Get() const noexcept { return number_; }
    explicit operator bool() const noexcept { return number_ >= 0; }

private:
    int number_;
};

// None when there is no such file.
std::optional<SecretKey> ReadKeyFile(const std::filesystem::path& file) {
    const Descriptor descriptor(open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    if (!descriptor && errno == ENOENT) return std::nullopt;
    struct stat state = {};
    if (!descriptor || fstat(descriptor.Get(), &state) != 0)
        throw KeyError(ERROR_ACCESS_DENIED, "the key file cannot be read");
    if (!S_ISREG(state.st_mode) || state.st_uid != geteuid() || (state.st_mode & 077) != 0)
        throw KeyError(ERROR_ACCESS_DENIED, "the key file is not its owner's alone");
    SecretKey key;
    const auto size = static_cast<ssize_t>(key.bytes.size());
    if (state.st_size != size || read(descriptor.Get(), key.bytes.data(), key.bytes.size()) != size)
        throw KeyError(ERROR_INVALID_DATA, "the key file is damaged");
    return key;
}

SecretKey MakeKey() {
    SecretKey key;
    crypto_secretbox_keygen(key.bytes.data());
    return key;
}

bool WriteWhole(int descriptor, const SecretKey& key) {
    return write(descriptor, key.bytes.data(), key.bytes.size()) == static_cast<ssize_t>(key.bytes.size()) &&
           fsync(descriptor) == 0;
}

// Of several processes that make the key at once one wins; all of them then read the same.
void MakeKeyFile(const std::filesystem::path& file) {
    std::string name = file.string() + ".XXXXXX";
    const Descriptor descriptor(mkostemp(name.data(), O_CLOEXEC));  // mode 0600
    if (!descriptor) throw KeyError(ERROR_ACCESS_DENIED, "the key file cannot be made");
    const bool written = WriteWhole(descriptor.Get(), MakeKey());
    const bool linked = written && (link(name.c_str(), file.c_str()) == 0 || errno == EEXIST);
    unlink(name.c_str());
    if (!linked) throw KeyError(ERROR_ACCESS_DENIED, "the key file cannot be made");
}

}  // namespace

ProtectionKey& ProtectionKey::GetInstance() {
    // Never destroyed, as the store is not.
    static ProtectionKey& instance = *new ProtectionKey;
    return instance;
}

void ProtectionKey::UseFolder(std::optional<std::filesystem::path> folder) noexcept {
    const std::lock_guard lock(mutex_);
    folder_ = std::move(folder);
    inMemory_.reset();
}

SecretKey ProtectionKey::GetOrMake() {
    const std::lock_guard lock(mutex_);
    if (!folder_) {
        if (!inMemory_) inMemory_ = MakeKey();
        return *inMemory_;
    }
    const std::filesystem::path file = *folder_ / keyFileName;
    if (const std::optional<SecretKey> key = ReadKeyFile(file)) return *key;
    MakeKeyFile(file);
    if (const std::optional<SecretKey> key = ReadKeyFile(file)) return *key;
    throw KeyError(ERROR_ACCESS_DENIED, "the key file is gone again");
}

std::optional<SecretKey> ProtectionKey::Find() {
    const std::lock_guard lock(mutex_);
    return folder_ ? ReadKeyFile(*folder_ / keyFileName) : inMemory_;
}

}  // namespace mvplatform
