// Texts by number: the utility library's own table, and the current product's texts.
#include <mvutil/textresources.h>

#include <mvutil/productofprinter.h>

#include <perthread.h>

#include "currentproduct.h"

namespace {

struct TextResource {
    DWORD id;
    const WCHAR* text;
};
// clang-format off
constexpr TextResource kTexts[] = {
    {  103, W("Custom Size")},
    {10133, W("Automatically Select")},
    {11103, W("%i x %i dpi")},                    // cross-feed, feed; dots per inch
    {11104, W("%i x %i dots per centimeter")},    // cross-feed, feed
    {31591, W("envelope")},                       // as form names spell it
    {32009, W("env")},
};
// clang-format on

// The product last given to Initialize on the calling thread.
std::shared_ptr<const ProductDescription>& CurrentProduct() {
    static PerThread<std::shared_ptr<const ProductDescription>> products;
    return products.Get();
}

}  // namespace

std::shared_ptr<const ProductDescription> GetCurrentProduct() { return CurrentProduct(); }

void TextResourceLoader::Initialize(HANDLE printer, bool) {
    // Descriptions are kept parsed, and parsed anew when a file has changed, so there is nothing to force.
    CurrentProduct() = LoadProductOfPrinter(printer);
}

CXString TextResourceLoader::LoadStringW(DWORD id) {
    for (const TextResource& resource : kTexts)
        if (resource.id == id) return resource.text;
    return CXString();
}

CXString ProductStringLoader::LoadStringW(DWORD id) const {
    if (!CurrentProduct()) return CXString();
    const auto found = CurrentProduct()->strings.find(id);
    return found == CurrentProduct()->strings.end() ? CXString() : CXString::FromUtf8(found->second);
}

CXString ProductStringLoader::GetStringForValue(DWORD valueId) const {
    const auto find = [&](const auto& list) {
        for (const auto& entry : list)
            if (entry.value == valueId) return CXString::FromUtf8(entry.name);
        return CXString();
    };
    if (!CurrentProduct()) return CXString();
    const CXString mediaType = find(CurrentProduct()->mediaTypes);
    return mediaType.IsEmpty() ? find(CurrentProduct()->trays) : mediaType;
}
