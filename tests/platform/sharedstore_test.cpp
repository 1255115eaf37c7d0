// One store in the hands of several processes, and damaged ones.
#include <store.h>
#include <support/temporaryfolder.h>
#include <uniquehandle.h>
#include <widetext.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
constexpr DWORD rounds = 40;

class SharedStore : public testing::Test {
protected:
    void TearDown() override { CloseStore(); }

    // What OpenStore says; empty when it succeeds.
    static std::string Complaint(const fs::path& folder) {
        try {
            OpenStore(folder.string());
            return {};
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }

    const TemporaryFolder temporary_;
    const fs::path& folder_ = temporary_.GetPath();
};

// Writes and reads back values of its own, in a key shared with the other writers. True when all succeeded.
bool WriteAndRead(WCHAR writer) {
    for (DWORD round = 0; round < rounds; ++round) {
        UniqueKey key;
        const WCHAR name[] = {writer, static_cast<WCHAR>(W('\x4E00') + round), 0};
        DWORD read = 0, bytes = sizeof read;
        if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, W("Software\\shared"), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                            key.Put(), nullptr) != ERROR_SUCCESS ||
            RegSetValueExW(key.Get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&round), 4) != ERROR_SUCCESS ||
            RegQueryValueExW(key.Get(), name, nullptr, nullptr, reinterpret_cast<LPBYTE>(&read), &bytes) !=
                ERROR_SUCCESS ||
            read != round)
            return false;
    }
    return true;
}

DWORD CountValues() {
    UniqueKey key;
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, W("Software\\shared"), 0, KEY_READ, key.Put()), ERROR_SUCCESS);
    DWORD count = 0, characters = 8;
    WCHAR name[8];
    for (; RegEnumValueW(key.Get(), count, name, &characters, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++count)
        characters = 8;
    return count;
}

TEST_F(SharedStore, TakesWritersFromSeveralProcessesAtOnce) {
    std::vector<pid_t> writers;
    for (const WCHAR name : {W('x'), W('y')}) {
        const pid_t process = fork();
        ASSERT_GE(process, 0);
        if (process == 0) {
            const bool succeeded = Complaint(folder_).empty() && WriteAndRead(name);
            CloseStore();
            _exit(succeeded ? 0 : 1);
        }
        writers.push_back(process);
    }
    for (const pid_t process : writers) {
        int status = -1;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        EXPECT_EQ(status, 0);
    }
    OpenStore(folder_.string());
    EXPECT_EQ(CountValues(), 2 * rounds);
}

TEST_F(SharedStore, HoldsWhatAKilledProcessHadWritten) {
    const pid_t process = fork();
    ASSERT_GE(process, 0);
    if (process == 0) {
        OpenStore(folder_.string());
        if (WriteAndRead(W('x'))) kill(getpid(), SIGKILL);
        _exit(1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_TRUE(WIFSIGNALED(status));
    OpenStore(folder_.string());
    EXPECT_EQ(CountValues(), rounds);
}

TEST_F(SharedStore, RefusesFoldersAndFilesThatCannotServe) {
    const fs::path file = folder_ / "registry.sqlite";
    EXPECT_NE(Complaint(""), "");
    EXPECT_NE(Complaint("/proc/no/such/place").find("cannot be made"), std::string::npos);

    WriteTestFile(file, std::string(5000, 'x'));
    EXPECT_NE(Complaint(folder_).find("cannot be opened"), std::string::npos);
    EXPECT_EQ(fs::file_size(file), 5000u);

    fs::remove(file);
    ASSERT_EQ(Complaint(folder_), "");
    CloseStore();
    fs::resize_file(file, fs::file_size(file) / 2);
    EXPECT_NE(Complaint(folder_).find("cannot be opened"), std::string::npos);
}

}  // namespace
