// ByteBuffer: the driver family's byte array, and texts and numbers in it.
#include <mvutil/bytebuffer.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

// Windows-1252 from 0x80 to 0x9F; its five undefined bytes stand for themselves.
constexpr WCHAR kWindows1252[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
static_assert(std::size(kWindows1252) == 0x20);

BYTE ToWindows1252(WCHAR unit) noexcept {
    if (unit < 0x80 || (unit > 0x9F && unit <= 0xFF)) return static_cast<BYTE>(unit);
    const WCHAR* const found = std::find(std::begin(kWindows1252), std::end(kWindows1252), unit);
    return found == std::end(kWindows1252) ? BYTE{'?'} : static_cast<BYTE>(0x80 + (found - kWindows1252));
}

}  // namespace

void ByteBuffer::append(const ByteBuffer& other) {
    const std::vector<BYTE> own = &other == this ? bytes_ : std::vector<BYTE>();
    const std::vector<BYTE>& source = &other == this ? own : other.bytes_;
    bytes_.insert(bytes_.end(), source.begin(), source.end());
}

void ByteBuffer::appendLpbyte(const void* bytes, std::size_t length) {
    const BYTE* first = static_cast<const BYTE*>(bytes);
    if (first) bytes_.insert(bytes_.end(), first, first + length);
}

void ByteBuffer::appendAscii(const CXString& text) {
    bytes_.reserve(bytes_.size() + text.GetLength());
    for (const WCHAR unit : text.AsWideString()) bytes_.push_back(ToWindows1252(unit));
}

void ByteBuffer::setWithLpbyte(const void* bytes, std::size_t length) {
    const BYTE* first = static_cast<const BYTE*>(bytes);
    std::vector<BYTE> replacement;  // the bytes may be this buffer's own
    if (first) replacement.assign(first, first + length);
    bytes_.swap(replacement);
}

CXString ByteBuffer::getAsStringValue() const {
    WideString text(bytes_.size() / sizeof(WCHAR), WCHAR());
    if (!text.empty()) std::memcpy(text.data(), bytes_.data(), text.size() * sizeof(WCHAR));
    text.resize(std::min(text.find(WCHAR()), text.size()));
    return CXString(std::move(text));
}

CXString ByteBuffer::getAsStringValueFromAnsiBuffer() const {
    const auto end = std::find(bytes_.begin(), bytes_.end(), BYTE());
    WideString text(static_cast<std::size_t>(end - bytes_.begin()), WCHAR());
    std::transform(bytes_.begin(), end, text.begin(), [](BYTE byte) {
        return byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : static_cast<WCHAR>(byte);
    });
    return CXString(std::move(text));
}

LONG ByteBuffer::getAsLongValue() const noexcept {
    if (bytes_.size() < 4) return 0;
    return static_cast<LONG>(DWORD{bytes_[0]} | DWORD{bytes_[1]} << 8 | DWORD{bytes_[2]} << 16 |
                             DWORD{bytes_[3]} << 24);
}

void ByteBuffer::createFromLongValue(LONG value) {
    const auto bits = static_cast<DWORD>(value);
    bytes_ = {static_cast<BYTE>(bits), static_cast<BYTE>(bits >> 8), static_cast<BYTE>(bits >> 16),
              static_cast<BYTE>(bits >> 24)};
}

void ByteBuffer::createFromStringValue(const CXString& text) {
    setWithLpbyte(text.GetString(), (text.GetLength() + 1) * sizeof(WCHAR));
}
