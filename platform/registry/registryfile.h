// Opening the registry's database file: making it, checking it, setting it up.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

namespace mvplatform {

struct CloseConnection {
    void operator()(sqlite3* connection) const noexcept { sqlite3_close(connection); }
};
using UniqueConnection = std::unique_ptr<sqlite3, CloseConnection>;

enum class FileUse { Read, Change, Make };  // Make: made when it is missing; the others take an existing file

// A connection to the file that is ready: several processes may write, every write is on disk when it returns, the
// tables exist. ":memory:" is a database of the connection's own. Throws RegistryError: ERROR_FILE_NOT_FOUND when there
// is no file or it has no tables yet and none are to be made; other errors when it is not a registry store, is damaged
// or cannot be used so.
UniqueConnection OpenRegistryFile(const std::string& file, FileUse use);

// A transaction whose commit has failed may lie whole in the log, and be taken for a committed one when all processes
// have gone: an empty one takes its place.
void ReplaceFailedCommit(sqlite3* connection) noexcept;

}  // namespace mvplatform
