// ModelIntegration: listing, testing, declaring and offering.
#include "modelintegration.h"

#include <products/reader/featurecatalogue.h>

#include <algorithm>

namespace {

constexpr int kAddValues = 1;

class AbsentNode final : public CapabilitiesNode {
public:
    bool IsSupported() const override { return false; }
    bool IsRequired() const override { return false; }
    bool IsUsable() const override { return false; }
};

void ListFeatures(const FeatureList& list, std::vector<FeatureId>& features) {
    for (const auto& feature : list.GetFeatures()) {
        features.push_back(feature->GetFeatureId());
        if (feature->GetKind() == FeatureKind::List) ListFeatures(feature->GetList(), features);
    }
}

// Whether the feature at the end of the path stands somewhere below the parent.
bool IsUnder(std::span<const DWORD> path, FeatureId parent) {
    return parent.GetId() == facts::feature::kRoot ||
           std::find(path.begin(), path.end() - 1, parent.GetId()) != path.end() - 1;
}

Feature& RequireFound(Feature* found, const FeatureIdWithContext& id, const WCHAR* methodName) {
    if (!found) ThrowUnsupportedFeature(id.GetFeatureId(), methodName);
    return *found;
}

}  // namespace

CapabilitiesNode& GetNode(const ModelParts& parts, const FeatureIdWithContext& feature) {
    static AbsentNode absent;
    Feature* found = parts.root.Find(feature);
    if (found) return *found;
    return absent;
}

void ModelIntegration::ListFeaturesPresent(FeatureId parent, std::vector<FeatureId>& features) {
    features.clear();
    if (parent.GetId() == facts::feature::kRoot)
        ListFeatures(parts_.root, features);
    else if (const Feature* list = FindFeature(parts_, parent, FeatureKind::List))
        ListFeatures(list->GetList(), features);
}

void ModelIntegration::ListOptionValues(const FeatureIdWithContext& feature, std::vector<ValueId>& values) {
    values.clear();
    const Feature* found = FindFeature(parts_, feature, FeatureKind::Option);
    if (!found) return;
    values.reserve(found->GetOptions().GetListed().size());
    for (const DWORD value : found->GetOptions().GetListed()) values.emplace_back(value, &parts_.names);
}

void ModelIntegration::ListResolutions(const FeatureIdWithContext& feature, std::vector<Resolution>& resolutions) {
    resolutions.clear();
    if (const Feature* found = FindFeature(parts_, feature, FeatureKind::Resolution))
        resolutions = found->GetResolutions();
}

bool ModelIntegration::GetIntegerRange(const FeatureIdWithContext& feature, LONG& minimum, LONG& maximum) {
    const Feature* found = FindFeature(parts_, feature, FeatureKind::Integer);
    if (!found || !found->HasRange()) return false;
    minimum = found->GetMinimum();
    maximum = found->GetMaximum();
    return true;
}

bool ModelIntegration::GetDimensionRange(const FeatureIdWithContext& feature, Dimension& minimum, Dimension& maximum) {
    const Feature* found = FindFeature(parts_, feature, FeatureKind::Dimension);
    if (!found || !found->HasRange()) return false;
    minimum = Dimension(found->GetMinimum(), Dimension::Micrometres);
    maximum = Dimension(found->GetMaximum(), Dimension::Micrometres);
    return true;
}

bool ModelIntegration::TestFeature(FeatureId parent, FeatureId feature, int state) {
    const Feature* found = parts_.root.Find(feature);
    bool holds = found && IsUnder(found->GetPath(), parent);
    if (holds && found->GetKind() == FeatureKind::Boolean)
        holds = found->GetEffective().value_or(FeatureValue()).number;
    return holds == (state != 0);
}

bool ModelIntegration::TestFeature(const FeatureIdWithContext& feature) {
    const Feature* found = parts_.root.Find(feature);
    return found && found->IsUsable();
}

Feature& ModelIntegration::Require(const FeatureIdWithContext& id, FeatureKind kind, const WCHAR* methodName) const {
    return RequireFound(FindFeature(parts_, id, kind), id, methodName);
}

void ModelIntegration::AddOptionValues(const FeatureIdWithContext& feature, const std::vector<ValueId>& values,
                                       int mode) {
    Feature& found = Require(feature, FeatureKind::Option, W("IntegrationServices::AddOptionValues"));
    std::vector<DWORD> numbers;
    numbers.reserve(values.size());
    for (const ValueId& value : values) numbers.push_back(value.GetValueEnum());
    if (mode == kAddValues)
        found.AddOptions(numbers);
    else
        found.ReplaceOptions(numbers);
}

void ModelIntegration::DeclareFeaturesPresent(FeatureId parent, const std::vector<FeatureId>& features) {
    for (const FeatureId feature : features) {
        const std::vector<DWORD> path = GetCataloguePath(feature.GetId());
        if (path.empty() || !IsUnder(path, parent))
            ThrowUnsupportedFeature(feature, W("IntegrationServices::DeclareFeaturesPresent"));
        parts_.root.Declare(path);
    }
}

void ModelIntegration::DeclareFeaturesOfUser(const std::vector<FeatureId>& features) {
    for (const FeatureId feature : features) {
        constexpr const WCHAR* kMethod = W("IntegrationServices::DeclareFeaturesOfUser");
        RequireFound(parts_.root.Find(feature), feature, kMethod).SetOfUser();
    }
}

void ModelIntegration::GetRootListOfFeatures(ListOfFeaturesRef& features) { features = ListOfFeaturesRef(parts_.root); }

CapabilitiesNode& ModelIntegration::GetCapabilitiesNode(const FeatureIdWithContext& feature) {
    return GetNode(parts_, feature);
}

void ModelIntegration::SetResolutions(const FeatureIdWithContext& feature, const std::vector<Resolution>& resolutions) {
    Require(feature, FeatureKind::Resolution, W("IntegrationServices::SetResolutions")).SetResolutions(resolutions);
}

void ModelIntegration::SetRange(const FeatureIdWithContext& feature, LONG minimum, LONG maximum) {
    Feature* found = parts_.root.Find(feature);
    if (!found || (found->GetKind() != FeatureKind::Integer && found->GetKind() != FeatureKind::Dimension))
        ThrowUnsupportedFeature(feature.GetFeatureId(), W("IntegrationServices::SetRange"));
    found->SetRange(minimum, maximum);
}

void ModelIntegration::SetUsable(const FeatureIdWithContext& feature, bool usable) {
    RequireFound(parts_.root.Find(feature), feature, W("IntegrationServices::SetUsable")).SetUsable(usable);
}
