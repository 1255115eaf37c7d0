// KeptAnswers: what was read of the registry, kept for as long as nothing in the store changes.
#pragma once

#include <storestate.h>
#include <widetext.h>

#include <functional>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

// For any number of threads.
template <class Answer, std::size_t mostKept = 256>
class KeptAnswers {
public:
    // What read(name) answers, read again only when the store is in another state than it was in before. A change
    // during the reading is seen by the next call, as the state was taken first.
    template <class Read>
    std::shared_ptr<const Answer> Get(const WideString& name, StoreState state, Read read) {
        if (state != kUnknownStoreState) {
            const std::shared_lock lock(mutex_);
            const auto found = state == state_ ? answers_.find(name) : answers_.end();
            if (found != answers_.end()) return found->second;
        }
        auto answer = std::make_shared<const Answer>(read(name));
        Keep(name, state, answer);
        return answer;
    }

private:
    using Answers = std::unordered_map<WideString, std::shared_ptr<const Answer>>;

    void Keep(const WideString& name, StoreState state, const std::shared_ptr<const Answer>& answer) {
        Answers old;  // goes outside the lock
        const std::unique_lock lock(mutex_);
        if (state == kUnknownStoreState || state < state_) return;
        if (state > state_ || answers_.size() >= mostKept) answers_.swap(old);
        state_ = state;
        answers_.insert_or_assign(name, answer);
    }

    std::shared_mutex mutex_;
    StoreState state_ = kUnknownStoreState;
    Answers answers_;
};
