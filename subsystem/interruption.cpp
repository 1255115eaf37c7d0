// Work that the user may interrupt, but not in the middle of a file.
#include "interruption.h"

#include <atomic>
#include <csignal>
#include <iterator>
#include <mutex>

namespace {

constexpr int kRequests[] = {
    SIGINT, SIGTERM,
#ifndef _WIN32
    SIGHUP,  // the terminal has gone
#endif
};

using Handler = void (*)(int);

std::mutex guardsMutex;
int guards = 0;
Handler before[std::size(kRequests)];
std::atomic<int> requested = 0;  // the number of the first request; a handler may write nothing but this
static_assert(std::atomic<int>::is_always_lock_free);

void Note(int request) {
    int none = 0;
    requested.compare_exchange_strong(none, request);
}

}  // namespace

InterruptionGuard::InterruptionGuard() {
    const std::lock_guard lock(guardsMutex);
    if (guards++ != 0) return;
    for (std::size_t index = 0; index < std::size(kRequests); ++index) {
        before[index] = std::signal(kRequests[index], Note);
        // What the parent process wants ignored stays so.
        if (before[index] == SIG_IGN) std::signal(kRequests[index], SIG_IGN);
    }
}

InterruptionGuard::~InterruptionGuard() {
    const std::lock_guard lock(guardsMutex);
    if (--guards != 0) return;
    for (std::size_t index = 0; index < std::size(kRequests); ++index)
        if (before[index] != SIG_ERR) std::signal(kRequests[index], before[index]);
    if (const int request = requested.exchange(0)) std::raise(request);
}

bool InterruptionGuard::IsRequested() noexcept { return requested.load() != 0; }
