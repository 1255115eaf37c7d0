// The parser of product files: TOML text to ProductDescription.
#pragma once

#include <products/reader/productdescription.h>

// Throws ProductError.
ProductDescription ParseProduct(const std::filesystem::path& file);
