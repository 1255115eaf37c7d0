// A DEVMODE with its driver extra area: bytes in memory whose sizes hold.
#pragma once

#include <windows.h>

#include <string_view>
#include <vector>

// Owns the bytes of a DEVMODE whose own sizes have been checked against them.
class DevmodeBuffer {
public:
    // Bytes of the fields that every DEVMODE has: up to and with dmFields.
    static constexpr std::size_t kSmallestPublicBytes = offsetof(DEVMODEW, dmFields) + sizeof(DWORD);

    // A zeroed DEVMODE with a whole public part and an extra area of that many bytes; its sizes are set.
    explicit DevmodeBuffer(WORD extraBytes);
    // Bytes from outside. Throws InputError, which names the source, when they are too few for a DEVMODE or for the
    // sizes that it claims.
    DevmodeBuffer(std::vector<BYTE> bytes, std::string_view source);

    DEVMODEW* Get() noexcept { return reinterpret_cast<DEVMODEW*>(bytes_.data()); }
    ULONG GetBytes() const noexcept { return static_cast<ULONG>(bytes_.size()); }
    std::string_view GetBytesView() const noexcept {
        return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
    }
    WORD GetPublicBytes() const noexcept;  // dmSize
    WORD GetExtraBytes() const noexcept;   // dmDriverExtra

    // The public part alone; fields that the DEVMODE does not have are zero.
    DEVMODEW CopyPublicPart() const noexcept;
    // Writes the public part back, as far as the DEVMODE has it; its sizes stay.
    void SetPublicPart(const DEVMODEW& devmode) noexcept;

private:
    std::vector<BYTE> bytes_;
};
