// JSON as the host prints it.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

// In lines, keys in the order in which they were set, bytes that are no UTF-8 as U+FFFD.
std::string FormatJson(const nlohmann::ordered_json& value);
