// How a library is found at its first use, what happens when it is nowhere, and how it goes with its user.
#include <dlldelayloader.h>
#include <support/printerfixture.h>

#include <uniquehandle.h>
#include <windows.h>
// After windows.h, which it needs.
#include <delayimp.h>

#include <gtest/gtest.h>

#include <mvutil/morvaneexception.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* kLibrary = "mvcoreC0.dll";

UniqueModule LoadFile(const fs::path& file) {
    fs::path path = file;
    return UniqueModule(
        LoadLibraryExW(path.make_preferred().string<WCHAR>().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
}

void PutCore(const fs::path& folder, int mark) {
    fs::create_directories(folder);
    fs::copy_file(ProgramFolder() / ("core" + std::to_string(mark) + ".dll"), folder / kLibrary);
}

// A copy of the probe in a folder, loaded.
class Probe {
public:
    explicit Probe(const fs::path& folder) {
        fs::create_directories(folder);
        fs::copy_file(ProgramFolder() / "p.dll", folder / "p.dll");
        module_ = LoadFile(folder / "p.dll");
        if (!module_) throw std::runtime_error("the probe does not load");
    }
    int Call() const { return Get<int (*)()>("ProbeCall")(); }
    UniqueModule Resolve() const { return UniqueModule(Get<HMODULE (*)()>("ProbeResolve")()); }
    void NoteProcessEnding() const { Get<void (*)()>("ProbeNoteProcessEnding")(); }
    int CountRecords() const { return Get<int (*)()>("ProbeRecordCount")(); }

private:
    template <class Function>
    Function Get(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(module_.Get(), name)));
    }
    UniqueModule module_;
};

class DllDelayLoaderTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(GetModuleHandleA(kLibrary), nullptr) << "something left the library loaded"; }
    void TearDown() override { EXPECT_EQ(GetModuleHandleA(kLibrary), nullptr) << "the library outlives its user"; }

    // Makes the spooler answer the folder as the printer driver directory.
    static void SetDriverDirectory(fs::path folder) {
        const WideString path = folder.make_preferred().string<WCHAR>();
        UniqueKey key;
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, W("SYSTEM\\CurrentControlSet\\Control\\Print"), 0, nullptr,
                                  REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, key.Put(), nullptr),
                  ERROR_SUCCESS);
        const auto bytes = static_cast<DWORD>((path.size() + 1) * sizeof(WCHAR));
        RegSetValueExW(key.Get(), W("DriverDirectory"), 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()), bytes);
    }

    TestStore store_;
    const TemporaryFolder temporary_;
    const fs::path& folder_ = temporary_.GetPath();
};

