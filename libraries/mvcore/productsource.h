// Fills a model with what the product description and the user's custom paper sizes hold.
#pragma once

#include "modelparts.h"

struct ProductDescription;

void AddProduct(ModelParts& parts, const ProductDescription& product);
// Page sizes of type DriverCustom, offered by the feature of page sizes. Sizes that no paper has are left out. One that
// has no paper number yet, or one that another has, gets one, which is stored with it.
void AddUserPaperSizes(ModelParts& parts);
