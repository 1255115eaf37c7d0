// The printer as a data source.
#pragma once

#include <mvcore/deviceinterface.h>

// The caller destroys it. The product may be null and is not kept.
MvDevice* MakeDevice(const CXString& printerName, const ProductData* product);
