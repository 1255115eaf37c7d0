// What the keys of a product file mean, for people who write one.
#pragma once

#include <string>
#include <string_view>

// The explanation of a key in a section ("" for the root), or of a whole section when the key is empty. Features are
// explained by their names. Empty when there is no such key.
std::string ExplainProductKey(std::string_view section, std::string_view key);

// A product file's text with another value, in TOML, for a key of a section. Throws InputError when no line of the
// section gives the key its whole value.
std::string ReplaceProductValue(std::string_view toml, std::string_view section, std::string_view key,
                                const std::string& value);

// A product file's text with a comment before each section and each key, and the keys that it does not use at its end.
std::string ExplainProductFile(std::string_view toml);
