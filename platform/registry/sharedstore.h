// The process's store: the connection that writes, its transactions, and what threads that read need of it.
#pragma once

#include <store.h>
#include "answercache.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace mvplatform {

// Used by all threads at once. Everything throws RegistryError.
class SharedStore {
public:
    // A part of a transaction: what one StoreTransaction stands for.
    struct Part {
        bool joins = false;  // another thread's transaction
        KeyId lastKey = 0;   // there were no keys of higher numbers when it began
    };

    // Opens the file; ":memory:" for a store that ends with the object.
    SharedStore(const std::string& file, StoreAccess access);
    SharedStore(const SharedStore&) = delete;
    SharedStore& operator=(const SharedStore&) = delete;

    // Takes back an open transaction. Nothing is done to the store from then on.
    void Close() noexcept;

    bool IsClosed() noexcept;

    bool IsInMemory() const noexcept { return inMemory_; }
    // A connection of the caller's own, for reading a store that is not in memory.
    std::unique_ptr<RegistryStore> TakeReader();

    bool IsInTransaction() const noexcept { return depth_.load(std::memory_order_acquire) != 0; }
    // Calls operation(AnswerCache&, AnswerSource&) over the connection that writes, in its transaction when one is
    // open.
    template <class Operation>
    auto UseMain(Operation operation) {
        const std::lock_guard lock(mutex_);
        if (depth_ == 0) cache_.Clear();
        MainSource source(GetMain());
        return operation(cache_, source);
    }

    KeyId CreateKey(KeyId key, const KeyPath& path, bool& created);
    void DeleteTree(KeyId key, bool withKey);
    void WriteValue(KeyId key, const RegistryName& name, DWORD type, BytesView data);
    bool DeleteValue(KeyId key, const RegistryName& name);

    Part Begin();
    void Commit(const Part& part);
    void Rollback(const Part& part) noexcept;

private:
    class MainSource final : public AnswerSource {
    public:
        explicit MainSource(RegistryStore& main) : main_(main) {}
        void Ask(const std::function<void(RegistryStore&)>& question) override { question(main_); }

    private:
        RegistryStore& main_;
    };
    class Change;

    // With the mutex held.
    RegistryStore& GetMain();
    void EndPart() noexcept;

    const std::string file_;
    const StoreAccess access_;
    const bool inMemory_;
    std::mutex mutex_;  // of all that follows
    std::unique_ptr<RegistryStore> main_;
    std::unique_ptr<RegistryStore> spare_;  // a reader that nobody uses yet
    bool closed_ = false;
    AnswerCache cache_;  // of the open transaction
    std::atomic<int> depth_ = 0;
    int joined_ = 0;  // parts of other threads that are not completed
    std::thread::id owner_;
};

}  // namespace mvplatform
