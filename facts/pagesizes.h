// Kinds of page size, as the data model numbers them.
#pragma once

namespace facts {

enum class PageSizeType : unsigned {
    Common = 25001,        // has a number of the system
    Other = 25002,         // has none
    DriverCustom = 25003,  // a driver's or user's own
    MappedForm = 25004,    // a form with the dimensions of a keyword
    UserForm = 25005,
    Hidden = 25006,
    PostScriptCustom = 25007,
    Custom = 25008,
};

}  // namespace facts
