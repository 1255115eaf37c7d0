// Size of the driver-extra area of the driver family's DEVMODEs.
#pragma once

#include <windows.h>

// The core driver's own part, then the driver family's private block. In bytes.
inline constexpr WORD kCoreDriverPartBytes = 128;
inline constexpr WORD kPrivateBlockBytes = 5956;
inline constexpr WORD kDriverExtraBytes = kCoreDriverPartBytes + kPrivateBlockBytes;
