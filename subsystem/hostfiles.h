// Files of the host: read whole with a bound, written whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Throws InputError when the file cannot be read or is larger than that.
inline constexpr std::size_t kMaximumInputBytes = 64u << 20;
inline constexpr std::size_t kMaximumRegistryBytes = 2u << 30;  // a store of 10,000 printers exports to half of it
std::string ReadWholeFile(const std::filesystem::path& file, std::size_t maximumBytes = kMaximumInputBytes);
// Of standard input when the name is "-".
std::string ReadFileOrInput(const std::string& name);

// Writes beside the file first and takes its place at the end. Throws OperationError, with the file as it was.
void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);
