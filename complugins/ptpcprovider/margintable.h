// The margins of a printer's pages: from the product's margin file, else from the printer's device settings.
#pragma once

#include <marginfile.h>

class ProductData;

// The margins of a page of that size in micrometres. Of several entries for B5 paper, the paper number decides.
PageMargins GetPageMargins(ProductData& product, HANDLE printer, WORD paperNumber, LONG width, LONG height);
