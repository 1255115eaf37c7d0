// Protection of data: a mark, a nonce, then the data encrypted and authenticated by libsodium's secretbox.
#include <wincrypt.h>

#include "protectionkey.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace mvplatform {
namespace {

constexpr unsigned char mark[] = {'M', 'V', 'P', '1'};
constexpr std::size_t boxOffset = sizeof(mark) + crypto_secretbox_NONCEBYTES;
constexpr std::size_t overhead = boxOffset + crypto_secretbox_MACBYTES;

struct FreeBlock {
    void operator()(BYTE* block) const noexcept { std::free(block); }
};
using Block = std::unique_ptr<BYTE, FreeBlock>;

Block Allocate(std::size_t bytes) {
    Block block(static_cast<BYTE*>(std::malloc(bytes ? bytes : 1)));
    if (!block) throw std::bad_alloc();
    return block;
}

void Require(bool condition, DWORD error, const char* reason) {
    if (!condition) throw KeyError(error, reason);
}

bool IsBlob(const DATA_BLOB* blob) noexcept { return blob && (blob->pbData || blob->cbData == 0); }

void CheckArguments(const DATA_BLOB* data, const DATA_BLOB* entropy, bool isPlain, DWORD flags,
                    const DATA_BLOB* result) {
    Require(IsBlob(data) && (!entropy || IsBlob(entropy)) && result, ERROR_INVALID_PARAMETER, "a blob is missing");
    Require(isPlain && (flags & ~DWORD{CRYPTPROTECT_UI_FORBIDDEN}) == 0, ERROR_NOT_SUPPORTED, "it is not offered");
    Require(sodium_init() >= 0, ERROR_NOT_SUPPORTED, "there is no source of random numbers");
}

// The key of the data: another one for each entropy.
SecretKey DeriveKey(const SecretKey& key, const DATA_BLOB* entropy) {
    SecretKey derived;
    crypto_generichash(derived.bytes.data(), derived.bytes.size(), entropy ? entropy->pbData : nullptr,
                       entropy ? entropy->cbData : 0, key.bytes.data(), key.bytes.size());
    return derived;
}

void Give(Block block, std::size_t bytes, DATA_BLOB* result) noexcept {
    result->cbData = static_cast<DWORD>(bytes);
    result->pbData = block.release();
}

// Runs the operation and turns what it throws into the answer.
template <class Operation>
BOOL Answer(Operation operation) noexcept {
    try {
        operation();
        return TRUE;
    } catch (const KeyError& error) {
        SetLastError(error.GetError());
    } catch (const std::bad_alloc&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    } catch (...) {
        SetLastError(ERROR_ACCESS_DENIED);
    }
    return FALSE;
}

}  // namespace
}  // namespace mvplatform

extern "C" {

BOOL WINAPI CryptProtectData(DATA_BLOB* data, LPCWSTR description, DATA_BLOB* entropy, PVOID reserved,
                             CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* result) {
    using namespace mvplatform;
    return Answer([&] {
        CheckArguments(data, entropy, !description && !reserved && !prompt, flags, result);
        Require(data->cbData <= std::numeric_limits<DWORD>::max() - overhead, ERROR_INVALID_PARAMETER, "too long");
        const SecretKey key = DeriveKey(ProtectionKey::GetInstance().GetOrMake(), entropy);
        const std::size_t bytes = overhead + data->cbData;
        Block block = Allocate(bytes);
        std::memcpy(block.get(), mark, sizeof(mark));
        unsigned char* nonce = block.get() + sizeof(mark);
        randombytes_buf(nonce, crypto_secretbox_NONCEBYTES);
        Require(
            crypto_secretbox_easy(block.get() + boxOffset, data->pbData, data->cbData, nonce, key.bytes.data()) == 0,
            ERROR_INVALID_DATA, "the data cannot be encrypted");
        Give(std::move(block), bytes, result);
    });
}

BOOL WINAPI CryptUnprotectData(DATA_BLOB* data, LPWSTR* description, DATA_BLOB* entropy, PVOID reserved,
                               CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* result) {
    using namespace mvplatform;
    return Answer([&] {
        CheckArguments(data, entropy, !description && !reserved && !prompt, flags, result);
        Require(data->cbData >= overhead && std::memcmp(data->pbData, mark, sizeof(mark)) == 0, ERROR_INVALID_DATA,
                "this was not protected here");
        const std::optional<SecretKey> storeKey = ProtectionKey::GetInstance().Find();
        Require(storeKey.has_value(), ERROR_INVALID_DATA, "nothing was protected in this store yet");
        const SecretKey key = DeriveKey(*storeKey, entropy);
        const std::size_t bytes = data->cbData - overhead;
        Block block = Allocate(bytes);
        Require(crypto_secretbox_open_easy(block.get(), data->pbData + boxOffset, data->cbData - boxOffset,
                                           data->pbData + sizeof(mark), key.bytes.data()) == 0,
                ERROR_INVALID_DATA, "this was changed, or protected in another store");
        Give(std::move(block), bytes, result);
    });
}

HLOCAL WINAPI LocalFree(HLOCAL block) {
    std::free(block);
    return nullptr;
}

}  // extern "C"
