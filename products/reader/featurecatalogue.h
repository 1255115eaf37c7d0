// The features that the driver family knows: which number is which kind of feature, and where it is nested.
#pragma once

#include <products/reader/mvprodapi.h>

#include <vector>

enum class ProductFeatureKind { Boolean, Integer, Option, String, Dimension, Resolution, List };

struct CatalogueFeature {
    // What a feature's presence and values follow from.
    enum class Source {
        Features,  // the product's own list of features
        Lists,     // its papers, trays, media types or resolutions
        User,      // the user's preferences
    };

    DWORD id;
    DWORD parent;  // the list feature that holds it; 0 for the root
    ProductFeatureKind kind;
    Source source;
    // Ids of the values that an option feature may offer; the range that one of a dimension or integer must lie in, in
    // micrometres or as it is (both 0: any).
    DWORD firstValue, lastValue;
};

// The feature of that number, or null when there is none.
MVPROD_API const CatalogueFeature* FindCatalogueFeature(DWORD id) noexcept;
// Numbers from the root to the feature, itself included; empty when the catalogue does not have it.
MVPROD_API std::vector<DWORD> GetCataloguePath(DWORD id);
