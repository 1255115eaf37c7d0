// DataEncrypter: what is protected is the text's UTF-16 units and a checksum of them, so that bytes that the system
// takes for its own and decrypts to something else do not pass for a text.
#include <mvutil/dataencrypter.h>

#include <mvutil/crc32.h>
#include <mvutil/throwfailure.h>

#include <windows.h>
// After windows.h, which it needs.
#include <wincrypt.h>

#include <cstring>
#include <vector>

namespace {

constexpr const WCHAR* kEncryptMethod = W("DataEncrypter::EncryptString");
constexpr const WCHAR* kDecryptMethod = W("DataEncrypter::DecryptString");
constexpr std::size_t kLongestText = 1u << 20;  // in UTF-16 units

[[noreturn]] void ThrowEncrypterFailure(const WCHAR* methodName, LONG line = __builtin_LINE()) {
    ThrowFailure(&GetExceptionDataEncrypterFailure, CXString(), methodName, W("dataencrypter"), line);
}

// Plain bytes that are wiped when their life ends.
class PlainBytes {
public:
    explicit PlainBytes(std::size_t size) : bytes_(size) {}
    PlainBytes(const PlainBytes&) = delete;
    PlainBytes& operator=(const PlainBytes&) = delete;
    ~PlainBytes() { SecureZeroMemory(bytes_.data(), bytes_.size()); }
    BYTE* Get() noexcept { return bytes_.data(); }
    DWORD GetSize() const noexcept { return static_cast<DWORD>(bytes_.size()); }

private:
    std::vector<BYTE> bytes_;
};

// What the system gave; wiped and freed.
class SystemBytes {
public:
    SystemBytes() = default;
    SystemBytes(const SystemBytes&) = delete;
    SystemBytes& operator=(const SystemBytes&) = delete;
    ~SystemBytes() {
        if (!blob_.pbData) return;
        SecureZeroMemory(blob_.pbData, blob_.cbData);
        LocalFree(blob_.pbData);
    }
    DATA_BLOB* Put() noexcept { return &blob_; }
    const BYTE* Get() const noexcept { return blob_.pbData; }
    std::size_t GetSize() const noexcept { return blob_.cbData; }

private:
    DATA_BLOB blob_ = {};
};

}  // namespace

void DataEncrypter::EncryptString(const CXString& text, ByteBuffer& bytes) {
    if (text.GetLength() > kLongestText) ThrowEncrypterFailure(kEncryptMethod);
    const std::size_t textBytes = text.GetLength() * sizeof(WCHAR);
    PlainBytes plain(sizeof(DWORD) + textBytes);
    std::memcpy(plain.Get() + sizeof(DWORD), text.GetString(), textBytes);
    const DWORD checksum = Crc32::GetCrc(plain.Get() + sizeof(DWORD), textBytes);
    std::memcpy(plain.Get(), &checksum, sizeof(checksum));
    DATA_BLOB blob = {plain.GetSize(), plain.Get()};
    SystemBytes result;
    if (!CryptProtectData(&blob, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, result.Put()))
        ThrowEncrypterFailure(kEncryptMethod);
    bytes.setWithLpbyte(result.Get(), result.GetSize());
}

CXString DataEncrypter::DecryptString(const ByteBuffer& bytes) {
    DATA_BLOB blob = {bytes.getDword(), const_cast<BYTE*>(bytes.getLpbyte())};
    SystemBytes plain;
    if (bytes.isEmpty() ||
        !CryptUnprotectData(&blob, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, plain.Put()))
        ThrowEncrypterFailure(kDecryptMethod);
    DWORD checksum = 0;
    if (plain.GetSize() < sizeof(checksum) || (plain.GetSize() - sizeof(checksum)) % sizeof(WCHAR) != 0)
        ThrowEncrypterFailure(kDecryptMethod);
    std::memcpy(&checksum, plain.Get(), sizeof(checksum));
    const BYTE* textBytes = plain.Get() + sizeof(checksum);
    const std::size_t length = (plain.GetSize() - sizeof(checksum)) / sizeof(WCHAR);
    if (checksum != Crc32::GetCrc(textBytes, length * sizeof(WCHAR))) ThrowEncrypterFailure(kDecryptMethod);
    // Made where it stays: a text that is moved can leave itself behind.
    CXString text(reinterpret_cast<const WCHAR*>(textBytes), length);
    text.SetSecret();
    return text;
}
