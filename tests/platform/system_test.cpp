// The error of the last call, critical sections, the version, and the debugger's output.
#include <objbase.h>
#include <oleauto.h>
#include <widetext.h>
#include <windows.h>

#include <gtest/gtest.h>

#include <stdlib.h>
#include <ctime>

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

TEST(System, VersionNeedsTheRecordsSize) {
    OSVERSIONINFOW version = {};
    EXPECT_FALSE(GetVersionExW(&version));
    version.dwOSVersionInfoSize = sizeof version;
    ASSERT_TRUE(GetVersionExW(&version));
    EXPECT_EQ(version.dwMajorVersion, 10u);
    EXPECT_EQ(version.dwMinorVersion, 0u);
    EXPECT_EQ(version.dwPlatformId, DWORD{VER_PLATFORM_WIN32_NT});
}

TEST(System, DebugOutputIsSilentUnlessAskedFor) {
    for (const bool asked : {false, true}) {
        asked ? setenv("MVPT_DEBUG", "1", 1) : unsetenv("MVPT_DEBUG");
        testing::internal::CaptureStderr();
        OutputDebugStringW(W("\x00E9\xD83D\xDE00"));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), asked ? "\xC3\xA9\xF0\x9F\x98\x80" : "");
    }
    unsetenv("MVPT_DEBUG");
}

TEST(System, InterfaceIdsAreToldApart) {
    EXPECT_TRUE(IsEqualIID(IID_IUnknown, IID{0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}}));
    EXPECT_FALSE(IsEqualIID(IID_IUnknown, IID_IDispatch));
}

TEST(System, TellsTheTimeSince1601) {
    FILETIME time = {};
    GetSystemTimeAsFileTime(&time);
    const std::uint64_t steps = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    const std::uint64_t secondsSince1970 = steps / 10'000'000 - 11644473600;
    const auto now = static_cast<std::uint64_t>(std::time(nullptr));
    EXPECT_LE(now - secondsSince1970 + 5, 10u);
}

}  // namespace
