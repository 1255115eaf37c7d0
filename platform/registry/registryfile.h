// Opening the registry's database file: making it, checking it, setting it up.
#pragma once

#include <sqlite3.h>

namespace mvplatform {

// Makes the connection ready: several processes may write, every write is on disk when it returns, the tables exist.
// Throws RegistryError when the file is not a registry store, is damaged or cannot be written.
void PrepareRegistryFile(sqlite3* connection);

}  // namespace mvplatform
