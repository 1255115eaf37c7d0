// The state of a file, from its directory entry.
#include <filestate.h>
#include <windows.h>

FileState GetFileState(const std::filesystem::path& file) noexcept {
    WIN32_FILE_ATTRIBUTE_DATA found{};
    if (!GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &found)) return {};
    const auto join = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
    return {.size = join(found.nFileSizeHigh, found.nFileSizeLow),
            .changed = join(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime)};
}
