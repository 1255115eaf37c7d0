// The product whose texts the calling thread loads.
#pragma once

#include <products/reader/productdescription.h>

#include <memory>

// The product last given to TextResourceLoader::Initialize on this thread; null when there is none.
std::shared_ptr<const ProductDescription> GetCurrentProduct();
