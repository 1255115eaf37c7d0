// The store: the two registry hives that the process sees. Natively an SQLite file; on Windows a subtree of the current
// user's hive that stands in for both predefined keys. Chosen once, before anything else runs.
#pragma once

#include <memory>
#include <string>

enum class StoreAccess {
    Read,        // an existing store; natively writing answers ERROR_ACCESS_DENIED
    ReadMostly,  // an existing store; writing is tried, and natively answers ERROR_ACCESS_DENIED where it cannot be
                 // done
    Write        // a store that can be written, made when missing
};

// Natively the folder of the store's file, or ":memory:" for a store that ends with the process, which is made with any
// access. On Windows the subtree's name is made from the folder's; ":memory:" gives a subtree of the process's own,
// removed by CloseStore. Throws std::runtime_error with a sentence for the user when the store cannot be opened.
void OpenStore(const std::string& folderUtf8, StoreAccess access = StoreAccess::Write);
// Whether the folder holds a store. Asked while none is open.
bool IsStore(const std::string& folderUtf8);
// Closes the store; keys still open answer ERROR_INVALID_HANDLE or ERROR_KEY_DELETED from then on.
void CloseStore() noexcept;

// All changes of the process while it lives are in the store whole or not at all, and on disk when Commit returns;
// without Commit they are taken back. Natively: while one is open, every registry call of any thread goes through one
// connection. One within another, on the same thread, takes back its own part alone; one on another thread joins, and
// when it is not committed nothing is. In a store opened for reading one is a snapshot: all is read as it was when the
// first one began. On Windows it has no effect.
class StoreTransaction {
public:
    // Waits for other processes' transactions. Throws std::runtime_error with a sentence for the user, as Commit does;
    // a failed Commit changes nothing.
    StoreTransaction();
    ~StoreTransaction();
    StoreTransaction(const StoreTransaction&) = delete;
    StoreTransaction& operator=(const StoreTransaction&) = delete;
    void Commit();

private:
    struct State;
    std::unique_ptr<State> state_;
};
