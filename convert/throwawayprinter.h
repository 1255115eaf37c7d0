// A printer of a product in the store that is open, for work that needs none of the user's.
#pragma once

#include <mvutil/cxstring.h>
#include <products/reader/productdescription.h>

#include <filesystem>

// The product's model as a printer can be called.
CXString NameThrowawayPrinter(const ProductDescription& product);
// Installs the product under that name, complete with its caches and with a driver of its own, so that products of one
// model do not meet. Throws what LoadProduct and InstallPrinter throw.
CXString InstallThrowawayPrinter(const std::filesystem::path& productFile);
void InstallThrowawayPrinter(const std::filesystem::path& productFile, const CXString& name);
