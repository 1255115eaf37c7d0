// The form in which the store keeps names to find them by.
#pragma once

#include <widetext.h>

namespace mvplatform {

// The capitals that CompareRegistryNames compares.
WideString FoldRegistryName(WideStringView text);

}  // namespace mvplatform
