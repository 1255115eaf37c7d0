// The product descriptions that the host finds beside itself.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

// Product files in the folder "products" beside the program, else in "../driver/products", by name.
std::vector<std::filesystem::path> FindOwnProductFiles();
// What a user calls the product of that file.
std::string NameProduct(const std::filesystem::path& file);
// The product file that a user means by a name, such as "press8434", or by a path. Throws NotFoundError when there is
// none.
std::filesystem::path FindProductFile(const std::string& nameOrPath);
