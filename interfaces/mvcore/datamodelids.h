// Ids of the data model: numbers that every library of the driver family agrees on.
#pragma once

#include <windows.h>

namespace DataModelIds {

// A controller family, or any value of an option feature.
enum Value : DWORD {
    kNotSet = 5001,  // not set, or automatic; also the controller family of an unbound provider
    kPageSizeLetter = 6430,
    kPageSizeA4 = 6436,
    kUnitsMillimetres = 7491,
    kUnitsInches = 7492,
    kControllerFamily8430 = 8430,
    kControllerFamily8431 = 8431,
    kControllerFamily8432 = 8432,
    kControllerFamily8433 = 8433,
    kControllerFamily8434 = 8434,
};

}  // namespace DataModelIds

// Kinds of page size.
enum class PageSizeTypeEnum : DWORD {
    Common = 25001,
    Other = 25002,
    DriverCustom = 25003,
    MappedForm = 25004,
    UserForm = 25005,
    Hidden = 25006,
    PostScriptCustom = 25007,
    Custom = 25008,
};

// A value of an option feature.
class ValueId {
public:
    explicit ValueId(DWORD value) noexcept : value_(value) {}
    DWORD GetValueEnum() const noexcept { return value_; }

private:
    DWORD value_;
};
