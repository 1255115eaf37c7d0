// InstalledPrinter: an open printer with the product that it was made of.
#pragma once

#include <mvutil/cxstring.h>
#include <products/reader/productdescription.h>
#include <spooler/printerlist.h>

#include <memory>

class InstalledPrinter {
public:
    // Throws NotFoundError for a printer that is not installed, OperationError when it has no driver with a data file,
    // and ProductError when that is no product description.
    explicit InstalledPrinter(const CXString& name);

    HANDLE GetHandle() const noexcept { return handle_.Get(); }
    const CXString& GetName() const noexcept { return name_; }
    const CXString& GetPort() const noexcept { return port_; }
    const std::shared_ptr<const ProductDescription>& GetProduct() const noexcept { return product_; }

private:
    CXString name_;
    UniquePrinter handle_;
    CXString port_;
    std::shared_ptr<const ProductDescription> product_;
};

// Opens the printer. Throws NotFoundError, which says what to do, when it is not installed.
UniquePrinter OpenInstalledPrinter(const CXString& name);

// Whether the core driver of the product is the one for PostScript.
bool IsPostScript(const ProductDescription& product);
