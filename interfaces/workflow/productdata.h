// ProductData: what a workflow library knows of its printer's product.
#pragma once

#include <mvutil/cxstring.h>

// The numbers are the driver family's own.
class ProductData {
public:
    static constexpr int kInfoColorCapability = 13;  // "color" or "monochrome"
    static constexpr int kPathMarginFile = 15;

    virtual DWORD GetControllerFamily() const = 0;     // a DataModelIds value; kNotSet when the product is unknown
    virtual CXString GetInfo(int infoType) const = 0;  // empty when the product does not list it
    virtual CXString GetPath(int kind) const = 0;      // full path; empty when the product does not list it
    virtual CXString GetModelName() const = 0;

protected:
    ~ProductData() = default;
};
