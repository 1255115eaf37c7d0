// Memory that gives out at any one allocation of a binding: it is told, and the next binding is whole.
#include "boundprovider.h"

#include <livecounts.h>

#include <mvutil/printdriver.h>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <cstdlib>
#include <new>
#include <thread>

namespace {

// Allocations of the thread until one fails; none does from 0 on.
thread_local long allocationsLeft = 0;

struct FailAt {
    explicit FailAt(long n) { allocationsLeft = n; }
    ~FailAt() { allocationsLeft = 0; }
    FailAt(const FailAt&) = delete;
    FailAt& operator=(const FailAt&) = delete;
};

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t bytes) {
    void* const memory = allocationsLeft > 0 && --allocationsLeft == 0 ? nullptr : std::malloc(bytes);
    if (!memory) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

// The binding as one text: what the call answers and what the provider then is.
std::string Bind(MorvanePtProvider& provider, HANDLE printer, long failAt) {
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr;
    HRESULT result = S_OK;
    bool failed = false;
    {
        const FailAt plan(failAt);
        result = provider.BindPrinter(printer, 1, &options, &count, &namespaces);
        failed = failAt > 0 && allocationsLeft == 0;
    }
    std::string text = (failed ? "" : "unfailed ") + Name(result) + " " + std::to_string(count);
    for (INT i = 0; namespaces && i < count; ++i) SysFreeString(namespaces[i]);
    CoTaskMemFree(namespaces);
    return text + " " + ProviderProbe::TellBinding(provider);
}

TEST(LackOfMemory, WhileBindingIsToldAndMended) {
    const TestStore store;
    const TestPrinter opened(kPress);
    const HANDLE printer = opened.GetHandle();
    PrintDriver().GetDriverCapability(printer, 1984);  // the TOML parser would end the process: it is done by now
    const std::string whole = "S_OK 1 8434 1024 with product";
    long refused = 0;
    for (long n = 1;; ++n) {
        SCOPED_TRACE(n);
        // The library is to be detected, and the thread new to all that is kept for each.
        DeletePrinterDataW(printer, const_cast<LPWSTR>(W("XWorkflowDLL")));
        const long texts = LiveBstrCount();
        std::string first;
        std::thread([&] {
            const auto provider = ComPtr<MorvanePtProvider>::Adopt(new MorvanePtProvider);
            first = Bind(*provider.Get(), printer, n);
            EXPECT_TRUE(first == "0x8007000E 0 5001 0" || first.ends_with(whole)) << first;
            EXPECT_EQ(Bind(*provider.Get(), printer, 0), "unfailed " + whole);
        }).join();
        EXPECT_EQ(LiveBstrCount(), texts);
        EXPECT_EQ(GetModuleHandleA("mvwftuC0.dll"), nullptr) << "the library outlives its user";
        if (first.starts_with("unfailed")) break;
        refused += !first.ends_with(whole);
    }
    EXPECT_GT(refused, 100);
}

}  // namespace
