// SpreadCount: a count that many threads change. Each has a part of its own on a cache line of its own, so that none
// waits for another.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>

class SpreadCount {
public:
    void Add(long change) noexcept { parts_[GetOwnPart()].count.fetch_add(change, std::memory_order_relaxed); }
    // Exact when no other thread changes it meanwhile.
    long Get() const noexcept {
        long sum = 0;
        for (const Part& part : parts_) sum += part.count.load(std::memory_order_relaxed);
        return sum;
    }

private:
    static constexpr std::size_t kParts = 16;
    struct alignas(64) Part {
        std::atomic<long> count = 0;
    };

    static std::size_t GetOwnPart() noexcept {
        static constinit std::atomic<std::size_t> threads = 0;
        static constinit thread_local std::size_t number = 0;  // from 1 on
        if (number == 0) number = threads.fetch_add(1, std::memory_order_relaxed) + 1;
        return number % kParts;
    }

    std::array<Part, kParts> parts_;
};
