// The features that the driver family knows: what each is called, its kind, and where it is nested.
#pragma once

#include <facts/features.h>
#include <products/reader/mvprodapi.h>

#include <span>
#include <string>
#include <vector>

struct CatalogueFeature {
    // What a feature's presence and values follow from.
    enum class Source {
        Features,  // the product's own list of features
        Lists,     // its papers, trays, media types or resolutions
        User,      // the user's preferences
    };

    struct Range {
        DWORD first, last;
    };

    MVPROD_API std::string GetName() const;  // one without a name of its own by its number

    DWORD id;
    const char* name;  // for people; null when it has none
    DWORD parent;      // the list feature that holds it; 0 for the root
    facts::FeatureKind kind;
    Source source;
    // Ids of the values that an option feature may offer; what one of a dimension or integer must lie in, in
    // micrometres or as it is (both 0: any).
    Range values;
    bool isProtected = false;  // a secret of the user's: its value is not shown
};

MVPROD_API std::span<const CatalogueFeature> GetFeatureCatalogue() noexcept;  // ascending by id
// The feature of that number, or null when there is none.
MVPROD_API const CatalogueFeature* FindCatalogueFeature(DWORD id) noexcept;
// Numbers from the root to the feature, itself included; empty when the catalogue does not have it.
MVPROD_API std::vector<DWORD> GetCataloguePath(DWORD id);
