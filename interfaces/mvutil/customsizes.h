// Where the user's custom paper sizes lie: one key a size, under a key of User's.
#pragma once

#include <widetext.h>
#include <windows.h>

inline constexpr const WCHAR* kCustomSizesKey = W("Morvane Custom Paper Sizes");
// Values of a size's key.
inline constexpr const WCHAR* kCustomSizeWidthValue = W("WidthInThousandthsOfAMillimeter");
inline constexpr const WCHAR* kCustomSizeLengthValue = W("LengthInThousandthsOfAMillimeter");
inline constexpr const WCHAR* kCustomSizeIsMetricValue = W("IsMetricUnits");
// The paper number that the size got first and keeps.
inline constexpr const WCHAR* kCustomSizeNumberValue = W("PaperNumber");
