// A JSON object of texts, as a line of a file holds it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The object's keys with their texts. Throws InputError with the reason when the JSON is not well-formed, no object,
// names a key twice or holds anything but texts.
std::vector<std::pair<std::string, std::string>> ReadJsonTexts(std::string_view json);
