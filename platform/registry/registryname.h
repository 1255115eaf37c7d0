// Names of keys and values as the registry's store keeps them.
#pragma once

#include <widetext.h>

#include <string>
#include <vector>

namespace mvplatform {

// A key's or value's name as it was given, and as it is compared; both UTF-8.
struct RegistryName {
    std::string text;
    std::string folded;
};
using KeyPath = std::vector<RegistryName>;

// Throw RegistryError for a name that no key or value can have. One backslash may end a path; an empty one has no
// names.
RegistryName MakeValueName(WideStringView name);
KeyPath ParseKeyPath(WideStringView path);

}  // namespace mvplatform
