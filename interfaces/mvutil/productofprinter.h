// The product description that a printer's driver names.
#pragma once

#include <mvutil/cxstring.h>

#include <memory>

struct ProductDescription;

// Both throw std::bad_alloc and nothing else: a product that memory does not suffice for is not one that is missing.

// The product in a driver's data file; null when there is no readable one.
MVUTIL_API std::shared_ptr<const ProductDescription> LoadProductFile(CXString path);
// Null when the printer has no readable product.
MVUTIL_API std::shared_ptr<const ProductDescription> LoadProductOfPrinter(HANDLE printer);
