// ChangeHub: changes are gathered, sorted by observer, and reported in rounds.
#include "changehub.h"

#include <mvutil/throwfailure.h>

#include <algorithm>
#include <exception>
#include <span>

namespace {

constexpr DWORD kEveryEvent = 0;

void RequireObserver(const IObserver* observer, const WCHAR* methodName) {
    if (!observer) ThrowFailure(&GetExceptionInvalidArgumentNullPointer, CXString(), methodName, W("mvcore/changehub"));
}

// A list of values is one feature to those who do not name it: what its rows hold are not the model's own features of
// the same ids.
bool NamesRow(const FeatureIdWithContext& registered, const Feature& feature) {
    const std::span<const DWORD> path = registered.GetPath();
    return feature.GetRowHolder() == 0 || std::find(path.begin(), path.end(), feature.GetRowHolder()) != path.end();
}

// Runs the call; keeps the first failure of several.
template <class Call>
void KeepFailure(std::exception_ptr& failure, Call call) {
    try {
        call();
    } catch (...) {
        if (!failure) failure = std::current_exception();
    }
}

}  // namespace

void ChangeHub::RegisterFeatureChangeObserver(IObserver* observer, SettingsInstanceId settings,
                                              const FeatureIdWithContext& feature, FeatureChangeId change,
                                              int /*number*/) {
    RequireObserver(observer, W("DataModelObserverInterfaces::RegisterFeatureChangeObserver"));
    std::vector<Registration>& same = registrations_[feature.GetFeatureId().GetId()];
    const bool known = std::any_of(same.begin(), same.end(), [&](const Registration& registration) {
        return registration.observer == observer && registration.settings == settings.GetId() &&
               registration.change == change.GetId() && registration.feature == feature;
    });
    if (known) return;
    same.push_back({observer, settings.GetId(), change.GetId(), feature});
    observers_.try_emplace(observer, nextOrder_++);
}

void ChangeHub::UnregisterFeatureChangeObserver(IObserver* observer) {
    if (observers_.erase(observer) == 0) return;
    for (auto& [id, registrations] : registrations_)
        std::erase_if(registrations, [&](const Registration& entry) { return entry.observer == observer; });
}

void ChangeHub::RegisterEventObserver(IObserver* observer, EventId event) {
    RequireObserver(observer, W("FeatureServices::RegisterEventObserver"));
    const std::pair entry(observer, event.GetId());
    if (std::find(eventObservers_.begin(), eventObservers_.end(), entry) == eventObservers_.end())
        eventObservers_.push_back(entry);
}

void ChangeHub::RegisterSource(IObserver* observer) {
    const bool isRegistered = std::any_of(eventObservers_.begin(), eventObservers_.end(),
                                          [&](const auto& entry) { return entry.first == observer; });
    if (!isRegistered) eventObservers_.emplace_back(observer, kEveryEvent);
}

void ChangeHub::UnregisterEventObserver(IObserver* observer) {
    std::erase_if(eventObservers_, [&](const auto& entry) { return entry.first == observer; });
}

void ChangeHub::RaiseEvent(EventId event) {
    if (!eventsBeingTold_.insert(event.GetId()).second) return;
    std::exception_ptr failure;
    const auto registered = eventObservers_;  // observers come and go while they are notified
    for (const auto& entry : registered) {
        if (entry.second != event.GetId() && entry.second != kEveryEvent) continue;
        if (std::find(eventObservers_.begin(), eventObservers_.end(), entry) == eventObservers_.end()) continue;
        EventNotification notification(event);
        KeepFailure(failure, [&] { entry.first->OnNotification(notification); });
    }
    eventsBeingTold_.erase(event.GetId());
    if (failure) std::rethrow_exception(failure);
}

void ChangeHub::End() {
    if (depth_ > 0) --depth_;
    Tell();
}

void ChangeHub::Abandon() noexcept {
    if (depth_ > 0) --depth_;
}

void ChangeHub::NoteValue(Feature& feature, const std::optional<FeatureValue>& before) {
    if (feature.GetEffective() != before)
        AddChange({&feature, DataModelIds::kCurrentSettings, DataModelIds::kContentsChanged, before});
}

void ChangeHub::NoteCapabilities(Feature& feature, FeatureChangeId change) {
    AddChange({&feature, DataModelIds::kCapabilities, change.GetId(), std::nullopt});
}

void ChangeHub::AddChange(Change change) {
    if (silent_) return;
    // Of several changes of one value in a bundle the first one knows what the value was before.
    if (noted_.insert({change.feature, change.settings, change.change}).second) changes_.push_back(std::move(change));
    Tell();
}

void ChangeHub::Tell() {
    if (telling_ || depth_ > 0) return;
    telling_ = true;
    std::exception_ptr failure;
    for (int round = 0; round < kMaximumRounds && !changes_.empty(); ++round) {
        KeepFailure(failure, [&] {
            for (const Told& told : TakeBundles()) {
                // An observer may have unregistered while another was notified.
                if (!observers_.contains(told.observer)) continue;
                KeepFailure(failure, [&] { told.observer->OnNotification(*told.bundle); });
            }
        });
    }
    changes_.clear();
    noted_.clear();
    telling_ = false;
    if (failure) std::rethrow_exception(failure);
}

std::vector<ChangeHub::Told> ChangeHub::TakeBundles() {
    const std::vector<Change> changes = std::exchange(changes_, {});
    noted_.clear();
    std::vector<Told> bundles;
    std::unordered_map<IObserver*, std::size_t> places;
    for (const Change& change : changes) {
        const bool isValue = change.settings == DataModelIds::kCurrentSettings;
        if (!isValue || change.feature->GetEffective() != change.before) AddToBundles(change, bundles, places);
    }
    std::sort(bundles.begin(), bundles.end(), [](const Told& a, const Told& b) { return a.order < b.order; });
    return bundles;
}

// Whoever registered for the feature, or for a list that holds it.
void ChangeHub::AddToBundles(const Change& change, std::vector<Told>& bundles,
                             std::unordered_map<IObserver*, std::size_t>& places) const {
    const std::span<const DWORD> path = change.feature->GetPath();
    for (std::size_t depth = path.size(); depth > 0; --depth) {
        const auto registrations = registrations_.find(path[depth - 1]);
        if (registrations == registrations_.end()) continue;
        for (const Registration& registration : registrations->second) {
            if (registration.settings != change.settings || registration.change != change.change ||
                !registration.feature.Matches(path.first(depth)) || !NamesRow(registration.feature, *change.feature))
                continue;
            const auto [place, isNew] = places.try_emplace(registration.observer, bundles.size());
            if (isNew)
                bundles.push_back({observers_.at(registration.observer), registration.observer,
                                   std::make_unique<NotificationBundle>()});
            bundles[place->second].bundle->Add(std::make_unique<FeatureChangeNotification>(
                FeatureChangeId(change.change), SettingsInstanceId(change.settings), change.feature->GetIdWithContext(),
                registration.feature));
        }
    }
}
