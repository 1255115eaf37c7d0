// The version of a file, from the text that the build leaves in it.
#include "fileversion.h"

#include <kitversion.h>

#include "hosterror.h"
#include "hostfiles.h"

std::optional<std::string> ReadFileVersion(const std::filesystem::path& file) {
    std::string bytes;
    try {
        bytes = ReadWholeFile(file);
    } catch (const HostError&) {
        return std::nullopt;
    }
    static constexpr std::string_view mark = MV_VERSION_MARK;
    std::size_t at = bytes.find(mark);
    if (at == std::string::npos) return std::nullopt;
    at += mark.size();
    const std::string version = bytes.substr(at, bytes.find(' ', at) - at);
    const bool isVersion = !version.empty() && version.find_first_not_of("0123456789.") == std::string::npos;
    return isVersion ? std::make_optional(version) : std::nullopt;
}
