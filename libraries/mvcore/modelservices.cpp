// ModelServices: forwards to the parts of the model.
#include "modelservices.h"

#include "modelintegration.h"
#include "mvjttranslator.h"

#include <stdexcept>

namespace {

class NoValues final : public MvListOfValues {
public:
    std::size_t GetNumItems() const override { return 0; }
    MvListOfFeatures& GetItem(std::size_t) override { throw std::out_of_range("a list of values without items"); }
};

}  // namespace

void ModelServices::RegisterEventObserver(IObserver* observer, EventId event, int /*number*/) {
    parts_.changes.RegisterEventObserver(observer, event);
}

void ModelServices::RegisterFeatureChangeObserver(IObserver* observer, SettingsInstanceId settings,
                                                  const FeatureIdWithContext& feature, FeatureChangeId change,
                                                  int number) {
    parts_.changes.RegisterFeatureChangeObserver(observer, settings, feature, change, number);
}

bool ModelServices::IsFeatureSupported(const FeatureIdWithContext& feature) {
    return parts_.root.Find(feature) != nullptr;
}

void ModelServices::GetRootListOfFeatures(ListOfFeaturesRef& features) { features = GetRoot(); }

CapabilitiesNode& ModelServices::GetCapabilitiesNode(const FeatureIdWithContext& feature) {
    return GetNode(parts_, feature);
}

ListOfValuesRef ModelServices::GetListOfValues(const FeatureIdWithContext& feature) {
    static NoValues none;
    Feature* found = FindFeature(parts_, feature, FeatureKind::List);
    return found ? ListOfValuesRef(*found) : ListOfValuesRef(none);
}

BooleanFeatureRef ModelServices::GetBooleanFeature(const FeatureIdWithContext& feature) {
    return GetRoot().GetBooleanFeature(feature);
}

IntegerFeatureRef ModelServices::GetIntegerFeature(const FeatureIdWithContext& feature) {
    return GetRoot().GetIntegerFeature(feature);
}

DimensionFeatureRef ModelServices::GetDimensionFeature(const FeatureIdWithContext& feature) {
    return GetRoot().GetDimensionFeature(feature);
}

OptionFeatureRef ModelServices::GetOptionFeature(const FeatureIdWithContext& feature) {
    return GetRoot().GetOptionFeature(feature);
}

StringFeatureRef ModelServices::GetStringFeature(const FeatureIdWithContext& feature) {
    return GetRoot().GetStringFeature(feature);
}

void ModelServices::GetAttributeBytesListTranslator(AttributeBytesListTranslator& translator, int kind, int settings,
                                                    int version) {
    if (kind != DataModelIds::kAttributeListTranslator || settings != DataModelIds::kDocumentSettings ||
        version != DataModelIds::kAttributeListVersion)
        throw std::invalid_argument("no attribute list translator of these numbers");
    translator = AttributeBytesListTranslator(listTranslator_);
}

void ModelServices::UnregisterFeatureChangeObserver(IObserver* observer) {
    parts_.changes.UnregisterFeatureChangeObserver(observer);
}

void ModelServices::UnregisterEventObserver(IObserver* observer) { parts_.changes.UnregisterEventObserver(observer); }

void ModelServices::RaiseEvent(EventId event) { parts_.changes.RaiseEvent(event); }

void ModelServices::BeginMassSet() { parts_.changes.Begin(); }

void ModelServices::EndMassSet() { parts_.changes.End(); }

MvjtTranslator* ModelServices::CreateMvjtTranslator(int kind) {
    if (kind != DataModelIds::kMvjtTranslator) throw std::invalid_argument("no translator of this number");
    return MakeMvjtTranslator(parts_);
}
