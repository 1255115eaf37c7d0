// The product description that a printer's driver names.
#include <mvutil/productofprinter.h>

#include <mvutil/morvaneexception.h>
#include <mvutil/printdriver.h>
#include <products/reader/productdescription.h>

#include "operationmemory.h"

#include <exception>
#include <new>

std::shared_ptr<const ProductDescription> LoadProductFile(CXString path) {
    try {
        path.Replace(W("\\"), W("/"));
        const WideString& file = path.AsWideString();
        return RememberedOr(&OperationMemory::products, file, [&] { return LoadProduct(file); });
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        return nullptr;
    }
}

std::shared_ptr<const ProductDescription> LoadProductOfPrinter(HANDLE printer) {
    try {
        return LoadProductFile(PrintDriver::GetMorvaneDriverDataFilePathFromHandle(printer));
    } catch (const MorvaneException&) {
        return nullptr;
    }
}
