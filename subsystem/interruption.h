// Work that the user may interrupt, but not in the middle of a file.
#pragma once

// While one of these lives, a request to end the program (Ctrl+C, and what other programs send) is only noted. When the
// last one goes, the program ends as if the request had come then. For any thread.
class InterruptionGuard {
public:
    InterruptionGuard();
    ~InterruptionGuard();
    InterruptionGuard(const InterruptionGuard&) = delete;
    InterruptionGuard& operator=(const InterruptionGuard&) = delete;

    // Whether the work should end at its next step.
    static bool IsRequested() noexcept;
};
