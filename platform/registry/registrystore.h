// The registry's tree of keys and values in an SQLite database.
#pragma once

#include <windows.h>
#include "registryfile.h"
#include "registryname.h"
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

struct RegistryValue {
    WideString name;
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

    sqlite3* GetConnection() const noexcept { return connection_.get(); }

    void RequireKey(KeyId key);
    std::optional<KeyId> FindChild(KeyId key, const RegistryName& name);
    // The key at the end of the path, made with what is missing before it; created says whether the last key was.
    KeyId CreateKey(KeyId key, const KeyPath& path, bool& created);
    // Deletes what lies below a key, and the key itself when asked to.
    void DeleteTree(KeyId key, bool withKey);
    // The names of the keys below a key, by alphabet.
    std::vector<WideString> ReadChildNames(KeyId key);

    // In the order in which they were first written.
    std::vector<RegistryValue> ReadValues(KeyId key);
    void WriteValue(KeyId key, const RegistryName& name, DWORD type, BytesView data);
    // False when there is no such value.
    bool DeleteValue(KeyId key, const RegistryName& name);

    // A transaction around operations; one within another can be taken back alone. On a connection that only reads, all
    // operations within see one state. A failed Commit leaves the transaction open, to be taken back.
    void Begin();
    void Commit();
    void Rollback() noexcept;
    // The highest number that a key has had; a transaction that is taken back frees those given out in it.
    KeyId LastKey();

private:
    struct Statements;
    class Transaction;

    // The statements. Throws when SQLite has taken back the open transaction by itself, as it does after some errors.
    Statements& Use();

    UniqueConnection connection_;
    bool writes_;
    bool commitFailed_ = false;
    int depth_ = 0;                           // of the transactions that are open
    std::unique_ptr<Statements> statements_;  // destroyed before the connection
};

}  // namespace mvplatform
