// The media types that the system has numbers for.
#pragma once

#include <facts/values.h>

namespace facts {

struct SystemMediaType {
    unsigned mediaType;
    unsigned number;  // DMMEDIA_STANDARD, DMMEDIA_TRANSPARENCY, DMMEDIA_GLOSSY
};
inline constexpr SystemMediaType kSystemMediaTypes[] = {
    {value::kPlain, 1}, {value::kTransparency, 2}, {value::kGlossy, 3}};

// By which number a DEVMODE and the media cache know a media type: its value, where the system has none.
constexpr unsigned NumberOfMediaType(unsigned mediaType) noexcept {
    for (const SystemMediaType& row : kSystemMediaTypes)
        if (row.mediaType == mediaType) return row.number;
    return mediaType;
}
constexpr unsigned MediaTypeOfNumber(unsigned number) noexcept {
    for (const SystemMediaType& row : kSystemMediaTypes)
        if (row.number == number) return row.mediaType;
    return number;
}

}  // namespace facts
