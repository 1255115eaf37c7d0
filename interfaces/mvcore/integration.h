// What a data model hands to its data sources: integration services, and registration for changes.
#pragma once

#include <mvcore/features.h>
#include <mvcore/mediahandler.h>
#include <mvutil/observer.h>

#include <vector>

// Operations that list replace the contents of their out argument; for a feature that the model does not have, or that
// is of another kind, they give nothing (or false). Operations that change what a feature offers throw
// ExceptionUnsupportedFeatureRequest there. Once the model is filled, observers are notified of such changes.
class IntegrationServices {
public:
    // Ids of the features at any depth under that one; of all under feature 2.
    virtual void ListFeaturesPresent(FeatureId parent, std::vector<FeatureId>& features) = 0;
    virtual void ListOptionValues(const FeatureIdWithContext& feature, std::vector<ValueId>& values) = 0;
    virtual void ListResolutions(const FeatureIdWithContext& feature, std::vector<Resolution>& resolutions) = 0;
    virtual bool GetIntegerRange(const FeatureIdWithContext& feature, LONG& minimum, LONG& maximum) = 0;
    virtual bool GetDimensionRange(const FeatureIdWithContext& feature, Dimension& minimum, Dimension& maximum) = 0;
    virtual MediaHandler& GetMediaHandler() = 0;
    // State 1: the feature is present under the parent and, if it is a boolean one, holds true. State 0: it is not so.
    virtual bool TestFeature(FeatureId parent, FeatureId feature, int state) = 0;
    // The feature is present and nothing bars it now.
    virtual bool TestFeature(const FeatureIdWithContext& feature) = 0;
    // Mode 1 adds the values that are not offered yet; mode 0 offers these alone.
    virtual void AddOptionValues(const FeatureIdWithContext& feature, const std::vector<ValueId>& values, int mode) = 0;
    // Makes features of the driver family's present under a list (2: each where the family keeps it).
    virtual void DeclareFeaturesPresent(FeatureId parent, const std::vector<FeatureId>& features) = 0;
    // Features whose values are remembered for the user: no document's settings carry them.
    virtual void DeclareFeaturesOfUser(const std::vector<FeatureId>& features) = 0;
    virtual void GetRootListOfFeatures(ListOfFeaturesRef& features) = 0;
    virtual CapabilitiesNode& GetCapabilitiesNode(const FeatureIdWithContext& feature) = 0;

    virtual void SetResolutions(const FeatureIdWithContext& feature, const std::vector<Resolution>& resolutions) = 0;
    virtual void SetRange(const FeatureIdWithContext& feature, LONG minimum, LONG maximum) = 0;  // or micrometres
    virtual void SetUsable(const FeatureIdWithContext& feature, bool usable) = 0;

protected:
    ~IntegrationServices() = default;
};

class IntegrationInterface {
public:
    virtual IntegrationServices& GetServices() = 0;

protected:
    ~IntegrationInterface() = default;
};

// Registration for changes. An observer is notified of one bundle with the changes that it registered for, once for
// every change made alone and once for all of a mass set; a feature that holds its old value again is none of them.
// What an observer changes while it is notified goes into a bundle of its own. Registering the same twice counts once.
// An observer must unregister before its life ends.
class DataModelObserverInterfaces {
public:
    // For a list of features: also changes of all that it holds. The number is not used.
    virtual void RegisterFeatureChangeObserver(IObserver* observer, SettingsInstanceId settings,
                                               const FeatureIdWithContext& feature, FeatureChangeId change,
                                               int number) = 0;
    virtual void UnregisterFeatureChangeObserver(IObserver* observer) = 0;  // all its registrations for changes

protected:
    ~DataModelObserverInterfaces() = default;
};
