// The product description that a printer's driver names.
#pragma once

#include <mvutil/printdriver.h>
#include <products/reader/productdescription.h>

#include <exception>
#include <filesystem>
#include <memory>

// The driver's data file, as the host's file functions take it. Throws ExceptionPrintDriverFailure.
inline std::filesystem::path GetProductFileOfPrinter(HANDLE printer) {
    CXString path = PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer);
    path.Replace(W("\\"), W("/"));
    return path.AsWideString();
}

// Null when the printer has no readable product.
inline std::shared_ptr<const ProductDescription> LoadProductOfPrinter(HANDLE printer) noexcept {
    try {
        return LoadProduct(GetProductFileOfPrinter(printer));
    } catch (const std::exception&) {
        return nullptr;
    }
}
