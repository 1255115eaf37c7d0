// Opening the registry's database file: making it, checking it, setting it up.
#include "registryfile.h"

#include "statement.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>

namespace mvplatform {
namespace {

constexpr std::chrono::milliseconds patience{10'000};
constexpr std::chrono::milliseconds pause{20};

constexpr std::int64_t applicationId = 0x4D565247;  // "MVRG"
constexpr std::int64_t fileVersion = 1;
constexpr const char* setVersion = "PRAGMA user_version = 1";

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

// True when the tables are there. Throws when the file is somebody else's. The tables are counted first: another
// process that makes them meanwhile has written the numbers with them.
bool HasTables(sqlite3* connection) {
    const std::int64_t tables = Number(connection, "SELECT count(*) FROM sqlite_schema");
    const std::int64_t application = Number(connection, "PRAGMA application_id");
    if (application == applicationId && Number(connection, "PRAGMA user_version") == fileVersion) return true;
    if (application == 0 && tables == 0) return false;
    throw RegistryError(ERROR_REGISTRY_CORRUPT, "it is not a registry store of this version");
}

// Of several processes one makes them; another may have done so since this one looked.
void MakeTables(sqlite3* connection) {
    Execute(connection, "PRAGMA journal_mode = WAL; BEGIN IMMEDIATE");
    try {
        if (!HasTables(connection)) {
            Execute(connection, schema);
            Execute(connection, setVersion);
        }
        Execute(connection, "COMMIT");
    } catch (...) {
        if (!sqlite3_get_autocommit(connection)) sqlite3_exec(connection, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

void Prepare(sqlite3* connection, FileUse use) {
    if (!HasTables(connection)) {
        if (use != FileUse::Make) throw RegistryError(ERROR_FILE_NOT_FOUND, "it is empty");
        MakeTables(connection);
    }
    if (use == FileUse::Read) return;
    // The files beside it stay, so that who may not write in the folder can read while others write.
    Execute(connection, "PRAGMA synchronous = FULL; PRAGMA journal_size_limit = 4194304");
    int keep = 1;
    sqlite3_file_control(connection, "main", SQLITE_FCNTL_PERSIST_WAL, &keep);
}

// Nobody asks how much memory the library takes. To count it, all threads would wait for one mutex at every allocation.
void LeaveMemoryUncounted() {
    static const int result = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);  // refused when the library is in use already
    static_cast<void>(result);
}

UniqueConnection Connect(const std::string& file, int flags) {
    LeaveMemoryUncounted();
    sqlite3* opened = nullptr;
    const int result =
        sqlite3_open_v2(file.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    UniqueConnection connection(opened);
    if (!connection) throw RegistryError(ERROR_NOT_ENOUGH_MEMORY, "out of memory");
    if (result != SQLITE_OK) throw LastError(opened);
    sqlite3_busy_timeout(opened, static_cast<int>(patience.count()));
    return connection;
}

UniqueConnection ConnectAndPrepare(const std::string& file, FileUse use, int flags) {
    UniqueConnection connection = Connect(file, flags);
    if (use != FileUse::Read && sqlite3_db_readonly(connection.get(), "main") == 1)
        throw RegistryError(ERROR_ACCESS_DENIED, "this user cannot write it");
    Prepare(connection.get(), use);
    return connection;
}

// The log holds changes that are not in the file yet.
bool HasLog(const std::string& file) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file + "-wal", error);
    return !error && size != 0;
}

// For SQLite, a file that nobody changes: without the files beside it, in a folder where they cannot be made.
std::string NameOfUnchanging(const std::string& file) {
    std::string name = "file:";
    for (const char character : file) {
        if (character == '%' || character == '?' || character == '#') {
            name += character == '%' ? "%25" : character == '?' ? "%3f" : "%23";
        } else {
            name += character;
        }
    }
    return name + "?immutable=1";
}

UniqueConnection ConnectForReading(const std::string& file) {
    try {
        return ConnectAndPrepare(file, FileUse::Read, SQLITE_OPEN_READONLY);
    } catch (const RegistryError& error) {
        if (error.GetStatus() != ERROR_ACCESS_DENIED || HasLog(file)) throw;
    }
    return ConnectAndPrepare(NameOfUnchanging(file), FileUse::Read, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

UniqueConnection ConnectForChanging(const std::string& file, FileUse use) {
    return ConnectAndPrepare(file, use, SQLITE_OPEN_READWRITE | (use == FileUse::Make ? SQLITE_OPEN_CREATE : 0));
}

}  // namespace

UniqueConnection OpenRegistryFile(const std::string& file, FileUse use) {
    // SQLite does not wait by itself while another process turns the new file's journal over.
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        try {
            return use == FileUse::Read ? ConnectForReading(file) : ConnectForChanging(file, use);
        } catch (const RegistryError& error) {
            if (error.GetStatus() != ERROR_BUSY || std::chrono::steady_clock::now() > deadline) throw;
            std::this_thread::sleep_for(pause);
        }
    }
}

// Setting what is set already writes the page all the same.
void ReplaceFailedCommit(sqlite3* connection) noexcept {
    sqlite3_exec(connection, setVersion, nullptr, nullptr, nullptr);
}

}  // namespace mvplatform
