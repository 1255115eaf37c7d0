// The process's store: the connection that writes, its transactions, and what threads that read need of it.
#include "sharedstore.h"

#include "storechange.h"

namespace mvplatform {

// A call that changes the store, alone on the connection that writes.
class SharedStore::Change {
public:
    explicit Change(SharedStore& store) : store_(store), lock_(store.mutex_) {
        if (store_.access_ == StoreAccess::Read)
            throw RegistryError(ERROR_ACCESS_DENIED, "the store was opened for reading");
        store_.GetMain();
    }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;
    RegistryStore* operator->() const noexcept { return store_.main_.get(); }

private:
    SharedStore& store_;
    const std::lock_guard<std::mutex> lock_;
    const StoreChange change_;
};

SharedStore::SharedStore(const std::string& file, StoreAccess access)
    : file_(file), access_(access), inMemory_(file == ":memory:") {
    if (access == StoreAccess::Write) {
        main_ = std::make_unique<RegistryStore>(file, FileUse::Make);
    } else {
        spare_ = std::make_unique<RegistryStore>(file, FileUse::Read);
    }
}

void SharedStore::Close() noexcept {
    const std::lock_guard lock(mutex_);
    cache_.Clear();
    main_.reset();
    spare_.reset();
    closed_ = true;
    depth_ = 0;
}

bool SharedStore::IsClosed() noexcept {
    const std::lock_guard lock(mutex_);
    return closed_;
}

std::unique_ptr<RegistryStore> SharedStore::TakeReader() {
    {
        const std::lock_guard lock(mutex_);
        if (spare_) return std::move(spare_);
    }
    return std::make_unique<RegistryStore>(file_, FileUse::Read);
}

RegistryStore& SharedStore::GetMain() {
    if (closed_) throw RegistryError(ERROR_INVALID_HANDLE, "the store was closed");
    if (!main_ && access_ == StoreAccess::Read) main_ = std::move(spare_);
    if (!main_)
        main_ = std::make_unique<RegistryStore>(file_, access_ == StoreAccess::Read ? FileUse::Read : FileUse::Change);
    return *main_;
}

KeyId SharedStore::CreateKey(KeyId key, const KeyPath& path, bool& created) {
    const Change main(*this);
    const KeyId id = main->CreateKey(key, path, created);
    if (created) cache_.ForgetWhatIsMissing();
    return id;
}

void SharedStore::DeleteTree(KeyId key, bool withKey) {
    const Change main(*this);
    cache_.Clear();
    main->DeleteTree(key, withKey);
}

void SharedStore::WriteValue(KeyId key, const RegistryName& name, DWORD type, BytesView data) {
    const Change main(*this);
    cache_.ForgetValues(key);
    main->WriteValue(key, name, type, data);
}

bool SharedStore::DeleteValue(KeyId key, const RegistryName& name) {
    const Change main(*this);
    cache_.ForgetValues(key);
    return main->DeleteValue(key, name);
}

SharedStore::Part SharedStore::Begin() {
    const std::lock_guard lock(mutex_);
    if (depth_ != 0 && owner_ != std::this_thread::get_id()) {
        ++joined_;
        return {true, 0};
    }
    RegistryStore& main = GetMain();
    main.Begin();
    if (depth_ == 0) cache_.Clear();
    owner_ = std::this_thread::get_id();
    ++depth_;
    return {false, main.LastKey()};
}

void SharedStore::Commit(const Part& part) {
    const std::lock_guard lock(mutex_);
    RegistryStore& main = GetMain();
    if (part.joins) {
        if (joined_ == 0) throw RegistryError(ERROR_BUSY, "the transaction that it was part of has ended");
        --joined_;
        return;
    }
    if (depth_ == 1 && joined_ != 0)
        throw RegistryError(ERROR_BUSY, "another thread's part of the changes is not complete");
    main.Commit();
    EndPart();
}

void SharedStore::Rollback(const Part& part) noexcept {
    const std::lock_guard lock(mutex_);
    if (part.joins || closed_) return;
    main_->Rollback();
    cache_.Clear();
    EndPart();
}

void SharedStore::EndPart() noexcept {
    NoteStoreChange();
    if (--depth_ != 0) return;
    joined_ = 0;
    cache_.Clear();
}

}  // namespace mvplatform
