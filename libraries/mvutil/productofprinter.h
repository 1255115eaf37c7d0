// The product description that a printer's driver names.
#pragma once

#include <mvutil/printdriver.h>
#include <products/reader/productdescription.h>

#include <exception>
#include <memory>

// The product in a driver's data file; null when there is no readable one.
inline std::shared_ptr<const ProductDescription> LoadProductFile(CXString path) noexcept {
    try {
        path.Replace(W("\\"), W("/"));
        return LoadProduct(path.AsWideString());
    } catch (const std::exception&) {
        return nullptr;
    }
}

// Null when the printer has no readable product.
inline std::shared_ptr<const ProductDescription> LoadProductOfPrinter(HANDLE printer) noexcept {
    try {
        return LoadProductFile(PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer));
    } catch (const std::exception&) {
        return nullptr;
    }
}
