// The store as one thread sees it.
#pragma once

#include "sharedstore.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace mvplatform {

// A connection for reading and the answers that it gave, which hold until any process changes the store: threads with a
// view each do not wait for each other. Used by one thread at a time.
class StoreView final : private AnswerSource {
public:
    explicit StoreView(std::shared_ptr<SharedStore> store) : store_(std::move(store)) {}

    SharedStore& GetStore() const noexcept { return *store_; }

    // Calls operation(AnswerCache&, AnswerSource&), maybe twice; what it asks is answered from one state of the store,
    // the newest, or that of the open transaction. Returns what the operation returns; throws RegistryError.
    template <class Operation>
    auto Read(Operation operation) {
        if (store_->IsInTransaction()) return store_->UseMain(operation);
        if (const std::optional<State> state = GetState()) {
            if (*state != state_) cache_.Clear();
            state_ = *state;
            try {
                const auto result = operation(cache_, static_cast<AnswerSource&>(*this));
                if (GetState() == state_) return result;
            } catch (const RegistryError&) {
                if (GetState() == state_) throw;
            }
        }
        // The store is changing, or nothing says whether it is.
        cache_.Clear();
        if (store_->IsInMemory()) return store_->UseMain(operation);
        const Snapshot snapshot(*this);
        return operation(cache_, static_cast<AnswerSource&>(*this));
    }

    // Notes a change that another process has made since the last call. False when that cannot be said.
    bool NoteChanges();

private:
    // What is another one after each change: of a file the head of SQLite's index of its log, which all connections
    // share in memory.
    using State = std::array<std::uint64_t, 6>;

    class Snapshot {
    public:
        explicit Snapshot(StoreView& view) : view_(view) { view_.reader_->Begin(); }
        Snapshot(const Snapshot&) = delete;
        Snapshot& operator=(const Snapshot&) = delete;
        ~Snapshot() {
            view_.reader_->Rollback();
            view_.cache_.Clear();
        }

    private:
        StoreView& view_;
    };

    // Nothing when a change would not be seen.
    std::optional<State> GetState();
    void Ask(const std::function<void(RegistryStore&)>& question) override;

    std::shared_ptr<SharedStore> store_;
    std::unique_ptr<RegistryStore> reader_;  // of a store that is not in memory, when it was first used
    const std::uint64_t* logIndex_ = nullptr;
    AnswerCache cache_;
    State state_{};  // of the answers
    State noted_{};
};

}  // namespace mvplatform
