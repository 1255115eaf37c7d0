// The error of the last call, and critical sections.
#include <windows.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(System, EveryThreadHasItsOwnLastError) {
    SetLastError(ERROR_MORE_DATA);
    DWORD other = 1;
    std::thread([&] {
        other = GetLastError();
        SetLastError(ERROR_NOT_FOUND);
    }).join();
    EXPECT_EQ(other, DWORD{ERROR_SUCCESS});
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MORE_DATA});
}

TEST(System, CriticalSectionsAreEnteredAgainByTheirThreadOnly) {
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    int count = 0;
    const auto work = [&] {
        for (int round = 0; round < 2000; ++round) {
            EnterCriticalSection(&section);
            EnterCriticalSection(&section);
            LeaveCriticalSection(&section);
            count = count + 1;
            LeaveCriticalSection(&section);
        }
    };
    std::thread other(work);
    work();
    other.join();
    DeleteCriticalSection(&section);
    EXPECT_EQ(count, 4000);
}

}  // namespace
