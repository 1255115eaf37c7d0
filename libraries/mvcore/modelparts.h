// ModelParts: what one data model is made of; everything else works on these.
#pragma once

#include "changehub.h"
#include "featurelist.h"
#include "modelmediahandler.h"
#include "valuenames.h"

struct ModelParts {
    explicit ModelParts(const ProductStringLoader& loader) : names(loader) {}
    ModelParts(const ModelParts&) = delete;
    ModelParts& operator=(const ModelParts&) = delete;

    // An empty model starts as that one, which changes no more and outlives it.
    void Follow(const ModelParts& pattern) {
        names.Follow(pattern.names);
        root.Follow(pattern.root);
        media.Follow(pattern.media);
    }

    ValueNames names;
    ChangeHub changes;
    ModelContext context{changes, names, root};
    FeatureList root{context, nullptr, 0};
    ModelMediaHandler media{names};
};

// The feature of that kind, or null.
inline Feature* FindFeature(const ModelParts& parts, const FeatureIdWithContext& id, FeatureKind kind) {
    Feature* feature = parts.root.Find(id);
    return feature && feature->GetKind() == kind ? feature : nullptr;
}
