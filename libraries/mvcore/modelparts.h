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

    ValueNames names;
    ChangeHub changes;
    ModelContext context{changes, names};
    FeatureList root{context, {}, 0};
    ModelMediaHandler media{names};
};

// The feature of that kind, or null.
inline Feature* FindFeature(const ModelParts& parts, const FeatureIdWithContext& id, FeatureKind kind) {
    Feature* feature = parts.root.Find(id);
    return feature && feature->GetKind() == kind ? feature : nullptr;
}
