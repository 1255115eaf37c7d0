// A DEVMODE with its driver extra area: bytes in memory whose sizes hold.
#include "devmodefile.h"

#include <algorithm>
#include <cstring>

#include "hosterror.h"

static_assert(sizeof(DEVMODEW) == 220, "the public part of a DEVMODEW has 220 bytes");
static_assert(offsetof(DEVMODEW, dmFields) == 72, "dmFields lies at byte 72 of a DEVMODEW");

DevmodeBuffer::DevmodeBuffer(WORD extraBytes) : bytes_(sizeof(DEVMODEW) + extraBytes) {
    Get()->dmSize = sizeof(DEVMODEW);
    Get()->dmDriverExtra = extraBytes;
}

DevmodeBuffer::DevmodeBuffer(std::vector<BYTE> bytes, std::string_view source) : bytes_(std::move(bytes)) {
    const std::string name = "'" + std::string(source) + "'";
    if (bytes_.size() < kSmallestPublicBytes)
        throw InputError(name + " has " + std::to_string(bytes_.size()) +
                         " bytes, too few for a DEVMODE; give a whole one");
    if (GetPublicBytes() < kSmallestPublicBytes)
        throw InputError(name + " is no DEVMODE: its dmSize is " + std::to_string(GetPublicBytes()));
    const std::size_t claimed = std::size_t{GetPublicBytes()} + GetExtraBytes();
    if (claimed > bytes_.size())
        throw InputError(name + " is cut short: its DEVMODE claims " + std::to_string(claimed) +
                         " bytes and the file has " + std::to_string(bytes_.size()));
}

WORD DevmodeBuffer::GetPublicBytes() const noexcept {
    WORD bytes;
    std::memcpy(&bytes, bytes_.data() + offsetof(DEVMODEW, dmSize), sizeof bytes);
    return bytes;
}

WORD DevmodeBuffer::GetExtraBytes() const noexcept {
    WORD bytes;
    std::memcpy(&bytes, bytes_.data() + offsetof(DEVMODEW, dmDriverExtra), sizeof bytes);
    return bytes;
}

DEVMODEW DevmodeBuffer::CopyPublicPart() const noexcept {
    DEVMODEW devmode = {};
    std::memcpy(&devmode, bytes_.data(), std::min<std::size_t>(GetPublicBytes(), sizeof devmode));
    return devmode;
}

void DevmodeBuffer::SetPublicPart(const DEVMODEW& devmode) noexcept {
    DEVMODEW copy = devmode;
    copy.dmSize = GetPublicBytes();
    copy.dmDriverExtra = GetExtraBytes();
    std::memcpy(bytes_.data(), &copy, std::min<std::size_t>(GetPublicBytes(), sizeof copy));
}
