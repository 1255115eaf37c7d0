// ModelServices: the face that a model shows to its users and its owner.
#pragma once

#include <mvcore/featureservices.h>

#include "attributelisttranslator.h"
#include "modelparts.h"
#include "specialpages.h"

class ModelServices final : public DataModelFeatureServices {
public:
    explicit ModelServices(ModelParts& parts) noexcept : parts_(parts), listTranslator_(parts), specialPages_(parts) {}

    void RegisterEventObserver(IObserver* observer, EventId event, int number) override;
    void RegisterFeatureChangeObserver(IObserver* observer, SettingsInstanceId settings,
                                       const FeatureIdWithContext& feature, FeatureChangeId change,
                                       int number) override;
    bool IsFeatureSupported(const FeatureIdWithContext& feature) override;
    void GetRootListOfFeatures(ListOfFeaturesRef& features) override;
    CapabilitiesNode& GetCapabilitiesNode(const FeatureIdWithContext& feature) override;
    ListOfValuesRef GetListOfValues(const FeatureIdWithContext& feature) override;
    BooleanFeatureRef GetBooleanFeature(const FeatureIdWithContext& feature) override;
    IntegerFeatureRef GetIntegerFeature(const FeatureIdWithContext& feature) override;
    DimensionFeatureRef GetDimensionFeature(const FeatureIdWithContext& feature) override;
    OptionFeatureRef GetOptionFeature(const FeatureIdWithContext& feature) override;
    StringFeatureRef GetStringFeature(const FeatureIdWithContext& feature) override;
    void GetAttributeBytesListTranslator(AttributeBytesListTranslator& translator, int kind, int settings,
                                         int version) override;
    void UnregisterFeatureChangeObserver(IObserver* observer) override;
    void UnregisterEventObserver(IObserver* observer) override;
    void RaiseEvent(EventId event) override;
    void BeginMassSet() override;
    void EndMassSet() override;
    MvjtTranslator* CreateMvjtTranslator(int kind) override;
    SpecialPagesServices& GetSpecialPagesServices() override { return specialPages_; }

private:
    ListOfFeaturesRef GetRoot() { return ListOfFeaturesRef(parts_.root); }

    ModelParts& parts_;
    ModelAttributeListTranslator listTranslator_;
    ModelSpecialPages specialPages_;
};