TEST_F(DllDelayLoaderTest, LooksInTheProcessThenBesideTheComponentThenInTheDriverDirectory) {
    const struct {
        const char* what;
        bool inProcess, beside, inDriverDirectory;
        int found;
    } rows[] = {{"everywhere", true, true, true, 1},
                {"not loaded", false, true, true, 2},
                {"loaded, not beside", true, false, true, 1},
                {"with the driver only", false, false, true, 3},
                {"nowhere", false, false, false, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const fs::path base = folder_ / row.what;
        SetDriverDirectory(base / "drivers");
        if (row.inProcess) PutCore(base / "process", 1);
        if (row.beside) PutCore(base / "component", 2);
        if (row.inDriverDirectory) PutCore(base / "drivers" / "3", 3);
        const UniqueModule inProcess = row.inProcess ? LoadFile(base / "process" / kLibrary) : UniqueModule();
        const Probe probe(base / "component");
        EXPECT_EQ(probe.CountRecords(), 0) << "loaded before its first use";
        EXPECT_EQ(probe.Call(), row.found);
        EXPECT_EQ(probe.CountRecords(), row.found ? 1 : 0);
    }
}

TEST_F(DllDelayLoaderTest, SkipsAPathOfMoreThan260Characters) {
    for (const std::size_t length : {259u, 260u, 261u}) {
        const std::size_t taken = folder_.string().size() + 2 + std::string(kLibrary).size();
        const fs::path component = folder_ / std::string(length - taken, 'x');
        PutCore(component, 2);
        ASSERT_EQ((component / kLibrary).string().size(), length);
        EXPECT_EQ(Probe(component).Call(), length <= 260 ? 2 : 0) << length;
    }
}

TEST_F(DllDelayLoaderTest, FailsWhereTheLibraryIsMissingAndSucceedsWhenItIsPutBack) {
    const Probe probe(folder_);
    EXPECT_EQ(probe.Call(), 0);
    EXPECT_EQ(probe.Call(), 0);
    PutCore(folder_, 2);
    EXPECT_EQ(probe.Call(), 2);
    EXPECT_EQ(probe.Call(), 2);
    EXPECT_EQ(probe.CountRecords(), 1);
}

TEST_F(DllDelayLoaderTest, FailsWhereTheLibraryLacksTheFunction) {
    PutCore(folder_, 0);
    const Probe probe(folder_);
    EXPECT_EQ(probe.Call(), 0);
    EXPECT_EQ(probe.Call(), 0);
    EXPECT_EQ(probe.CountRecords(), 1);
}

TEST_F(DllDelayLoaderTest, RecordsANameOnceAndUnloadsItOnceHoweverManyThreadsAskAtOnce) {
    PutCore(folder_, 2);
    UniqueModule own;
    {
        const Probe probe(folder_);
        std::atomic<int> found = 0;
        std::vector<std::thread> threads;
        for (int index = 0; index < 8; ++index) {
            threads.emplace_back([&] {
                found += probe.Call();
                probe.Resolve();
            });
        }
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(found, 8 * 2);
        EXPECT_EQ(probe.CountRecords(), 1);
        own = LoadFile(folder_ / kLibrary);
    }
    EXPECT_NE(GetModuleHandleA(kLibrary), nullptr) << "the test's own reference was given back too";
}

TEST_F(DllDelayLoaderTest, StandsAsideUntilAttachedAndThenThrowsForALibraryThatIsNowhere) {
    DelayLoadInfo information = {};
    information.cb = sizeof information;
    information.szDll = "mvnowhere.dll";
    EXPECT_EQ(__pfnDliNotifyHook2(dliNotePreLoadLibrary, &information), nullptr);
    EXPECT_EQ(__pfnDliFailureHook2(dliFailGetProc, &information), nullptr);

    AttachModule(GetModuleHandleA(nullptr));
    for (const unsigned other : {dliStartProcessing, dliNotePreGetProcAddress, dliNoteEndProcessing})
        EXPECT_EQ(__pfnDliNotifyHook2(other, &information), nullptr);

    try {
        __pfnDliNotifyHook2(dliNotePreLoadLibrary, &information);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const ExceptionDelayLoadDllLoadFailure& failure) {
        EXPECT_TRUE(failure.GetMessageText().IsEmpty());
        EXPECT_EQ(failure.GetMethodName(), W("ThrowDelayLoadDllLoadFailureException"));
        EXPECT_EQ(failure.GetSourceFile(), W("dlldelayloader"));
    }
    EXPECT_THROW(__pfnDliFailureHook2(dliFailGetProc, &information), ExceptionDelayLoadDllLoadFailure);
    EXPECT_TRUE(GetDllDelayLoader().GetLibraries().empty());
}

TEST_F(DllDelayLoaderTest, UnloadsNothingWhenTheProcessEnds) {
    PutCore(folder_, 2);
    {
        const Probe probe(folder_);
        EXPECT_EQ(probe.Call(), 2);
        probe.NoteProcessEnding();
    }
    const HMODULE left = GetModuleHandleA(kLibrary);
    ASSERT_NE(left, nullptr);
    FreeLibrary(left);
}

}  // namespace
