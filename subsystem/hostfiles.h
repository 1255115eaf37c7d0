// Files of the host: read whole with a bound, written whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Throws InputError when the file cannot be read or is larger than kMaximumInputBytes.
inline constexpr std::size_t kMaximumInputBytes = 64u << 20;
std::string ReadWholeFile(const std::filesystem::path& file);

// Writes beside the file first and takes its place at the end. Throws OperationError, with the file as it was.
void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);
