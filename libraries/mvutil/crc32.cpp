// Crc32: zlib's CRC-32, with a start value.
#include <mvutil/crc32.h>

#include <zlib.h>

DWORD Crc32::GetCrc(const void* data, std::size_t bytes, DWORD start) noexcept {
    if (!data || bytes == 0) return start;  // zlib would begin anew at a null pointer
    return static_cast<DWORD>(crc32_z(start, static_cast<const Bytef*>(data), bytes));
}
