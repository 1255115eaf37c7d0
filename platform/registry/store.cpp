// Opening and closing the store, and its transactions.
#include <store.h>

#include "../protect/protectionkey.h"
#include "openkeys.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>

using namespace mvplatform;

namespace {

namespace fs = std::filesystem;

constexpr const char* inMemory = ":memory:";
constexpr const char* fileName = "registry.sqlite";

// The whole path, in an existing folder when the store may be made.
fs::path FindFolder(const std::string& folderUtf8, StoreAccess access) {
    std::error_code error;
    fs::path folder = fs::absolute(folderUtf8, error);
    if (access != StoreAccess::Write) {
        if (error || !IsStore(folderUtf8)) throw std::runtime_error("There is no store in " + folderUtf8 + ".");
        return folder;
    }
    if (!error) fs::create_directories(folder, error);
    if (error)
        throw std::runtime_error("The store's folder " + folderUtf8 + " cannot be made: " + error.message() + ".");
    return folder;
}

}  // namespace

void OpenStore(const std::string& folderUtf8, StoreAccess access) {
    if (folderUtf8.empty()) throw std::runtime_error("The store needs the name of a folder.");
    std::string file = folderUtf8;
    std::optional<fs::path> folder;
    if (file == inMemory) {
        access = StoreAccess::Write;
    } else {
        folder = FindFolder(folderUtf8, access);
        file = (*folder / fileName).string();
    }
    try {
        OpenKeys::GetInstance().Replace(std::make_shared<SharedStore>(file, access));
        ProtectionKey::GetInstance().UseFolder(std::move(folder));
    } catch (const RegistryError& error) {
        if (error.GetStatus() == ERROR_FILE_NOT_FOUND)
            throw std::runtime_error("There is no store in " + folderUtf8 + ".");
        throw std::runtime_error("The store " + file + " cannot be opened: " + error.what() + ".");
    }
}

bool IsStore(const std::string& folderUtf8) {
    std::error_code error;
    return fs::exists(fs::path(folderUtf8) / fileName, error);
}

void CloseStore() noexcept {
    OpenKeys::GetInstance().Replace(nullptr);
    ProtectionKey::GetInstance().UseFolder(std::nullopt);
}

struct StoreTransaction::State {
    std::shared_ptr<SharedStore> store = OpenKeys::GetInstance().GetStore();
    SharedStore::Part part = store->Begin();
    bool open = true;
};

StoreTransaction::StoreTransaction() try : state_(std::make_unique<State>()) {
} catch (const RegistryError& error) {
    throw std::runtime_error(std::string("The store cannot be used: ") + error.what() + ".");
}

StoreTransaction::~StoreTransaction() {
    if (!state_->open || state_->store->IsClosed()) return;
    // Before others can get the numbers of the keys that were made.
    if (!state_->part.joins) OpenKeys::GetInstance().Forget(state_->part.lastKey);
    state_->store->Rollback(state_->part);
}

void StoreTransaction::Commit() try {
    state_->store->Commit(state_->part);
    state_->open = false;
} catch (const RegistryError& error) {
    throw std::runtime_error(std::string("The store cannot be changed: ") + error.what() + ".");
}
