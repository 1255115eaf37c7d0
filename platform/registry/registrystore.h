// The registry's tree of keys and values in an SQLite database.
#pragma once

#include <windows.h>
#include "statement.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mvplatform {

using KeyId = std::int64_t;
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
// or not at all, and on disk when it returns; it throws RegistryError, with ERROR_KEY_DELETED when the key is there no
// more.
class RegistryStore {
public:
    // Opens the file, making it when it is missing; ":memory:" for a store that ends with the object.
    explicit RegistryStore(const std::string& file);

    // The key at the end of the path (the key itself when that is empty), or nothing.
    std::optional<KeyId> FindKey(KeyId key, const KeyPath& path);
    // The same, making what is missing; created says whether the last key was.
    KeyId CreateKey(KeyId key, const KeyPath& path, bool& created);
    // Deletes what lies below a key, and the key itself when asked to.
    void DeleteTree(KeyId key, bool withKey);
    // The name of the key's index-th child by alphabet, or nothing.
    std::optional<std::string> ChildName(KeyId key, DWORD index);

    std::optional<RegistryValue> ReadValue(KeyId key, const RegistryName& name);
    // The index-th value in the order in which the values were first written, or nothing.
    std::optional<RegistryValue> ValueAt(KeyId key, DWORD index);
    void WriteValue(KeyId key, const RegistryName& name, DWORD type, BytesView data);
    // False when there is no such value.
    bool DeleteValue(KeyId key, const RegistryName& name);

private:
    struct Close {
        void operator()(sqlite3* connection) const noexcept { sqlite3_close(connection); }
    };
    struct Statements;
    class Transaction;

    // The key at the path's end and how many of its names were found, within a transaction. The key must exist.
    KeyId Walk(KeyId key, const KeyPath& path, std::size_t& found);
    void RequireKey(KeyId key);

    std::unique_ptr<sqlite3, Close> connection_;
    // Destroyed before the connection.
    struct DeleteStatements {
        void operator()(Statements* statements) const noexcept;
    };
    std::unique_ptr<Statements, DeleteStatements> statements_;
};

}  // namespace mvplatform
