// Crc32: zlib's CRC-32, with a start value.
#pragma once

#include <mvutil/mvutilapi.h>

#include <cstddef>

class MVUTIL_API Crc32 {
public:
    // The CRC of the bytes, continued from the start value (a CRC of bytes that came before, or any seed).
    static DWORD GetCrc(const void* data, std::size_t bytes, DWORD start = 0) noexcept;
};
