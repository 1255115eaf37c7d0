// The parser of product files: TOML text to ProductDescription.
#pragma once

#include <products/reader/productdescription.h>

struct ParsedProduct {
    ProductDescription product;
    std::vector<std::filesystem::path> files;  // the product's file and its string files
};

// Throws ProductError.
ParsedProduct ParseProduct(const std::filesystem::path& file);
