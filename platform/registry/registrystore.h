// The registry's tree of keys and values in an SQLite database.
#pragma once

#include <windows.h>
#include "registryfile.h"
#include "statement.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mvplatform {

using KeyId = std::int64_t;
inline constexpr KeyId noKey = -1;
inline constexpr KeyId currentUserKey = 1;
inline constexpr KeyId localMachineKey = 2;

// A key's or value's name as it was given, and as it is compared; both UTF-8.
struct RegistryName {
    std::string text;
    std::string folded;
};
using KeyPath = std::vector<RegistryName>;

struct RegistryValue {
    std::string name;
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

// One connection, for one thread at a time. Other processes may work on the same file at once. Every operation is whole
// or not at all, and on disk when it returns unless it is part of a transaction; it throws RegistryError, with
// ERROR_KEY_DELETED when the key is there no more.
class RegistryStore {
public:
    // Opens the file; ":memory:" for a store that ends with the object.
    RegistryStore(const std::string& file, FileUse use);
    ~RegistryStore();
    RegistryStore(const RegistryStore&) = delete;
    RegistryStore& operator=(const RegistryStore&) = delete;

    // The key at the end of the path (the key itself when that is empty), or nothing.
    std::optional<KeyId> FindKey(KeyId key, const KeyPath& path);
    // The same, making what is missing; created says whether the last key was.
    KeyId CreateKey(KeyId key, const KeyPath& path, bool& created);
    // Deletes what lies below a key, and the key itself when asked to.
    void DeleteTree(KeyId key, bool withKey);
    // The name of the key's index-th child by alphabet, or nothing. When the last call was for the child before, it is
    // the one behind that, which takes no longer for those in front.
    std::optional<std::string> ChildName(KeyId key, DWORD index);

    std::optional<RegistryValue> ReadValue(KeyId key, const RegistryName& name);
    // The index-th value in the order in which the values were first written, or nothing.
    std::optional<RegistryValue> ValueAt(KeyId key, DWORD index);
    void WriteValue(KeyId key, const RegistryName& name, DWORD type, BytesView data);
    // False when there is no such value.
    bool DeleteValue(KeyId key, const RegistryName& name);

    // Whether another connection has changed the store since the last call; true for the first call.
    bool WasChangedElsewhere();

    // A transaction around operations; one within another can be taken back alone. On a connection that only reads, all
    // operations within see one state. A failed Commit leaves the transaction open, to be taken back.
    void Begin() { Begin(writes_); }
    void Commit();
    void Rollback() noexcept;
    // The highest number that a key has had; a transaction that is taken back frees those given out in it.
    KeyId LastKey();

private:
    struct Statements;
    class Transaction;

    // The key at the path's end and how many of its names were found. The key must exist.
    KeyId Walk(KeyId key, const KeyPath& path, std::size_t& found);
    void RequireKey(KeyId key);
    void Begin(bool writes);
    // The statements. Throws when SQLite has taken back the open transaction by itself, as it does after some errors.
    Statements& Use();

    UniqueConnection connection_;
    bool writes_;
    struct {
        KeyId key;
        DWORD index;
        std::string folded;
    } lastChild_{};
    std::int64_t dataVersion_ = 0;
    int depth_ = 0;                           // of the transactions that are open
    std::unique_ptr<Statements> statements_;  // destroyed before the connection
};

}  // namespace mvplatform
