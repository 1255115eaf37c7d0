// The media types that the driver family knows, and how the Print Schema names them.
#pragma once

#include <facts/values.h>
#include <mvutil/cxstring.h>

#include <windows.h>

#include <array>
#include <cstddef>

// The keywords ScoredProperties that describe a media type's option, in the order in which they are written.
inline constexpr std::size_t kMediaTypePropertyCount = 6;
inline constexpr const WCHAR* kMediaTypeProperties[kMediaTypePropertyCount] = {
    W("BackCoating"), W("FrontCoating"), W("Material"), W("PrePrinted"), W("PrePunched"), W("Recycled")};

// Values of those properties: keywords; an empty one is not written.
using MediaTypeProperties = std::array<const WCHAR*, kMediaTypePropertyCount>;

struct MediaTypeRow {
    DWORD value;               // data-model value of the media type
    const WCHAR* optionName;   // empty for values that no product uses
    bool inKeywordsNamespace;  // else in the private one
    MediaTypeProperties properties;
};

// One media type of a printer.
struct MediaTypeDataEntry {
    CXString displayName;
    DWORD value;
    CXString optionName;
    bool inKeywordsNamespace;
    MediaTypeProperties properties;
};

// Whether the value is one of those that users give to media types of their own.
constexpr bool IsUserDefinedMediaType(DWORD value) noexcept { return value >= facts::value::kFirstOwnValue; }

// The row of a number that DeviceCapabilitiesW reports (DC_MEDIATYPES), or null. A user-defined type has the row of the
// automatic choice.
const MediaTypeRow* FindMediaType(DWORD number) noexcept;
