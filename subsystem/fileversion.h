// The version that a driver's file carries.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

// "1.2.3": of its version resource, on hosts without them of the text that the build leaves in it. Nothing when there
// is no such file or it carries none.
std::optional<std::string> ReadFileVersion(const std::filesystem::path& file);
