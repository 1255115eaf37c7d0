// Files of the host: read whole with a bound, written whole or not at all. The name "-" stands for a standard stream.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Whether the name stands for standard input or output; a file of that name is "./-".
bool IsStandardStream(const std::filesystem::path& file);
// What messages call the file that an input comes from.
std::string NameInput(const std::filesystem::path& file);

// Throws InputError when the file cannot be read or is larger than that, or when standard input is read twice.
inline constexpr std::size_t kMaximumInputBytes = 64u << 20;
inline constexpr std::size_t kMaximumRegistryBytes = 2u << 30;  // a store of 10,000 printers exports to half of it
std::string ReadWholeFile(const std::filesystem::path& file, std::size_t maximumBytes = kMaximumInputBytes);

// Writes beside the file first and takes its place at the end. Throws OperationError, with the file as it was.
void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);
// With the folders that it lies in. Throws OperationError.
void MakeFolder(const std::filesystem::path& folder);
