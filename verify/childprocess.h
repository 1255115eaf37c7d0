// ChildProcess: this program again, in a process of its own that may crash or hang.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

class ChildProcess {
public:
    // Starts it with these arguments (UTF-8), its standard output closed to it and its errors the parent's. Throws
    // OperationError when it cannot be started.
    explicit ChildProcess(const std::vector<std::string>& arguments);
    ~ChildProcess();  // kills it when it still runs
    ChildProcess(ChildProcess&&) noexcept;

    // Nothing while it runs; then how it ended: empty for exit status 0, else in words, such as "signal SEGV",
    // "exception 0xC0000005" or "exit status 1".
    std::optional<std::string> Poll();
    void Kill();

private:
    struct State;
    std::unique_ptr<State> state_;
};

// In the child: crashes end it at once, without a dialogue or a debugger; so does the end of its parent.
void PrepareForCrashes();
