// ModelIntegration: the face that a model shows to its data sources.
#pragma once

#include <mvcore/integration.h>

#include "modelparts.h"

class ModelIntegration final : public IntegrationInterface, private IntegrationServices {
public:
    explicit ModelIntegration(ModelParts& parts) noexcept : parts_(parts) {}
    IntegrationServices& GetServices() override { return *this; }

private:
    void ListFeaturesPresent(FeatureId parent, std::vector<FeatureId>& features) override;
    void ListOptionValues(const FeatureIdWithContext& feature, std::vector<ValueId>& values) override;
    void ListResolutions(const FeatureIdWithContext& feature, std::vector<Resolution>& resolutions) override;
    bool GetIntegerRange(const FeatureIdWithContext& feature, LONG& minimum, LONG& maximum) override;
    bool GetDimensionRange(const FeatureIdWithContext& feature, Dimension& minimum, Dimension& maximum) override;
    MediaHandler& GetMediaHandler() override { return parts_.media; }
    bool TestFeature(FeatureId parent, FeatureId feature, int state) override;
    bool TestFeature(const FeatureIdWithContext& feature) override;
    void AddOptionValues(const FeatureIdWithContext& feature, const std::vector<ValueId>& values, int mode) override;
    void DeclareFeaturesPresent(FeatureId parent, const std::vector<FeatureId>& features) override;
    void DeclareFeaturesOfUser(const std::vector<FeatureId>& features) override;
    void GetRootListOfFeatures(ListOfFeaturesRef& features) override;
    CapabilitiesNode& GetCapabilitiesNode(const FeatureIdWithContext& feature) override;
    void SetResolutions(const FeatureIdWithContext& feature, const std::vector<Resolution>& resolutions) override;
    void SetRange(const FeatureIdWithContext& feature, LONG minimum, LONG maximum) override;
    void SetUsable(const FeatureIdWithContext& feature, bool usable) override;

    Feature& Require(const FeatureIdWithContext& id, FeatureKind kind, const WCHAR* methodName) const;

    ModelParts& parts_;
};

// The node of a feature; one that says so of a feature that the model does not have.
CapabilitiesNode& GetNode(const ModelParts& parts, const FeatureIdWithContext& feature);
