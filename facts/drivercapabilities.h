// The driver capability flags: the word's number among a driver's capabilities, and its bits.
#pragma once

namespace facts {

inline constexpr int kDriverCapabilityFlags = 1984;

// Either of the two: job tickets have writer 8631. A PostScript device's writer is 8630 all the same.
inline constexpr unsigned long long kJobTicketWriter8631Flags = 0x40 | 0x80;
// PostScript custom sizes, colour managed by the device.
inline constexpr unsigned long long kPostScriptDeviceFlag = 0x200;
// The private keywords namespace and the embedded job ticket.
inline constexpr unsigned long long kPrivateNamespaceFlag = 0x400;

}  // namespace facts
