// The counters of questions to the stand-in.
#include "questioncount.h"

#include <array>
#include <atomic>

namespace {

std::array<std::atomic<std::size_t>, kSpoolerQuestionCount> counts;

}  // namespace

std::size_t GetSpoolerQuestionCount(SpoolerQuestion question) noexcept {
    return counts[static_cast<std::size_t>(question)].load(std::memory_order_relaxed);
}

void CountQuestion(SpoolerQuestion question) noexcept {
    counts[static_cast<std::size_t>(question)].fetch_add(1, std::memory_order_relaxed);
}
