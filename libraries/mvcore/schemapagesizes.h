// The page sizes that mvcoreC0 hands out.
#pragma once

#include <mvcore/mvcorelibrary.h>

// A new dictionary over the Print Schema's whole list; the caller destroys it.
MvPageSizeDictionary* MakePageSizeDictionary();
