// One store in the hands of several processes, and damaged ones.
#include <store.h>
#include <support/temporaryfolder.h>
#include <uniquehandle.h>
#include <widetext.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
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

class SharedNumber : public SharedStore {
protected:
    SharedNumber() {
        OpenStore(folder_.string());
        EXPECT_EQ(Set(1), ERROR_SUCCESS);
    }

    static LSTATUS Set(DWORD number, const WCHAR* path = W("Software\\shared")) {
        UniqueKey key;
        const LSTATUS status =
            RegCreateKeyExW(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.Put(), nullptr);
        if (status != ERROR_SUCCESS) return status;
        return RegSetValueExW(key.Get(), W("n"), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    }
    // 0 when there is none.
    static DWORD Get(const WCHAR* path = W("Software\\shared")) {
        UniqueKey key;
        DWORD number = 0, bytes = sizeof number;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, key.Put()) == ERROR_SUCCESS)
            RegQueryValueExW(key.Get(), W("n"), nullptr, nullptr, reinterpret_cast<LPBYTE>(&number), &bytes);
        return number;
    }
    // What the function returns in a process of its own.
    template <class Function>
    int Elsewhere(Function function) {
        const pid_t process = fork();
        if (process == 0) {
            CloseStore();  // which is the other process's
            _exit(function());
        }
        int status = 0;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        EXPECT_TRUE(WIFEXITED(status));
        return WEXITSTATUS(status);
    }
    void SetElsewhere(DWORD number) {
        EXPECT_EQ(Elsewhere([&] { return Complaint(folder_).empty() && Set(number) == ERROR_SUCCESS ? 0 : 1; }), 0);
    }
};

TEST_F(SharedNumber, IsReadAsAnyThreadOrProcessLeftItLast) {
    for (const bool inMemory : {false, true}) {
        if (inMemory) OpenStore(":memory:");
        std::atomic<DWORD> written = 0;
        std::vector<std::thread> readers;
        for (int reader = 0; reader < 3; ++reader)
            readers.emplace_back([&] {
                for (DWORD known = 0; known < rounds; known = written) EXPECT_GE(Get(), known);
            });
        for (DWORD number = 1; number <= rounds; ++number) {
            EXPECT_EQ(Set(number), ERROR_SUCCESS);
            written = number;
        }
        for (std::thread& reader : readers) reader.join();
    }
    OpenStore(folder_.string());
    for (const DWORD number : {7u, 8u}) {
        SetElsewhere(number);
        EXPECT_EQ(Get(), number);
    }
}

TEST_F(SharedNumber, IsChangedByATransactionOrByNothingOfIt) {
    UniqueKey lost;
    {
        StoreTransaction outer;
        EXPECT_EQ(Set(2), ERROR_SUCCESS);
        {
            StoreTransaction inner;
            EXPECT_EQ(Set(3), ERROR_SUCCESS);
            EXPECT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, W("Software\\lost"), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                      lost.Put(), nullptr),
                      ERROR_SUCCESS);
        }
        EXPECT_EQ(Get(), 2u);
        std::thread([] { EXPECT_EQ(Get(), 2u); }).join();
        // Has the number of the key that is lost.
        EXPECT_EQ(Set(4, W("Software\\kept")), ERROR_SUCCESS);
        EXPECT_EQ(RegSetValueExW(lost.Get(), W("n"), 0, REG_NONE, nullptr, 0), ERROR_KEY_DELETED);
        std::thread([] {
            StoreTransaction joining;
            Set(5);
            joining.Commit();
        }).join();
        outer.Commit();
    }
    EXPECT_EQ(Get(), 5u);
    EXPECT_EQ(Get(W("Software\\kept")), 4u);
    {
        StoreTransaction outer;
        std::thread([] {
            const StoreTransaction failing;
            Set(6);
        }).join();
        EXPECT_THROW(outer.Commit(), std::runtime_error);
    }
    EXPECT_EQ(Get(), 5u);
}

TEST_F(SharedNumber, IsReadInASnapshot) {
    OpenStore(folder_.string(), StoreAccess::Read);
    EXPECT_EQ(Set(2), ERROR_ACCESS_DENIED);
    {
        const StoreTransaction snapshot;
        SetElsewhere(2);
        EXPECT_EQ(Get(), 1u);
    }
    EXPECT_EQ(Get(), 2u);
}

TEST_F(SharedNumber, IsReadWhereNothingCanBeWritten) {
    CloseStore();
    fs::permissions(folder_ / "registry.sqlite", fs::perms(0444));
    for (const bool besideFiles : {true, false}) {
        fs::permissions(folder_, fs::perms(0755));
        if (!besideFiles)
            for (const char* ending : {"-wal", "-shm"}) fs::remove(folder_ / (std::string("registry.sqlite") + ending));
        fs::permissions(folder_, fs::perms(0555));
        for (const StoreAccess access : {StoreAccess::Read, StoreAccess::ReadMostly}) {
            EXPECT_EQ(Elsewhere([&] {
                          constexpr uid_t nobody = 65534;
                          if (geteuid() == 0 && setuid(nobody) != 0) return 1;
                          OpenStore(folder_.string(), access);
                          if (Get() != 1) return 2;
                          return Set(2) == ERROR_ACCESS_DENIED && Get() == 1 ? 0 : 3;
                      }),
                      0)
                << besideFiles;
        }
    }
    fs::permissions(folder_, fs::perms(0755));
}

TEST_F(SharedStore, IsMadeByWritersAlone) {
    for (const StoreAccess access : {StoreAccess::Read, StoreAccess::ReadMostly})
        EXPECT_THROW(OpenStore((folder_ / "misspelt").string(), access), std::runtime_error);
    EXPECT_FALSE(fs::exists(folder_ / "misspelt"));
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
