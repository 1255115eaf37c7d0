// A prepared SQLite statement, its runs, and the errors of the registry's store.
#include "statement.h"

#include <textcodec.h>

namespace mvplatform {

RegistryError LastError(sqlite3* connection) {
    const auto status = [&]() -> LSTATUS {
        switch (sqlite3_errcode(connection) & 0xFF) {
            case SQLITE_NOMEM:
            case SQLITE_TOOBIG:
                return ERROR_NOT_ENOUGH_MEMORY;
            case SQLITE_BUSY:
            case SQLITE_LOCKED:
                return ERROR_BUSY;
            case SQLITE_FULL:
                return ERROR_DISK_FULL;
            case SQLITE_PERM:
            case SQLITE_READONLY:
            case SQLITE_CANTOPEN:
            case SQLITE_AUTH:
                return ERROR_ACCESS_DENIED;
            case SQLITE_CORRUPT:
            case SQLITE_NOTADB:
                return ERROR_REGISTRY_CORRUPT;
            default:
                return ERROR_REGISTRY_IO_FAILED;
        }
    };
    return RegistryError(status(), sqlite3_errmsg(connection));
}

void Statement::Prepare() {
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v3(connection_, sql_, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    statement_.reset(statement);
    if (result != SQLITE_OK) throw LastError(connection_);
}

void Statement::Check(int result) const {
    if (result != SQLITE_OK) throw LastError(connection_);
}

void Statement::Bind(int index, std::int64_t number) { Check(sqlite3_bind_int64(statement_.get(), index, number)); }

void Statement::Bind(int index, const std::string& text) {
    Check(sqlite3_bind_text64(statement_.get(), index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::Bind(int index, BytesView bytes) {
    if (bytes.size == 0) {
        Check(sqlite3_bind_zeroblob(statement_.get(), index, 0));  // a null pointer would bind NULL
    } else {
        Check(sqlite3_bind_blob64(statement_.get(), index, bytes.data, bytes.size, SQLITE_STATIC));
    }
}

Statement::Run::~Run() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

bool Statement::Run::Step() {
    switch (sqlite3_step(statement_)) {
        case SQLITE_ROW:
            return true;
        case SQLITE_DONE:
            return false;
        default:
            throw LastError(sqlite3_db_handle(statement_));
    }
}

WideString Statement::Run::Text(int column) const {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    const auto bytes = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return text ? WideFromUtf8({text, bytes}, BadText::Keep) : WideString();
}

std::vector<BYTE> Statement::Run::Bytes(int column) const {
    const BYTE* data = static_cast<const BYTE*>(sqlite3_column_blob(statement_, column));
    const int bytes = sqlite3_column_bytes(statement_, column);
    return data ? std::vector<BYTE>(data, data + bytes) : std::vector<BYTE>();
}

}  // namespace mvplatform
