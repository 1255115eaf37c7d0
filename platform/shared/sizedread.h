// Reading what the spooler and the registry give in buffers whose size can change between two calls.
#pragma once

#include <windows.h>

#include <widetext.h>
#include <memory>
#include <span>
#include <vector>

// The bytes of one answer. Pointers of a spooler record lie inside them.
class SizedBytes {
public:
    static constexpr DWORD kMaximum = 16u << 20;  // no value that the driver family reads comes near
    static constexpr DWORD kFirstBytes = 4096;    // holds a driver's record with its files, which are asked for often
    static constexpr DWORD kBytesOfCache = 32u << 10;  // holds a capability cache of some two hundred papers

    SizedBytes() = default;
    // For answers that are long as a rule: the first buffer has that many bytes.
    explicit SizedBytes(DWORD firstBytes) noexcept : firstBytes_(firstBytes) {}

    // Calls read(buffer, bytes, needed) until the buffer is large enough. The call gives a Win32 error code and stores
    // the size that it needs or has used. The last error code; the bytes are empty unless that is ERROR_SUCCESS.
    template <class Call>
    DWORD Read(Call read) {
        DWORD size = firstBytes_;
        for (int attempt = 0; attempt < 8; ++attempt) {
            bytes_ = std::make_unique_for_overwrite<BYTE[]>(size);
            DWORD needed = 0;
            const DWORD error = read(bytes_.get(), size, &needed);
            if (error == ERROR_SUCCESS && needed <= size) {
                size_ = needed;
                return ERROR_SUCCESS;
            }
            const bool tooSmall =
                error == ERROR_SUCCESS || error == ERROR_MORE_DATA || error == ERROR_INSUFFICIENT_BUFFER;
            if (!tooSmall || needed <= size || needed > kMaximum) return Fail(tooSmall ? ERROR_INVALID_DATA : error);
            size = needed;
        }
        return Fail(ERROR_INVALID_DATA);
    }
    // The same for a call that returns a BOOL and sets the last error.
    template <class Call>
    DWORD ReadWithLastError(Call read) {
        return Read([&](BYTE* buffer, DWORD size, DWORD* needed) -> DWORD {
            if (read(buffer, size, needed)) return ERROR_SUCCESS;
            const DWORD error = GetLastError();
            return error ? error : ERROR_INVALID_DATA;
        });
    }

    std::span<const BYTE> Get() const noexcept { return {bytes_.get(), size_}; }
    // How many records of the kind fit in the bytes, at most the number claimed.
    template <class Record>
    std::size_t CountRecords(std::size_t claimed) const noexcept {
        const std::size_t room = size_ / sizeof(Record);
        return claimed < room ? claimed : room;
    }
    template <class Record>
    const Record* As() const noexcept {
        return size_ < sizeof(Record) ? nullptr : reinterpret_cast<const Record*>(bytes_.get());
    }
    // The NUL-terminated text at a pointer of the record, cut at the end of the bytes; empty when it points elsewhere.
    // A string of any kind that is made of characters and their number.
    template <class String>
    String Text(const WCHAR* text) const {
        const auto begin = reinterpret_cast<UINT_PTR>(bytes_.get());
        const auto at = reinterpret_cast<UINT_PTR>(text);
        if (!text || at < begin || at >= begin + size_) return String();
        const std::size_t room = (begin + size_ - at) / sizeof(WCHAR);
        std::size_t length = 0;
        while (length < room && text[length]) ++length;
        return String(text, length);
    }
    // The texts of a list that an empty one ends.
    template <class String>
    std::vector<String> Texts(const WCHAR* list) const {
        std::vector<String> texts;
        for (;;) {
            const auto text = Text<WideStringView>(list);
            if (text.empty()) return texts;
            texts.emplace_back(text.data(), text.size());
            list += text.size() + 1;
        }
    }

private:
    DWORD Fail(DWORD error) {
        bytes_.reset();
        size_ = 0;
        return error;
    }

    DWORD firstBytes_ = kFirstBytes;
    std::unique_ptr<BYTE[]> bytes_;
    std::size_t size_ = 0;
};

// Reads a registry value whole. A Win32 error code; the type is the value's unless it failed.
inline DWORD ReadRegistryValue(HKEY key, const WCHAR* name, DWORD& type, SizedBytes& bytes) {
    return bytes.Read([&](BYTE* buffer, DWORD size, DWORD* needed) -> DWORD {
        *needed = size;
        return RegQueryValueExW(key, name, nullptr, &type, buffer, needed);
    });
}
