// The driver's private block inside a DEVMODE: where it lies, its layout, and unaligned little-endian access to it.
#pragma once

#include <mvutil/crc32.h>
#include <printsubsystem/driverextra.h>

#include <cstddef>

// Offsets are from the block's first byte. Nothing in it is aligned.
namespace privateblock {

// The block's fixed total size, which its first field repeats.
inline constexpr std::size_t kBytes = kPrivateBlockBytes;
inline constexpr DWORD kSignature = 0x4D564431;

inline constexpr std::size_t kSizeOffset = 0;
inline constexpr std::size_t kSignatureOffset = 4;
inline constexpr std::size_t kVersionOffset = 8;
inline constexpr std::size_t kChecksumOffset = 56;    // of the bytes from the entry count to the block's end
inline constexpr std::size_t kEntryCountOffset = 60;  // a WORD; what the checksum covers begins here
inline constexpr std::size_t kEntriesOffset = 62;     // one after the other: WORD key, WORD length, the value's bytes
inline constexpr std::size_t kEntryHeaderBytes = 4;

// Keys of the entries.
inline constexpr WORD kAttributeStateKey = 1;   // an image of PersistentAttributes
inline constexpr WORD kApplicationNameKey = 2;  // UTF-16 text: executable name of the program that made the job
inline constexpr WORD kJobTextKey = 4;          // UTF-16 text for the job ticket

// The attribute state may take that much, so that there is room for the other entries.
inline constexpr std::size_t kMaximumStateBytes = 5400;

// The block's place is stored as a WORD in the driver-extra area, its offset from that area's start; the first of the
// two forms that leads to a block counts. A form applies to areas larger than its minimum.
struct Locator {
    std::size_t areaMinimum;
    std::size_t wordOffset;
};
inline constexpr Locator kLocators[] = {{116, 114}, {10, 8}};

inline WORD ReadWord(const BYTE* bytes) noexcept { return static_cast<WORD>(bytes[0] | bytes[1] << 8); }
inline DWORD ReadDword(const BYTE* bytes) noexcept {
    return static_cast<DWORD>(ReadWord(bytes)) | static_cast<DWORD>(ReadWord(bytes + 2)) << 16;
}
inline void WriteWord(BYTE* bytes, WORD value) noexcept {
    bytes[0] = static_cast<BYTE>(value);
    bytes[1] = static_cast<BYTE>(value >> 8);
}
inline void WriteDword(BYTE* bytes, DWORD value) noexcept {
    WriteWord(bytes, static_cast<WORD>(value));
    WriteWord(bytes + 2, static_cast<WORD>(value >> 16));
}

// The checksum that a block of these bytes must hold.
inline DWORD ComputeChecksum(const BYTE* block) noexcept {
    return Crc32::GetCrc(block + kEntryCountOffset, kBytes - kEntryCountOffset);
}

struct Entry {
    WORD key;
    WORD length;  // in bytes
    const BYTE* value;
};

// Calls visit(const Entry&) for each entry in order and returns the offset behind the last one. An entry that would run
// past the block's end stops the walk: it is not visited, and kBytes is returned.
template <class Visit>
std::size_t WalkEntries(const BYTE* block, Visit visit) {
    std::size_t offset = kEntriesOffset;
    for (WORD left = ReadWord(block + kEntryCountOffset); left != 0; --left) {
        if (kBytes - offset < kEntryHeaderBytes) return kBytes;
        const Entry entry{ReadWord(block + offset), ReadWord(block + offset + 2), block + offset + kEntryHeaderBytes};
        offset += kEntryHeaderBytes;
        if (kBytes - offset < entry.length) return kBytes;
        visit(entry);
        offset += entry.length;
    }
    return offset;
}

}  // namespace privateblock
