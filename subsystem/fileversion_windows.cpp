// The version of a file, from its version resource.
#include "fileversion.h"

#include <widetext.h>
#include <windows.h>

#include <vector>

std::optional<std::string> ReadFileVersion(const std::filesystem::path& file) {
    const DWORD size = GetFileVersionInfoSizeW(file.c_str(), nullptr);
    std::vector<BYTE> resource(size);
    if (size == 0 || !GetFileVersionInfoW(file.c_str(), 0, size, resource.data())) return std::nullopt;
    void* fixed = nullptr;
    UINT bytes = 0;
    if (!VerQueryValueW(resource.data(), W("\\"), &fixed, &bytes) || bytes < sizeof(VS_FIXEDFILEINFO))
        return std::nullopt;
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
    return std::to_string(HIWORD(info.dwFileVersionMS)) + '.' + std::to_string(LOWORD(info.dwFileVersionMS)) + '.' +
           std::to_string(HIWORD(info.dwFileVersionLS));
}
