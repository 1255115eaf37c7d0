// The store as one thread sees it.
#include "storeview.h"

#include "storechange.h"

namespace mvplatform {
namespace {

constexpr int bytesOfIndexPart = 32 * 1024;  // in which SQLite maps the index of its log

// The head of the index of the file's log, where connections of all processes look for changes; null where there is no
// such memory. https://www.sqlite.org/walformat.html describes it.
const std::uint64_t* FindLogIndex(sqlite3* connection) {
    sqlite3_file* file = nullptr;
    if (sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK || !file ||
        !file->pMethods || file->pMethods->iVersion < 2 || !file->pMethods->xShmMap)
        return nullptr;
    if (sqlite3_uri_boolean(sqlite3_db_filename(connection, "main"), "immutable", 0)) return nullptr;
    void volatile* part = nullptr;
    const int result = file->pMethods->xShmMap(file, 0, bytesOfIndexPart, 0, &part);
    if (result != SQLITE_OK && result != SQLITE_READONLY) return nullptr;
    return static_cast<const std::uint64_t*>(const_cast<void*>(part));
}

}  // namespace

std::optional<StoreView::State> StoreView::GetState() {
    if (store_->IsInMemory()) return State{GetNotedState()};
    if (!reader_) {
        reader_ = store_->TakeReader();
        logIndex_ = FindLogIndex(reader_->GetConnection());
    }
    if (!logIndex_) return std::nullopt;
    State state;
    for (std::size_t at = 0; at < state.size(); ++at) state[at] = __atomic_load_n(logIndex_ + at, __ATOMIC_ACQUIRE);
    return state;
}

bool StoreView::NoteChanges() {
    // In a transaction the process's own changes are all that there are; so they are in memory.
    if (store_->IsInTransaction() || store_->IsInMemory()) return true;
    const std::optional<State> state = GetState();
    if (state && *state != noted_) NoteStoreChange();
    noted_ = state.value_or(State());
    return state.has_value();
}

void StoreView::Ask(const std::function<void(RegistryStore&)>& question) {
    if (reader_) {
        question(*reader_);
    } else {
        store_->UseMain([&](AnswerCache&, AnswerSource& source) { source.Ask(question); });
    }
}

}  // namespace mvplatform
