// The product description that a printer's driver names.
#pragma once

#include <mvutil/morvaneexception.h>
#include <mvutil/printdriver.h>
#include <products/reader/productdescription.h>

#include <exception>
#include <memory>
#include <new>

// Both throw std::bad_alloc and nothing else: a product that memory does not suffice for is not one that is missing.

// The product in a driver's data file; null when there is no readable one.
inline std::shared_ptr<const ProductDescription> LoadProductFile(CXString path) {
    try {
        path.Replace(W("\\"), W("/"));
        return LoadProduct(path.AsWideString());
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        return nullptr;
    }
}

// Null when the printer has no readable product.
inline std::shared_ptr<const ProductDescription> LoadProductOfPrinter(HANDLE printer) {
    try {
        return LoadProductFile(PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer));
    } catch (const MorvaneException&) {
        return nullptr;
    }
}
