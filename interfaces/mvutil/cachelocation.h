// Where the driver family keeps its values in the registry: said once, for DataCache, User and the spooler's answers.
#pragma once

#include <widetext.h>
#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

// Under either hive.
inline constexpr const WCHAR* kDriverFamilyKey = W("Software\\Morvane\\Printer Driver");
// Capability caches and data-model state of a port, whether asked for by key or by printer: this key, a backslash and
// ConvertPortNameToRegistryKey(port).
inline constexpr const WCHAR* kPrinterCachesKey = W("Software\\Morvane\\Printer Driver\\Printers");
// A key name may not hold these; each one in a port name becomes an underscore.
inline constexpr WCHAR kKeyNameSeparator = W('\\');
inline constexpr std::size_t kMaximumKeyName = 255;  // characters

// The key name made from a port's name. One that is too long for a key is cut, and ends in an underscore and sixteen
// hexadecimal digits made from the whole of it (FNV-1a), so that two long names keep two keys. An empty name gives "_".
inline WideString GetCacheKeyName(WideStringView port) {
    WideString name(port);
    for (WCHAR& character : name)
        if (character == kKeyNameSeparator || character == WCHAR()) character = W('_');
    if (name.empty()) name += W('_');
    if (name.size() <= kMaximumKeyName) return name;
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const WCHAR character : port) hash = (hash ^ character) * 0x100000001B3u;
    name.resize(kMaximumKeyName - 17);
    name += W('_');
    for (int shift = 60; shift >= 0; shift -= 4) name += W("0123456789ABCDEF")[(hash >> shift) & 15];
    return name;
}

// Value names of the capability groups.
inline constexpr const WCHAR* kPaperCapsValue = W("XPaperCaps");
inline constexpr const WCHAR* kBinCapsValue = W("XBinCaps");
inline constexpr const WCHAR* kMediaCapsValue = W("XMediaCaps");
inline constexpr const WCHAR* kMediaReadyValue = W("XMediaReady");
inline constexpr const WCHAR* kDependentFilesValue = W("XDependentFilesCaps");
inline constexpr const WCHAR* kDeviceLimitsValue = W("XDevCaps");
inline constexpr const WCHAR* kStapleValue = W("XStaple");
inline constexpr const WCHAR* kResolutionsValue = W("XResolutions");
inline constexpr const WCHAR* kCapsFlagsValue = W("XCapsFlags");
// Start value of every capability cache's CRC-32.
inline constexpr DWORD kCapabilityCacheCrcStart = 0x534B47B9;
