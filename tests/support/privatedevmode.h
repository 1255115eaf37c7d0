// DEVMODEs with a private block, made by hand for tests.
#pragma once

#include <privateblock.h>

#include <mvutil/persistentattributes.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

using TestEntries = std::vector<std::pair<WORD, ByteBuffer>>;

// The UTF-16 bytes of a text, without a terminator.
inline ByteBuffer TextBytes(const WCHAR* text) {
    ByteBuffer bytes;
    bytes.createFromStringValue(text);
    bytes.resize(bytes.getDword() - sizeof(WCHAR));
    return bytes;
}

inline std::vector<BYTE> MakePrivateBlock(const TestEntries& entries) {
    using namespace privateblock;
    std::vector<BYTE> block(kBytes);
    WriteDword(&block[kSizeOffset], kBytes);
    WriteDword(&block[kSignatureOffset], kSignature);
    for (std::size_t i = kVersionOffset; i < kChecksumOffset; ++i) block[i] = static_cast<BYTE>(0xA0 + i);
    WriteWord(&block[kEntryCountOffset], static_cast<WORD>(entries.size()));
    std::size_t offset = kEntriesOffset;
    for (const auto& [key, value] : entries) {
        WriteWord(&block.at(offset), key);
        WriteWord(&block.at(offset + 2), static_cast<WORD>(value.getDword()));
        offset += kEntryHeaderBytes;
        std::copy_n(value.getLpbyte(), value.getDword(), block.data() + offset);
        offset += value.getDword();
    }
    WriteDword(&block[kChecksumOffset], ComputeChecksum(block.data()));
    return block;
}

// A DEVMODE in a piece of memory of exactly its size, so that a sanitizer sees every read past it.
class TestDevmode {
public:
    static constexpr WORD kBlockOffset = 200;  // of the block in the driver-extra area

    explicit TestDevmode(std::size_t driverExtra) : bytes_(sizeof(DEVMODEW) + driverExtra) {
        Get()->dmSize = sizeof(DEVMODEW);
        Get()->dmDriverExtra = static_cast<WORD>(driverExtra);
        Get()->dmSpecVersion = DM_SPECVERSION;
    }
    // With the block at kBlockOffset, found by the first form.
    explicit TestDevmode(const std::vector<BYTE>& block) : TestDevmode(kBlockOffset + block.size()) {
        privateblock::WriteWord(Extra() + 114, kBlockOffset);
        std::copy(block.begin(), block.end(), Block());
    }

    DEVMODEW* Get() { return reinterpret_cast<DEVMODEW*>(bytes_.data()); }
    BYTE* Extra() { return bytes_.data() + sizeof(DEVMODEW); }
    BYTE* Block() { return Extra() + kBlockOffset; }
    std::vector<BYTE> CopyBlock() { return {Block(), Block() + privateblock::kBytes}; }
    // Makes a changed block valid again.
    void RestoreChecksum() {
        privateblock::WriteDword(Block() + privateblock::kChecksumOffset, privateblock::ComputeChecksum(Block()));
    }

private:
    std::vector<BYTE> bytes_;
};
