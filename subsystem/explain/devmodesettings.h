// The settings in the public fields of a DEVMODE, by the names that people use.
#pragma once

#include <products/reader/productdescription.h>
#include <subsystem/devmodefile.h>

#include <span>
#include <string>
#include <vector>

#include "paperwords.h"

// A setting of the public fields, with the keyword under which a ticket may hold it.
struct DevmodeSettingKind {
    const char* name;     // for people
    const char* field;    // the member of DEVMODEW that it lies in, or the first of them
    DWORD flags;          // of dmFields: any of them says that the setting counts
    const char* carrier;  // the Print Schema's keyword for it; null when the core driver writes none
};
std::span<const DevmodeSettingKind> GetDevmodeSettingKinds();
// The kind that the keyword carries, or null.
const DevmodeSettingKind* FindDevmodeSettingKind(std::string_view carrier);

// The setting's value for people; empty when it does not count.
std::string DescribeDevmodeSetting(const DEVMODEW& devmode, const DevmodeSettingKind& kind, const PrinterPapers& papers,
                                   const ProductDescription& product);
