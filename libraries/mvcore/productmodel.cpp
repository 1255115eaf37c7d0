// ProductModel: the bounded cache of them.
#include "productmodel.h"

#include <products/reader/productdescription.h>

#include "productsource.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <shared_mutex>

namespace {

constexpr std::size_t kMostKept = 16;

std::shared_mutex keptMutex;
std::deque<std::shared_ptr<const ProductModel>> kept;  // the newest last

std::shared_ptr<const ProductModel> FindKept(const ProductDescription* product) {
    const auto found = std::find_if(kept.begin(), kept.end(),
                                    [&](const auto& candidate) { return candidate->product.get() == product; });
    return found == kept.end() ? nullptr : *found;
}

}  // namespace

ProductModel::ProductModel(std::shared_ptr<const ProductDescription> description)
    : product(std::move(description)), loader(product->controllerFamily, CXString::FromUtf8(product->modelName)) {
    parts.changes.SetSilent(true);
    AddProduct(parts, *product);
}

std::shared_ptr<const ProductModel> GetProductModel(const std::shared_ptr<const ProductDescription>& product) {
    {
        const std::shared_lock lock(keptMutex);
        if (auto found = FindKept(product.get())) return found;
    }
    auto made = std::make_shared<const ProductModel>(product);
    const std::scoped_lock lock(keptMutex);
    if (auto found = FindKept(product.get())) return found;
    kept.push_back(made);
    if (kept.size() > kMostKept) kept.pop_front();
    return made;
}
