// Thousands of conversions in one process leave nothing behind.
#include "boundprovider.h"

#include <livecounts.h>
#include <support/jobdevmode.h>

#include <malloc.h>

#include <filesystem>

namespace {

using Soak = ProviderTest;

// Rounds of two conversions, there and back.
constexpr int kWarmUp = 50;
constexpr int kRounds = 5000;
// The allocator's own rounding, and what caches fill up with once.
constexpr std::size_t kHeapTolerance = 256 * 1024;

std::ptrdiff_t CountOpenFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

TEST_F(Soak, TenThousandConversionsHoldNoMoreThanAHundred) {
    TestDevmode devmode = MakeJobDevmode();  // with its job ticket embedded
    const auto convert = [&] {
        const auto ticket = LoadUsual("PrintTicket", "");
        ASSERT_EQ(press.ToTicket(devmode, ticket), S_OK);
        ASSERT_EQ(press.ToDevmode(ticket, devmode), S_OK);
    };
    for (int i = 0; i < kWarmUp; ++i) convert();
    const std::size_t heapBytes = mallinfo2().uordblks;  // allocated and not freed
    const std::ptrdiff_t files = CountOpenFiles();
    const long nodes = LiveDomObjectCount(), texts = LiveBstrCount();
    for (int i = kWarmUp; i < kRounds; ++i) convert();
    EXPECT_LE(mallinfo2().uordblks, heapBytes + kHeapTolerance);
    EXPECT_EQ(LiveDomObjectCount(), nodes);
    EXPECT_EQ(LiveBstrCount(), texts);
    EXPECT_EQ(CountOpenFiles(), files);
}

}  // namespace
