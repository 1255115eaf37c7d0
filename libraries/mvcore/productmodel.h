// ProductModel: what every data model of one product starts from.
#pragma once

#include <mvutil/textresources.h>

#include "modelparts.h"

#include <memory>

struct ProductDescription;

// A model filled from the product alone. It changes no more, so many threads may read it.
struct ProductModel {
    explicit ProductModel(std::shared_ptr<const ProductDescription> description);

    const std::shared_ptr<const ProductDescription> product;
    const ProductStringLoader loader;
    ModelParts parts{loader};
};

// Made once per parsed product; safe for many threads.
std::shared_ptr<const ProductModel> GetProductModel(const std::shared_ptr<const ProductDescription>& product);
