// The registry's tree of keys and values in an SQLite database.
#include "registrystore.h"

#include <utility>

namespace mvplatform {

struct RegistryStore::Statements {
    explicit Statements(sqlite3* c)
        : begin(c, "BEGIN"),
          beginWriting(c, "BEGIN IMMEDIATE"),
          commit(c, "COMMIT"),
          beginPart(c, "SAVEPOINT part"),
          commitPart(c, "RELEASE part"),
          lastKey(c, "SELECT seq FROM sqlite_sequence WHERE name = 'keys'"),
          hasKey(c, "SELECT 1 FROM keys WHERE id = ?1"),
          findChild(c, "SELECT id FROM keys WHERE parent = ?1 AND folded = ?2"),
          addChild(c, "INSERT INTO keys (parent, folded, name) VALUES (?1, ?2, ?3)"),
          childAt(c, "SELECT name, folded FROM keys WHERE parent = ?1 ORDER BY folded LIMIT 1 OFFSET ?2"),
          childAfter(c, "SELECT name, folded FROM keys WHERE parent = ?1 AND folded > ?2 ORDER BY folded LIMIT 1"),
          deleteEntries(c,
                        "WITH RECURSIVE tree (id) AS (SELECT ?1 UNION ALL"
                        " SELECT keys.id FROM keys JOIN tree ON keys.parent = tree.id)"
                        " DELETE FROM entries WHERE key IN tree"),
          deleteKeys(c,
                     "WITH RECURSIVE tree (id) AS (SELECT ?1 UNION ALL"
                     " SELECT keys.id FROM keys JOIN tree ON keys.parent = tree.id)"
                     " DELETE FROM keys WHERE id IN tree AND (id <> ?1 OR ?2)"),
          readEntry(c, "SELECT name, type, data FROM entries WHERE key = ?1 AND folded = ?2"),
          entryAt(c, "SELECT name, type, data FROM entries WHERE key = ?1 ORDER BY place LIMIT 1 OFFSET ?2"),
          writeEntry(c,
                     "INSERT INTO entries (key, folded, name, type, data) SELECT ?1, ?2, ?3, ?4, ?5"
                     " WHERE EXISTS (SELECT 1 FROM keys WHERE id = ?1)"
                     " ON CONFLICT (key, folded) DO UPDATE SET type = excluded.type, data = excluded.data"),
          dataVersion(c, "PRAGMA data_version"),
          deleteEntry(c, "DELETE FROM entries WHERE key = ?1 AND folded = ?2") {}

