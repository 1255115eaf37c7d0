// A data model of a product in a store of its own, a data source that does as it is bidden, and an observer that writes
// down what it is notified of.
#pragma once

#include <support/printerfixture.h>

#include <mvcore/datamodelmanager.h>
#include <mvcore/notifications.h>

#include "testproduct.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

// 477/210/175
inline FeatureIdWithContext Id(const std::vector<DWORD>& path) {
    FeatureIdWithContext id{FeatureId(path.front())};
    for (std::size_t level = 1; level < path.size(); ++level) id.PushFeature(FeatureId(path[level]));
    return id;
}

inline std::string TextOf(const FeatureIdWithContext& id) {
    std::string text;
    for (const DWORD step : id.GetPath()) text += (text.empty() ? "" : "/") + std::to_string(step);
    return text;
}

inline Dimension Micrometres(LONG length) { return Dimension(length, Dimension::Micrometres); }

class TestSource final : public DataSource {
public:
    explicit TestSource(std::function<void(IntegrationServices&)> integrate) : integrate_(std::move(integrate)) {}

    std::string calls;
    std::function<void(FeatureServices&)> useServices;

private:
    void RegisterForIntegrateSourceDataChanges(DataModelObserverInterfaces&) override { calls += "a"; }
    void IntegrateSourceData(IntegrationInterface& integration) override {
        calls += "b";
        integrate_(integration.GetServices());
    }
    void UnregisterForIntegrateSourceDataChanges(DataModelObserverInterfaces&) override { calls += "e"; }
    void RegisterForCurrentSettingsChanges(DataModelObserverInterfaces&) override { calls += "c"; }
    void SetFeatureServices(FeatureServices& services) override {
        calls += "d";
        if (useServices) useServices(services);
    }
    void UnregisterForCurrentSettingsChanges(DataModelObserverInterfaces&) override { calls += "f"; }

    std::function<void(IntegrationServices&)> integrate_;
};

class TestModel {
public:
    explicit TestModel(std::vector<DataSource*> sources = {}) : TestModel(GetTestProductFile(), std::move(sources)) {}
    TestModel(const std::filesystem::path& productFile, std::vector<DataSource*> sources)
        : manager_(1, CXString::FromUtf8(productFile.string()), ProductStringLoader(0), false, true) {
        manager_.PopulateFromSourceData(sources);
    }

    DataModelManager& GetManager() { return manager_; }
    FeatureServices& GetServices() { return manager_.GetFeatureServices(); }
    IntegrationServices& GetIntegration() { return manager_.GetIntegrationInterface().GetServices(); }
    ListOfFeaturesRef GetRoot() {
        ListOfFeaturesRef root;
        GetServices().GetRootListOfFeatures(root);
        return root;
    }
    ListOfFeaturesRef GetTray(std::size_t index) {
        return GetServices().GetListOfValues(FeatureId(192)).GetListOfFeatures(index);
    }
    DWORD GetOption(const FeatureIdWithContext& feature) {
        return GetServices().GetOptionFeature(feature).GetValue().GetValueEnum();
    }
    bool SetOption(const FeatureIdWithContext& feature, DWORD value) {
        return GetServices().GetOptionFeature(feature).SetValue(ValueId(value));
    }
    // -1 when there is no value.
    LONG GetInteger(DWORD feature) {
        LONG value = -1;
        GetServices().GetIntegerFeature(FeatureId(feature)).GetValue(value, DataModelIds::kCurrentValue);
        return value;
    }

private:
    DataModelManager manager_;
};

class TestObserver : public IObserver {
public:
    // One text a notification: "event 21032", or the changes as "23002 22003 46 <- 46", comma-separated.
    std::vector<std::string> told;
    std::function<void()> onTold;

    void Register(FeatureServices& services, DWORD settings, const FeatureIdWithContext& feature,
                  DWORD change = DataModelIds::kContentsChanged) {
        services.RegisterFeatureChangeObserver(this, SettingsInstanceId(settings), feature, FeatureChangeId(change), 1);
    }

    void OnNotification(INotification& notification) override {
        if (const auto* event = dynamic_cast<EventNotification*>(&notification)) {
            told.push_back("event " + std::to_string(event->GetEventId().GetId()));
        } else {
            const auto& bundle = dynamic_cast<NotificationBundle&>(notification);
            std::string text;
            for (std::size_t index = 0; index < bundle.GetNumItems(); ++index) {
                const auto& change = dynamic_cast<FeatureChangeNotification&>(bundle.GetItem(index));
                text += (index == 0 ? "" : ", ") + std::to_string(change.GetSettingsInstanceId().GetId()) + " " +
                        std::to_string(change.GetFeatureChangeId().GetId()) + " " +
                        TextOf(change.GetSettingIdWithContext()) + " <- " +
                        TextOf(change.GetOriginallyRegisteredSetting());
            }
            told.push_back(text);
        }
        if (onTold) onTold();
    }
};
