// Profile files: the sections of an initialisation file.
#include <textcodec.h>
#include <widetext.h>
#include <windows.h>
#include "../module/loadedmodules.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>

namespace mvplatform {
namespace {

std::optional<std::string> ReadFile(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file) return std::nullopt;
    return bytes;
}

// UTF-16, little end first, with its byte order mark; UTF-8 with or without one.
WideString Decode(std::string_view bytes) {
    const auto [form, content] = TakeMark(bytes);
    if (form == ByteForm::LittleUtf16) return WideFromUtf16(content, form);
    return WideFromUtf8(form == ByteForm::BigUtf16 ? bytes : content, BadText::Keep);
}

WideStringView Trim(WideStringView line) {
    constexpr WideStringView blanks = W(" \t\v\f");
    const std::size_t first = line.find_first_not_of(blanks);
    if (first == WideStringView::npos) return {};
    return line.substr(first, line.find_last_not_of(blanks) - first + 1);
}

// Cuts the first line off the text. A NUL ends a line, too: it could not be distinguished from a line's end in the
// answer.
WideStringView TakeLine(WideStringView& text) {
    constexpr WideStringView ends(W("\r\n\0"), 3);
    const std::size_t length = std::min(text.find_first_of(ends), text.size());
    const WideStringView line = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return Trim(line);
}

// The section's lines, each with a NUL; nothing when there is no such section. The first of several is taken.
std::optional<WideString> ReadSection(WideStringView text, WideStringView section) {
    std::optional<WideString> lines;
    while (!text.empty()) {
        const WideStringView line = TakeLine(text);
        if (line.empty() || line[0] == W(';')) continue;
        if (line[0] == W('[')) {
            if (lines) break;
            const std::size_t end = line.find(W(']'));
            if (end != WideStringView::npos && EqualRegistryNames(line.substr(1, end - 1), section)) lines.emplace();
        } else if (lines) {
            lines->append(line) += W('\0');
        }
    }
    return lines;
}

// Copies the lines and one more NUL; a section that is too long is cut so that two NULs end it.
DWORD CopyLines(const WideString& lines, LPWSTR buffer, DWORD characters) {
    if (lines.size() < characters) {
        buffer[lines.copy(buffer, lines.size())] = 0;
        if (lines.empty() && characters > 1) buffer[1] = 0;
        return static_cast<DWORD>(lines.size());
    }
    const DWORD length = characters > 2 ? characters - 2 : 0;
    lines.copy(buffer, length);
    std::fill(buffer + length, buffer + characters, WCHAR());
    return length;
}

}  // namespace
}  // namespace mvplatform

extern "C" DWORD WINAPI GetPrivateProfileSectionW(LPCWSTR section, LPWSTR buffer, DWORD characters, LPCWSTR file) {
    using namespace mvplatform;
    if (!section || !file || !buffer || characters == 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    try {
        const std::optional<std::string> bytes = ReadFile(SystemPath(Utf8FromWide(file, BadText::Keep)));
        const std::optional<WideString> lines = bytes ? ReadSection(Decode(*bytes), section) : std::nullopt;
        if (!lines) SetLastError(ERROR_FILE_NOT_FOUND);
        return CopyLines(lines.value_or(WideString()), buffer, characters);
    } catch (const std::exception&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
}
