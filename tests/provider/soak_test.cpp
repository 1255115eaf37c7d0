// Thousands of conversions in one process leave nothing behind.
#include "boundprovider.h"

#include <livecounts.h>
#include <support/jobdevmode.h>
#include <support/processuse.h>

namespace {

using Soak = ProviderTest;

// Rounds of two conversions, there and back.
constexpr int kWarmUp = 50;
constexpr int kRounds = 5000;
// The allocator's own rounding, and what caches fill up with once.
constexpr std::size_t kHeapTolerance = std::size_t{256} * 1024;

TEST_F(Soak, TenThousandConversionsHoldNoMoreThanAHundred) {
    TestDevmode devmode = MakeJobDevmode();  // with its job ticket embedded
    const auto convert = [&] {
        const auto ticket = LoadUsual("PrintTicket", "");
        ASSERT_EQ(press.ToTicket(devmode, ticket), S_OK);
        ASSERT_EQ(press.ToDevmode(ticket, devmode), S_OK);
    };
    for (int i = 0; i < kWarmUp; ++i) convert();
    const ProcessUse early = MeasureProcessUse();
    const long nodes = LiveDomObjectCount(), texts = LiveBstrCount();
    for (int i = kWarmUp; i < kRounds; ++i) convert();
    const ProcessUse late = MeasureProcessUse();
    EXPECT_LE(late.heapBytes, early.heapBytes + kHeapTolerance);
    EXPECT_EQ(late.openHandles, early.openHandles);
    EXPECT_EQ(LiveDomObjectCount(), nodes);
    EXPECT_EQ(LiveBstrCount(), texts);
}

}  // namespace
