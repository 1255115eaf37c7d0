// ByteBuffer: the driver family's byte array.
#pragma once

#include <mvutil/cxstring.h>

#include <vector>

class MVUTIL_API ByteBuffer {
public:
    ByteBuffer() = default;
    ByteBuffer(const void* bytes, std::size_t length) { setWithLpbyte(bytes, length); }

    const BYTE* getLpbyte() const noexcept { return bytes_.data(); }
    BYTE* getLpbyte() noexcept { return bytes_.data(); }
    DWORD getDword() const noexcept { return static_cast<DWORD>(bytes_.size()); }  // length in bytes
    bool isEmpty() const noexcept { return bytes_.empty(); }

    void clear() noexcept { bytes_.clear(); }
    void resize(std::size_t length) { bytes_.resize(length); }  // new bytes are zero
    void append(const ByteBuffer& other);
    void appendLpbyte(const void* bytes, std::size_t length);   // bytes of another buffer; null appends nothing
    void appendAscii(const CXString& text);                     // each unit as one byte, in Windows-1252 or as '?'
    void setWithLpbyte(const void* bytes, std::size_t length);  // null gives the empty buffer

    // The bytes as UTF-16 text up to its first NUL; an odd last byte is dropped.
    CXString getAsStringValue() const;
    // The bytes as 8-bit text (Windows-1252) up to its first NUL, each byte one UTF-16 unit.
    CXString getAsStringValueFromAnsiBuffer() const;
    LONG getAsLongValue() const noexcept;  // the first four bytes, little-endian; 0 when there are fewer
    void createFromLongValue(LONG value);
    void createFromStringValue(const CXString& text);  // UTF-16 units and a terminating NUL

    friend bool operator==(const ByteBuffer& a, const ByteBuffer& b) noexcept { return a.bytes_ == b.bytes_; }

private:
    std::vector<BYTE> bytes_;
};
