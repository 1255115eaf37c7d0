// Opening the registry's database file: making it, checking it, setting it up.
#include "registryfile.h"

#include "statement.h"

#include <chrono>
#include <string>
#include <thread>

namespace mvplatform {
namespace {

constexpr std::chrono::milliseconds patience{10'000};
constexpr std::chrono::milliseconds pause{20};

constexpr std::int64_t applicationId = 0x4D565247;  // "MVRG"
constexpr std::int64_t fileVersion = 1;

// Ids are never used twice, so that a handle to a deleted key cannot reach a later one. Values keep the order in which
// they were first written.
constexpr const char* schema = R"(
    CREATE TABLE keys (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        parent INTEGER NOT NULL,
        folded TEXT NOT NULL,
        name TEXT NOT NULL,
        UNIQUE (parent, folded));
    CREATE TABLE entries (
        place INTEGER PRIMARY KEY,
        key INTEGER NOT NULL,
        folded TEXT NOT NULL,
        name TEXT NOT NULL,
        type INTEGER NOT NULL,
        data BLOB NOT NULL,
        UNIQUE (key, folded));
    CREATE INDEX entries_in_order ON entries (key);
    INSERT INTO keys (id, parent, folded, name) VALUES
        (1, 0, 'HKEY_CURRENT_USER', 'HKEY_CURRENT_USER'),
        (2, 0, 'HKEY_LOCAL_MACHINE', 'HKEY_LOCAL_MACHINE');
    PRAGMA application_id = 1297502791;
    PRAGMA user_version = 1;
)";
static_assert(applicationId == 1297502791 && fileVersion == 1, "as the schema writes them");

void Execute(sqlite3* connection, const char* sql) {
    if (sqlite3_exec(connection, sql, nullptr, nullptr, nullptr) != SQLITE_OK) throw LastError(connection);
}

std::int64_t Number(sqlite3* connection, const char* sql) {
    Statement statement(connection, sql);
    Statement::Run run = statement.Start();
    return run.Step() ? run.Integer(0) : 0;
}

// True when the tables are there. Throws when the file is somebody else's.
bool HasTables(sqlite3* connection) {
    const std::int64_t application = Number(connection, "PRAGMA application_id");
    if (application == applicationId && Number(connection, "PRAGMA user_version") == fileVersion) return true;
    if (application == 0 && Number(connection, "SELECT count(*) FROM sqlite_schema") == 0) return false;
    throw RegistryError(ERROR_REGISTRY_CORRUPT, "it is not a registry store of this version");
}

// One transaction for the look and the making: another process may be making the tables.
void PrepareTables(sqlite3* connection) {
    Execute(connection, "BEGIN");
    try {
        if (!HasTables(connection)) Execute(connection, schema);
        Execute(connection, "COMMIT");
    } catch (...) {
        if (!sqlite3_get_autocommit(connection)) sqlite3_exec(connection, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

}  // namespace

void PrepareRegistryFile(sqlite3* connection) {
    sqlite3_busy_timeout(connection, static_cast<int>(patience.count()));
    if (sqlite3_db_readonly(connection, "main") == 1) throw RegistryError(ERROR_ACCESS_DENIED, "it cannot be written");
    // SQLite does not wait by itself while another process turns the new file's journal over, nor where one has begun
    // to write since this one looked.
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        try {
            Execute(connection, "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;");
            PrepareTables(connection);
            return;
        } catch (const RegistryError& error) {
            if (error.GetStatus() != ERROR_BUSY || std::chrono::steady_clock::now() > deadline) throw;
            std::this_thread::sleep_for(pause);
        }
    }
}

}  // namespace mvplatform
