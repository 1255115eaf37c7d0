// A product's files under a name of their own, for a folder that other products' files lie in as well.
#pragma once

#include <filesystem>
#include <map>
#include <string>

// The bytes of files of one folder, by their names.
using FlatFiles = std::map<std::string, std::string>;

// Throws InputError for a name that is not one of files, sections and models on any system: letters, digits, - and _.
void RequireProductName(const std::string& name);

// The product's own file as NAME.toml, and what it names beside itself (margins, string tables) as NAME-margin.ini and
// the like, which the product file then names. Nothing else of its text is changed. Throws ProductError for a product
// that cannot be read, InputError when two files get one name or a key cannot be given another value.
FlatFiles CopyProduct(const std::filesystem::path& product, const std::string& name);