    Statement begin;
    Statement beginWriting;
    Statement commit;
    Statement beginPart;
    Statement commitPart;
    Statement lastKey;
    Statement hasKey;
    Statement findChild;
    Statement addChild;
    Statement childAt;
    Statement childAfter;
    Statement deleteEntries;
    Statement deleteKeys;
    Statement readEntry;
    Statement entryAt;
    Statement writeEntry;
    Statement dataVersion;
    Statement deleteEntry;
};

// What several statements do, whole or not at all; reading alone is part of the transaction that is open.
class RegistryStore::Transaction {
public:
    Transaction(RegistryStore& store, bool writes) : store_(store), open_(writes || store.depth_ == 0) {
        if (open_) store_.Begin(writes);
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction() {
        if (open_) store_.Rollback();
    }

    void Commit() {
        if (open_) store_.Commit();
        open_ = false;
    }

private:
    RegistryStore& store_;
    bool open_;
};

RegistryStore::RegistryStore(const std::string& file, FileUse use)
    : connection_(OpenRegistryFile(file, use)),
      writes_(use != FileUse::Read),
      statements_(std::make_unique<Statements>(connection_.get())) {}

RegistryStore::~RegistryStore() = default;

RegistryStore::Statements& RegistryStore::Use() {
    if (depth_ != 0 && sqlite3_get_autocommit(connection_.get()))
        throw RegistryError(ERROR_REGISTRY_IO_FAILED, "a change failed, and those before it were taken back");
    return *statements_;
}

void RegistryStore::Begin(bool writes) {
    Statements& statements = Use();
    (depth_ != 0 ? statements.beginPart : writes ? statements.beginWriting : statements.begin).Execute();
    ++depth_;
}

void RegistryStore::Commit() {
    Statements& statements = Use();
    (depth_ != 1 ? statements.commitPart : statements.commit).Execute();
    --depth_;
}

void RegistryStore::Rollback() noexcept {
    --depth_;
    sqlite3* const connection = connection_.get();
    if (sqlite3_get_autocommit(connection)) return;
    sqlite3_exec(connection, depth_ != 0 ? "ROLLBACK TO part; RELEASE part" : "ROLLBACK", nullptr, nullptr, nullptr);
}

KeyId RegistryStore::LastKey() {
    Statement::Run run = Use().lastKey.Start();
    return run.Step() ? run.Integer(0) : 0;
}

void RegistryStore::RequireKey(KeyId key) {
    if (!Use().hasKey.Start(key).Step()) throw RegistryError(ERROR_KEY_DELETED, "the key was deleted");
}

KeyId RegistryStore::Walk(KeyId key, const KeyPath& path, std::size_t& found) {
    RequireKey(key);
    for (found = 0; found < path.size(); ++found) {
        Statement::Run run = Use().findChild.Start(key, path[found].folded);
        if (!run.Step()) break;
        key = run.Integer(0);
    }
    return key;
}

std::optional<KeyId> RegistryStore::FindKey(KeyId key, const KeyPath& path) {
    Transaction transaction(*this, false);
    std::size_t found = 0;
    const KeyId last = Walk(key, path, found);
    transaction.Commit();
    if (found < path.size()) return std::nullopt;
    return last;
}

KeyId RegistryStore::CreateKey(KeyId key, const KeyPath& path, bool& created) {
    created = false;
    // Most keys exist; looking needs no writer's lock.
    if (const std::optional<KeyId> existing = FindKey(key, path)) return *existing;
    Transaction transaction(*this, true);
    std::size_t found = 0;
    KeyId last = Walk(key, path, found);
    created = found < path.size();
    for (; found < path.size(); ++found) {
        Use().addChild.Execute(last, path[found].folded, path[found].text);
        last = sqlite3_last_insert_rowid(connection_.get());
    }
    transaction.Commit();
    return last;
}

void RegistryStore::DeleteTree(KeyId key, bool withKey) {
    Transaction transaction(*this, true);
    RequireKey(key);
    Use().deleteEntries.Execute(key);
    Use().deleteKeys.Execute(key, std::int64_t{withKey});
    transaction.Commit();
}

std::optional<std::string> RegistryStore::ChildName(KeyId key, DWORD index) {
    const bool isNext = lastChild_.key == key && lastChild_.index + 1 == index;
    Statement::Run run =
        isNext ? Use().childAfter.Start(key, lastChild_.folded) : Use().childAt.Start(key, std::int64_t{index});
    if (run.Step()) {
        lastChild_ = {key, index, run.Text(1)};
        return run.Text(0);
    }
    RequireKey(key);
    return std::nullopt;
}

std::optional<RegistryValue> RegistryStore::ReadValue(KeyId key, const RegistryName& name) {
    Statement::Run run = Use().readEntry.Start(key, name.folded);
    if (run.Step()) return RegistryValue{run.Text(0), static_cast<DWORD>(run.Integer(1)), run.Bytes(2)};
    RequireKey(key);
    return std::nullopt;
}

std::optional<RegistryValue> RegistryStore::ValueAt(KeyId key, DWORD index) {
    Statement::Run run = Use().entryAt.Start(key, std::int64_t{index});
    if (run.Step()) return RegistryValue{run.Text(0), static_cast<DWORD>(run.Integer(1)), run.Bytes(2)};
    RequireKey(key);
    return std::nullopt;
}

void RegistryStore::WriteValue(KeyId key, const RegistryName& name, DWORD type, BytesView data) {
    Use().writeEntry.Execute(key, name.folded, name.text, std::int64_t{type}, data);
    if (sqlite3_changes(connection_.get()) == 0) throw RegistryError(ERROR_KEY_DELETED, "the key was deleted");
}

bool RegistryStore::DeleteValue(KeyId key, const RegistryName& name) {
    Use().deleteEntry.Execute(key, name.folded);
    if (sqlite3_changes(connection_.get()) != 0) return true;
    RequireKey(key);
    return false;
}

// SQLite's number is another one after each change that another connection has made; it is never 0.
bool RegistryStore::WasChangedElsewhere() {
    Statement::Run run = Use().dataVersion.Start();
    const std::int64_t version = run.Step() ? run.Integer(0) : 0;
    return std::exchange(dataVersion_, version) != version || version == 0;
}

}  // namespace mvplatform
