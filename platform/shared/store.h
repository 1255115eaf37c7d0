// The store: the two registry hives that the process sees. Natively an SQLite file; on Windows a subtree of the current
// user's hive that stands in for both predefined keys. Chosen once, before anything else runs.
#pragma once

#include <string>

// Natively the folder of the store's file (made when missing), or ":memory:" for a store that ends with the process.
// On Windows the subtree's name is made from the folder's; ":memory:" gives a subtree of the process's own, removed by
// CloseStore. Throws std::runtime_error with a sentence for the user when the store cannot be opened.
void OpenStore(const std::string& folderUtf8);
// Closes the store; keys still open answer ERROR_INVALID_HANDLE or ERROR_KEY_DELETED from then on.
void CloseStore() noexcept;
