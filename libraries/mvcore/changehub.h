// ChangeHub: who wants to be notified of which change, what has changed, and the notifying of it.
#pragma once

#include <mvcore/integration.h>
#include <mvcore/notifications.h>

#include "feature.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

class ChangeHub final : public DataModelObserverInterfaces {
public:
    // Observers that answer each other's changes are stopped after that many bundles; further changes go untold.
    static constexpr int kMaximumRounds = 32;

    void RegisterFeatureChangeObserver(IObserver* observer, SettingsInstanceId settings,
                                       const FeatureIdWithContext& feature, FeatureChangeId change,
                                       int number) override;
    void UnregisterFeatureChangeObserver(IObserver* observer) override;
    void RegisterEventObserver(IObserver* observer, EventId event);
    // For every event, unless the observer asked for some of them.
    void RegisterSource(IObserver* observer);
    void UnregisterEventObserver(IObserver* observer);
    // An event raised while it is reported is not reported again.
    void RaiseEvent(EventId event);

    // Changes are reported when as many calls of End as of Begin were made. What an observer throws, End throws when
    // all observers are notified.
    void Begin() noexcept { ++depth_; }
    void End();
    void Abandon() noexcept;  // End without reporting; changes stay for the next one

    // While the model is filled nothing is reported, now or later.
    void SetSilent(bool silent) noexcept { silent_ = silent; }

    void NoteValue(Feature& feature, const std::optional<FeatureValue>& before);
    void NoteCapabilities(Feature& feature, FeatureChangeId change);

private:
    struct Registration {
        IObserver* observer;
        DWORD settings;
        DWORD change;
        FeatureIdWithContext feature;
    };
    struct Change {
        Feature* feature;
        DWORD settings;
        DWORD change;
        std::optional<FeatureValue> before;  // of a change of the value
    };
    struct Told {
        std::uint64_t order;  // of the observer
        IObserver* observer;
        std::unique_ptr<NotificationBundle> bundle;
    };

    void AddChange(Change change);
    void Tell();
    std::vector<Told> TakeBundles();
    void AddToBundles(const Change& change, std::vector<Told>& bundles,
                      std::unordered_map<IObserver*, std::size_t>& places) const;

    std::unordered_map<DWORD, std::vector<Registration>> registrations_;  // by feature id
    std::map<IObserver*, std::uint64_t> observers_;  // that registered for changes, with their order
    std::vector<std::pair<IObserver*, DWORD>> eventObservers_;
    std::set<DWORD> eventsBeingTold_;
    std::vector<Change> changes_;
    std::set<std::tuple<Feature*, DWORD, DWORD>> noted_;  // the changes, by feature, settings and change
    std::uint64_t nextOrder_ = 0;
    int depth_ = 0;
    bool silent_ = false;
    bool telling_ = false;
};

// Changes made while it lives are reported as one bundle, when End is called; without that they stay for the next
// bundle.
class MassChange {
public:
    explicit MassChange(ChangeHub& hub) noexcept : hub_(&hub) { hub.Begin(); }
    ~MassChange() {
        if (hub_) hub_->Abandon();
    }
    MassChange(const MassChange&) = delete;
    MassChange& operator=(const MassChange&) = delete;
    void End() {
        ChangeHub& hub = *hub_;
        hub_ = nullptr;
        hub.End();
    }

private:
    ChangeHub* hub_;
};
