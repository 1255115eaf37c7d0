// Names of keys and values as the registry's store keeps them.
#include "registryname.h"

#include <textcodec.h>
#include <windows.h>
#include "../text/textcase.h"
#include "statement.h"

#include <algorithm>

namespace mvplatform {
namespace {

constexpr std::size_t longestKeyName = 255;
constexpr std::size_t longestValueName = 16383;

RegistryName MakeName(WideStringView text) {
    return {Utf8FromWide(text, BadText::Keep), Utf8FromWide(FoldRegistryName(text), BadText::Keep)};
}

}  // namespace

RegistryName MakeValueName(WideStringView name) {
    if (name.size() > longestValueName) throw RegistryError(ERROR_INVALID_PARAMETER, "the value's name is too long");
    return MakeName(name);
}

KeyPath ParseKeyPath(WideStringView path) {
    KeyPath names;
    while (!path.empty()) {
        const std::size_t length = std::min(path.find(W('\\')), path.size());
        if (length == 0) throw RegistryError(ERROR_BAD_PATHNAME, "a key's name is empty");
        if (length > longestKeyName) throw RegistryError(ERROR_INVALID_PARAMETER, "a key's name is too long");
        names.push_back(MakeName(path.substr(0, length)));
        path.remove_prefix(std::min(length + 1, path.size()));
    }
    return names;
}

}  // namespace mvplatform
