// Reading a TOML file whole.
#pragma once

#include "tomlparser.h"

#include <filesystem>
#include <string>

inline constexpr std::uintmax_t kLargestTomlFile = 4u << 20;  // bytes
// Of one key, with all the tables that its dots lead through.
inline constexpr std::size_t kMostKeyParts = 16;

// Throws ProductError for what is no readable file of at most kLargestTomlFile bytes of TOML, and for a key of more
// than kMostKeyParts parts.
toml::table ReadTomlFile(const std::filesystem::path& file);
