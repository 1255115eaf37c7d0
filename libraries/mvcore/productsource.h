// Fills a model with what the product description and the user's custom paper sizes tell.
#pragma once

#include "modelparts.h"

struct ProductDescription;

void AddProduct(ModelParts& parts, const ProductDescription& product);
// Page sizes of type DriverCustom, offered by the feature of page sizes. Sizes that no paper has are left out.
void AddUserPaperSizes(ModelParts& parts);
