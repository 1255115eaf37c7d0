// The registry's tree of keys and values in an SQLite database.
#include "registrystore.h"

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
          children(c, "SELECT name FROM keys WHERE parent = ?1 ORDER BY folded"),
          deleteEntries(c,
                        "WITH RECURSIVE tree (id) AS (SELECT ?1 UNION ALL"
                        " SELECT keys.id FROM keys JOIN tree ON keys.parent = tree.id)"
                        " DELETE FROM entries WHERE key IN tree"),
          deleteKeys(c,
                     "WITH RECURSIVE tree (id) AS (SELECT ?1 UNION ALL"
                     " SELECT keys.id FROM keys JOIN tree ON keys.parent = tree.id)"
                     " DELETE FROM keys WHERE id IN tree AND (id <> ?1 OR ?2)"),
          entries(c, "SELECT name, type, data FROM entries WHERE key = ?1 ORDER BY place"),
          writeEntry(c,
                     "INSERT INTO entries (key, folded, name, type, data) SELECT ?1, ?2, ?3, ?4, ?5"
                     " WHERE EXISTS (SELECT 1 FROM keys WHERE id = ?1)"
                     " ON CONFLICT (key, folded) DO UPDATE SET type = excluded.type, data = excluded.data"),
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
    Statement children;
    Statement deleteEntries;
    Statement deleteKeys;
    Statement entries;
    Statement writeEntry;
    Statement deleteEntry;
};

// What several statements do, whole or not at all.
class RegistryStore::Transaction {
public:
    explicit Transaction(RegistryStore& store) : store_(store) { store_.Begin(); }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction() {
        if (open_) store_.Rollback();
    }

    void Commit() {
        store_.Commit();
        open_ = false;
    }

private:
    RegistryStore& store_;
    bool open_ = true;
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

void RegistryStore::Begin() {
    Statements& statements = Use();
    (depth_ != 0 ? statements.beginPart : writes_ ? statements.beginWriting : statements.begin).Execute();
    ++depth_;
}

void RegistryStore::Commit() {
    Statements& statements = Use();
    commitFailed_ = depth_ == 1;
    (depth_ != 1 ? statements.commitPart : statements.commit).Execute();
    commitFailed_ = false;
    --depth_;
}

void RegistryStore::Rollback() noexcept {
    --depth_;
    sqlite3* const connection = connection_.get();
    if (!sqlite3_get_autocommit(connection))
        sqlite3_exec(connection, depth_ != 0 ? "ROLLBACK TO part; RELEASE part" : "ROLLBACK", nullptr, nullptr,
                     nullptr);
    if (commitFailed_) ReplaceFailedCommit(connection);
    commitFailed_ = false;
}

KeyId RegistryStore::LastKey() {
    Statement::Run run = Use().lastKey.Start();
    return run.Step() ? run.Integer(0) : 0;
}

void RegistryStore::RequireKey(KeyId key) {
    if (!Use().hasKey.Start(key).Step()) throw RegistryError(ERROR_KEY_DELETED, "the key was deleted");
}

std::optional<KeyId> RegistryStore::FindChild(KeyId key, const RegistryName& name) {
    {
        Statement::Run run = Use().findChild.Start(key, name.folded);
        if (run.Step()) return run.Integer(0);
    }
    RequireKey(key);
    return std::nullopt;
}

KeyId RegistryStore::CreateKey(KeyId key, const KeyPath& path, bool& created) {
    Transaction transaction(*this);
    RequireKey(key);
    created = false;
    for (const RegistryName& name : path) {
        const std::optional<KeyId> child = created ? std::nullopt : FindChild(key, name);
        created = !child;
        if (created) Use().addChild.Execute(key, name.folded, name.text);
        key = created ? sqlite3_last_insert_rowid(connection_.get()) : *child;
    }
    transaction.Commit();
    return key;
}

void RegistryStore::DeleteTree(KeyId key, bool withKey) {
    Transaction transaction(*this);
    RequireKey(key);
    Use().deleteEntries.Execute(key);
    Use().deleteKeys.Execute(key, std::int64_t{withKey});
    transaction.Commit();
}

std::vector<WideString> RegistryStore::ReadChildNames(KeyId key) {
    std::vector<WideString> names;
    Statement::Run run = Use().children.Start(key);
    while (run.Step()) names.push_back(run.Text(0));
    if (names.empty()) RequireKey(key);
    return names;
}

std::vector<RegistryValue> RegistryStore::ReadValues(KeyId key) {
    std::vector<RegistryValue> values;
    Statement::Run run = Use().entries.Start(key);
    while (run.Step()) values.push_back({run.Text(0), static_cast<DWORD>(run.Integer(1)), run.Bytes(2)});
    if (values.empty()) RequireKey(key);
    return values;
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

}  // namespace mvplatform
