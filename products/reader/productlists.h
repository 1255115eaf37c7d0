// The lists of a product file (papers, trays, media types, resolutions), its DEVMODE defaults, and what follows from
// them.
#pragma once

#include "tomlsection.h"

// Each throws ProductError.
void ReadProductLists(TomlSection& root, ProductDescription& product);
void ReadDevmodeDefaults(TomlSection& section, ProductDescription& product);  // after the lists
ProductLimits DeriveLimits(const ProductDescription& product);
