// Notifications of the data model to its observers. Defined wholly here: observers ask for the run-time type.
#pragma once

#include <mvcore/datamodelids.h>
#include <mvutil/observer.h>

#include <memory>
#include <utility>
#include <vector>

class EventNotification final : public INotification {
public:
    explicit EventNotification(EventId event) : event_(event) {}
    EventId GetEventId() const noexcept { return event_; }

private:
    EventId event_;
};

// One change of one feature.
class FeatureChangeNotification final : public INotification {
public:
    FeatureChangeNotification(FeatureChangeId change, SettingsInstanceId settings, const FeatureIdWithContext& setting,
                              const FeatureIdWithContext& registered)
        : change_(change), settings_(settings), setting_(setting), registered_(registered) {}

    FeatureChangeId GetFeatureChangeId() const noexcept { return change_; }
    SettingsInstanceId GetSettingsInstanceId() const noexcept { return settings_; }
    // The feature that changed, with all the lists that hold it.
    const FeatureIdWithContext& GetSettingIdWithContext() const noexcept { return setting_; }
    // As the observer registered: that feature, or a list that holds it.
    const FeatureIdWithContext& GetOriginallyRegisteredSetting() const noexcept { return registered_; }

private:
    FeatureChangeId change_;
    SettingsInstanceId settings_;
    FeatureIdWithContext setting_;
    FeatureIdWithContext registered_;
};

// The changes that concern one observer, in the order in which they happened.
class NotificationBundle final : public INotification {
public:
    void Add(std::unique_ptr<INotification> item) { items_.push_back(std::move(item)); }
    std::size_t GetNumItems() const noexcept { return items_.size(); }
    INotification& GetItem(std::size_t index) const { return *items_.at(index); }

private:
    std::vector<std::unique_ptr<INotification>> items_;
};
