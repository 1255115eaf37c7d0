// A layer under SQLite on whose files writing can be made to fail.
#pragma once

// Under every SQLite file that is opened while it lives. One at a time.
class FailingVfs {
public:
    enum class Fault {
        DiskFull,     // no write succeeds from the chosen one on
        InputOutput,  // the chosen call fails, whatever it is
        Kill          // the process ends at the chosen call, as if it were killed
    };

    FailingVfs();
    ~FailingVfs();
    FailingVfs(const FailingVfs&) = delete;
    FailingVfs& operator=(const FailingVfs&) = delete;

    // Of the writes, syncs and truncations from now on the number-th one, counted from 1, is the chosen one.
    static void FailAt(Fault fault, int number) noexcept;
    static bool HasFailed() noexcept;
    static void Rest() noexcept;  // nothing fails
};
