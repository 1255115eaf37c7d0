// Makes DEVMODEs as the driver would: public fields from the product's defaults, the private block behind the core
// driver's own part.
#pragma once

#include <products/reader/productdescription.h>
#include <widetext.h>

#include <string>
#include <utility>
#include <vector>

#include "devmodefile.h"

// Settings beyond the product's defaults, in the order in which they were given.
struct DevmodeSettings {
    std::vector<std::pair<std::string, std::string>> fields;      // member of DEVMODEW, value
    std::vector<std::pair<std::string, std::string>> attributes;  // path of feature ids, value
};

// Throws InputError when a setting cannot be, or when the settings do not fit in the private block.
DevmodeBuffer MakeDevmode(const ProductDescription& product, WideStringView printerName,
                          const DevmodeSettings& settings);

// Puts the printer's capability caches into the DEVMODE's private block, as far as the settings keep room to grow.
// Throws OperationError when that fails.
void ExportCapabilityCaches(HANDLE printer, DevmodeBuffer& devmode);
