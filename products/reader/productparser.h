// The parser of product files: TOML text to ProductDescription.
#pragma once

#include <products/reader/productdescription.h>

// The whole contents of a file, at most kLargestProductFile bytes. Throws ProductError.
inline constexpr std::uintmax_t kLargestProductFile = 4u << 20;
std::string ReadProductFile(const std::filesystem::path& file);

struct ParsedProduct {
    ProductDescription product;
    std::vector<std::filesystem::path> files;  // the product's file and its string files
};

// Throws ProductError.
ParsedProduct ParseProduct(const std::filesystem::path& file);
