// Opening and closing the store, and its transactions.
#include <store.h>

#include "../protect/protectionkey.h"
#include "openkeys.h"
#include "storechange.h"

#include <filesystem>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <system_error>

using namespace mvplatform;

namespace {

namespace fs = std::filesystem;

constexpr const char* inMemory = ":memory:";
constexpr const char* fileName = "registry.sqlite";

FileUse GetUse(StoreAccess access) {
    return access == StoreAccess::Write ? FileUse::Make : access == StoreAccess::Read ? FileUse::Read : FileUse::Change;
}

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
        auto store = std::make_shared<RegistryStore>(file, GetUse(access));
        OpenKeys& keys = OpenKeys::GetInstance();
        const std::lock_guard lock(keys.GetMutex());
        keys.Replace(std::move(store));
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
    OpenKeys& keys = OpenKeys::GetInstance();
    const std::lock_guard lock(keys.GetMutex());
    keys.Replace(nullptr);
    ProtectionKey::GetInstance().UseFolder(std::nullopt);
}

struct StoreTransaction::State {
    std::shared_ptr<RegistryStore> store;
    KeyId lastKey = 0;
};

StoreTransaction::StoreTransaction() : state_(std::make_unique<State>()) {
    OpenKeys& keys = OpenKeys::GetInstance();
    const std::lock_guard lock(keys.GetMutex());
    try {
        state_->store = keys.GetStore();
        state_->store->Begin();
        state_->lastKey = state_->store->LastKey();
    } catch (const RegistryError& error) {
        throw std::runtime_error(std::string("The store cannot be used: ") + error.what() + ".");
    }
}

StoreTransaction::~StoreTransaction() {
    if (!state_->store) return;
    OpenKeys& keys = OpenKeys::GetInstance();
    const std::lock_guard lock(keys.GetMutex());
    const StoreChange change;
    state_->store->Rollback();
    keys.Forget(state_->lastKey);
}

void StoreTransaction::Commit() {
    OpenKeys& keys = OpenKeys::GetInstance();
    const std::lock_guard lock(keys.GetMutex());
    try {
        state_->store->Commit();
    } catch (const RegistryError& error) {
        throw std::runtime_error(std::string("The store cannot be changed: ") + error.what() + ".");
    }
    state_->store.reset();
}
