// What special pages do not allow.
#include "specialpages.h"

namespace {

constexpr FeatureId kSides(facts::feature::kSides);
constexpr FeatureId kMediaType(facts::feature::kMediaType);
constexpr LONG kOneSided = facts::value::kOneSided;
constexpr LONG kTransparency = facts::value::kTransparency;

LONG GetOption(const Feature& feature) { return feature.GetEffective().value_or(FeatureValue()).number; }

}  // namespace

void ModelSpecialPages::MakePrintInstructionAdjustments() {
    Feature* sides = FindFeature(parts_, kSides, FeatureKind::Option);
    const Feature* media = FindFeature(parts_, kMediaType, FeatureKind::Option);
    // A transparency that passes the fuser twice melts.
    if (sides && media && GetOption(*media) == kTransparency) sides->SetValue({.number = kOneSided});
}
