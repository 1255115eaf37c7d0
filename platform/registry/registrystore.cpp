// The registry's tree of keys and values in an SQLite database.
#include "registrystore.h"

#include "registryfile.h"

namespace mvplatform {

struct RegistryStore::Statements {
    explicit Statements(sqlite3* c)
        : begin(c, "BEGIN"),
          beginWriting(c, "BEGIN IMMEDIATE"),
          commit(c, "COMMIT"),
          hasKey(c, "SELECT 1 FROM keys WHERE id = ?1"),
          findChild(c, "SELECT id FROM keys WHERE parent = ?1 AND folded = ?2"),
          addChild(c, "INSERT INTO keys (parent, folded, name) VALUES (?1, ?2, ?3)"),
          childAt(c, "SELECT name FROM keys WHERE parent = ?1 ORDER BY folded LIMIT 1 OFFSET ?2"),
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
          deleteEntry(c, "DELETE FROM entries WHERE key = ?1 AND folded = ?2") {}

    Statement begin;
    Statement beginWriting;
    Statement commit;
    Statement hasKey;
    Statement findChild;
    Statement addChild;
    Statement childAt;
    Statement deleteEntries;
    Statement deleteKeys;
    Statement readEntry;
    Statement entryAt;
    Statement writeEntry;
    Statement deleteEntry;
};

void RegistryStore::DeleteStatements::operator()(Statements* statements) const noexcept { delete statements; }

// A transaction that is rolled back unless it was committed.
class RegistryStore::Transaction {
public:
    Transaction(RegistryStore& store, Statement& begin) : store_(store) { begin.Execute(); }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction() {
        // After some errors SQLite has rolled back by itself.
        sqlite3* connection = store_.connection_.get();
        if (!sqlite3_get_autocommit(connection)) sqlite3_exec(connection, "ROLLBACK", nullptr, nullptr, nullptr);
    }

    void Commit() { store_.statements_->commit.Execute(); }

private:
    RegistryStore& store_;
};

RegistryStore::RegistryStore(const std::string& file) {
    sqlite3* connection = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    const int result = sqlite3_open_v2(file.c_str(), &connection, flags, nullptr);
    connection_.reset(connection);
    if (!connection) throw RegistryError(ERROR_NOT_ENOUGH_MEMORY, "out of memory");
    if (result != SQLITE_OK) throw LastError(connection);
    PrepareRegistryFile(connection);
    statements_.reset(new Statements(connection));
}

void RegistryStore::RequireKey(KeyId key) {
    if (!statements_->hasKey.Start(key).Step()) throw RegistryError(ERROR_KEY_DELETED, "the key was deleted");
}

KeyId RegistryStore::Walk(KeyId key, const KeyPath& path, std::size_t& found) {
    RequireKey(key);
    for (found = 0; found < path.size(); ++found) {
        Statement::Run run = statements_->findChild.Start(key, path[found].folded);
        if (!run.Step()) break;
        key = run.Integer(0);
    }
    return key;
}

std::optional<KeyId> RegistryStore::FindKey(KeyId key, const KeyPath& path) {
    Transaction transaction(*this, statements_->begin);
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
    Transaction transaction(*this, statements_->beginWriting);
    std::size_t found = 0;
    KeyId last = Walk(key, path, found);
    created = found < path.size();
    for (; found < path.size(); ++found) {
        statements_->addChild.Execute(last, path[found].folded, path[found].text);
        last = sqlite3_last_insert_rowid(connection_.get());
    }
    transaction.Commit();
    return last;
}

void RegistryStore::DeleteTree(KeyId key, bool withKey) {
    Transaction transaction(*this, statements_->beginWriting);
    RequireKey(key);
    statements_->deleteEntries.Execute(key);
    statements_->deleteKeys.Execute(key, std::int64_t{withKey});
    transaction.Commit();
}

std::optional<std::string> RegistryStore::ChildName(KeyId key, DWORD index) {
    Statement::Run run = statements_->childAt.Start(key, std::int64_t{index});
    if (run.Step()) return run.Text(0);
    RequireKey(key);
    return std::nullopt;
}

std::optional<RegistryValue> RegistryStore::ReadValue(KeyId key, const RegistryName& name) {
    Statement::Run run = statements_->readEntry.Start(key, name.folded);
    if (run.Step()) return RegistryValue{run.Text(0), static_cast<DWORD>(run.Integer(1)), run.Bytes(2)};
    RequireKey(key);
    return std::nullopt;
}

std::optional<RegistryValue> RegistryStore::ValueAt(KeyId key, DWORD index) {
    Statement::Run run = statements_->entryAt.Start(key, std::int64_t{index});
    if (run.Step()) return RegistryValue{run.Text(0), static_cast<DWORD>(run.Integer(1)), run.Bytes(2)};
    RequireKey(key);
    return std::nullopt;
}

void RegistryStore::WriteValue(KeyId key, const RegistryName& name, DWORD type, BytesView data) {
    statements_->writeEntry.Execute(key, name.folded, name.text, std::int64_t{type}, data);
    if (sqlite3_changes(connection_.get()) == 0) throw RegistryError(ERROR_KEY_DELETED, "the key was deleted");
}

bool RegistryStore::DeleteValue(KeyId key, const RegistryName& name) {
    statements_->deleteEntry.Execute(key, name.folded);
    if (sqlite3_changes(connection_.get()) != 0) return true;
    RequireKey(key);
    return false;
}

}  // namespace mvplatform
