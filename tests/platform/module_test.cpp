// Loading libraries, asking about modules, and the entry point of a library.
#include <uniquehandle.h>
#include <widetext.h>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <string>

namespace {

using Handle = HMODULE (*)();
using Count = LONG (*)();
using Notice = void (*)(LONG*);

template <class Function>
Function Get(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

std::string PathOf(HMODULE module) {
    char path[1024];
    const DWORD length = GetModuleFileNameA(module, path, sizeof path);
    return std::string(path, length);
}

std::string TestModulePath() {
    const std::string program = PathOf(nullptr);
    return program.substr(0, program.rfind('\\') + 1) + "mvtestmodule.dll";
}

TEST(Module, EntryPointIsCalledWhenLoadedAndWhenUnloaded) {
    LONG notice = 0;
    UniqueModule module(LoadLibraryA(TestModulePath().c_str()));
    ASSERT_TRUE(module);
    EXPECT_EQ(Get<Handle>(module.Get(), "AttachedAs")(), module.Get());
    EXPECT_EQ(Get<Count>(module.Get(), "Attachments")(), 1);
    Get<Notice>(module.Get(), "NoticeDetach")(&notice);
    UniqueModule again(LoadLibraryExA(TestModulePath().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    EXPECT_EQ(again.Get(), module.Get());
    EXPECT_EQ(Get<Count>(again.Get(), "Attachments")(), 1);
    again.Reset();
    EXPECT_EQ(notice, 0);
    module.Reset();
    EXPECT_EQ(notice, 1);
    EXPECT_EQ(GetModuleHandleA("mvtestmodule.dll"), nullptr);
}

TEST(Module, EntryPointIsToldThatTheProcessEnds) {
    void* shared = mmap(nullptr, sizeof(LONG), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(shared, MAP_FAILED);
    LONG& notice = *static_cast<LONG*>(shared);
    const pid_t process = fork();
    ASSERT_GE(process, 0);
    if (process == 0) {
        Get<Notice>(LoadLibraryA(TestModulePath().c_str()), "NoticeDetach")(&notice);
        exit(0);
    }
    ASSERT_EQ(waitpid(process, nullptr, 0), process);
    EXPECT_EQ(notice, 2);
    munmap(shared, sizeof(LONG));
}

TEST(Module, IsFoundUnderManyNames) {
    const std::string path = TestModulePath();
    std::string slashes = path;
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    const UniqueModule module(LoadLibraryW(W("mvtestmodule.dll")));  // beside the program
    ASSERT_TRUE(module);
    EXPECT_EQ(PathOf(module.Get()), path);
    for (const std::string& name : {path, slashes, std::string("MVTestModule.DLL"), std::string("mvtestmodule")}) {
        EXPECT_EQ(GetModuleHandleA(name.c_str()), module.Get()) << name;
        const UniqueModule loaded(LoadLibraryA(name.c_str()));
        EXPECT_EQ(loaded.Get(), module.Get()) << name;
    }
    for (const char* name : {"", "none.dll", "/none/mvtestmodule.dll", "mvtestmodule.so"}) {
        EXPECT_EQ(LoadLibraryA(name), nullptr) << name;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    }
}

TEST(Module, HandleExTakesAReferenceUnlessToldOtherwise) {
    UniqueModule module(LoadLibraryA(TestModulePath().c_str()));
    ASSERT_TRUE(module);
    const auto address = reinterpret_cast<LPCSTR>(GetProcAddress(module.Get(), "Attachments"));
    constexpr DWORD fromAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
    constexpr DWORD unchanged = GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE found = nullptr;
    EXPECT_TRUE(GetModuleHandleExA(fromAddress | unchanged, address, &found));
    EXPECT_EQ(found, module.Get());
    UniqueModule byAddress, byName;
    EXPECT_TRUE(GetModuleHandleExA(fromAddress, address, byAddress.Put()));
    EXPECT_TRUE(GetModuleHandleExA(0, "mvtestmodule.dll", byName.Put()));
    byAddress.Reset();
    module.Reset();
    EXPECT_EQ(GetModuleHandleA("mvtestmodule.dll"), byName.Get());
    byName.Reset();
    EXPECT_EQ(GetModuleHandleA("mvtestmodule.dll"), nullptr);
}

}  // namespace
