// A prepared SQLite statement, its runs, and the errors of the registry's store.
#pragma once

#include <widetext.h>
#include <windows.h>

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace mvplatform {

// What a registry function answers when it does not succeed; what() is a sentence about it.
class RegistryError : public std::runtime_error {
public:
    RegistryError(LSTATUS status, const std::string& message) : std::runtime_error(message), status_(status) {}
    LSTATUS GetStatus() const noexcept { return status_; }

private:
    LSTATUS status_;
};

// The registry error for what the connection reported last, with SQLite's own words.
RegistryError LastError(sqlite3* connection);

struct BytesView {
    const BYTE* data;
    std::size_t size;
};

// A statement that is prepared when it is first run, and run many times, by one thread at a time.
class Statement {
public:
    // One run: rows are read until Step answers false; then, or when the run goes, the statement is free again.
    class Run {
    public:
        explicit Run(sqlite3_stmt* statement) : statement_(statement) {}
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;
        ~Run();

        // True when there is a row. Throws RegistryError.
        bool Step();
        // Of the current row.
        std::int64_t Integer(int column) const { return sqlite3_column_int64(statement_, column); }
        WideString Text(int column) const;
        std::vector<BYTE> Bytes(int column) const;

    private:
        sqlite3_stmt* statement_;
    };

    // The text lives as long as the statement.
    Statement(sqlite3* connection, const char* sql) noexcept : connection_(connection), sql_(sql) {}

    // Starts a run with these parameters. Text is copied; bytes must live as long as the run. Throws RegistryError.
    template <class... Parameters>
    Run Start(const Parameters&... parameters) {
        if (!statement_) Prepare();
        [[maybe_unused]] int index = 0;
        (Bind(++index, parameters), ...);
        return Run(statement_.get());
    }
    // Runs to the end; the rows are of no interest.
    template <class... Parameters>
    void Execute(const Parameters&... parameters) {
        Run run = Start(parameters...);
        while (run.Step()) {
        }
    }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };

    void Prepare();
    void Bind(int index, std::int64_t number);
    void Bind(int index, const std::string& text);
    void Bind(int index, BytesView bytes);
    void Check(int result) const;

    sqlite3* connection_;
    const char* sql_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

}  // namespace mvplatform
