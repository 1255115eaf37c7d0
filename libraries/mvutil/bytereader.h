// ByteReader: bounds-checked little-endian reading of bytes from outside, and the matching writers.
#pragma once

#include <mvutil/bytebuffer.h>

class ByteReader {
public:
    ByteReader(const BYTE* bytes, std::size_t length) noexcept : at_(bytes), left_(bytes ? length : 0) {}

    std::size_t GetLeft() const noexcept { return left_; }  // in bytes

    // Each is false, with nothing read and the argument unchanged, when too few bytes are left.
    bool ReadBytes(std::size_t length, const BYTE*& bytes) noexcept {
        if (length > left_) return false;
        bytes = at_;
        at_ += length;
        left_ -= length;
        return true;
    }
    bool ReadByte(BYTE& value) noexcept {
        const BYTE* bytes = nullptr;
        if (!ReadBytes(1, bytes)) return false;
        value = *bytes;
        return true;
    }
    bool ReadDword(DWORD& value) noexcept {
        const BYTE* bytes = nullptr;
        if (!ReadBytes(4, bytes)) return false;
        value = DWORD{bytes[0]} | DWORD{bytes[1]} << 8 | DWORD{bytes[2]} << 16 | DWORD{bytes[3]} << 24;
        return true;
    }

private:
    const BYTE* at_;
    std::size_t left_;
};

inline void WriteByte(ByteBuffer& buffer, BYTE value) { buffer.appendLpbyte(&value, 1); }
inline void WriteDword(ByteBuffer& buffer, DWORD value) {
    const BYTE bytes[] = {static_cast<BYTE>(value), static_cast<BYTE>(value >> 8), static_cast<BYTE>(value >> 16),
                          static_cast<BYTE>(value >> 24)};
    buffer.appendLpbyte(bytes, sizeof(bytes));
}
