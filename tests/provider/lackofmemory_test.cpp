// Memory that gives out at any one allocation: a binding reports it and the next one is whole; of a conversion it ends
// the unit that met it.
#include "boundprovider.h"

#include <livecounts.h>
#include <support/jobdevmode.h>

#include <mvutil/printdriver.h>

#include <dlfcn.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <cstdlib>
#include <new>
#include <thread>

namespace {

// Allocations of the thread until one fails, of objects and of texts for documents; none does from 0 on.
thread_local long objectsLeft = 0, textsLeft = 0;

bool Fails(long& left) { return left > 0 && --left == 0; }

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t bytes) {
    void* const memory = Fails(objectsLeft) ? nullptr : std::malloc(bytes);
    if (!memory) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

// In the place of the platform's.
extern "C" __declspec(dllexport) BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    static const auto allocate = reinterpret_cast<decltype(&SysAllocStringLen)>(dlsym(RTLD_NEXT, "SysAllocStringLen"));
    return Fails(textsLeft) ? nullptr : allocate(text, length);
}

namespace {

// What the call answers and what the provider then is; the n-th object is not to be had, if there is an n-th.
std::string Bind(MorvanePtProvider& provider, HANDLE printer, long n = 0, bool* failed = nullptr) {
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr;
    objectsLeft = n;
    const HRESULT result = provider.BindPrinter(printer, 1, &options, &count, &namespaces);
    if (failed) *failed = objectsLeft == 0;
    objectsLeft = 0;
    if (namespaces) SysFreeString(*namespaces);
    CoTaskMemFree(namespaces);
    return Name(result) + " " + std::to_string(count) + " " + ProviderProbe::TellBinding(provider);
}

TEST(LackOfMemory, WhileBindingIsToldAndMended) {
    const TestStore store;
    const TestPrinter opened(kPress);
    const HANDLE printer = opened.GetHandle();
    PrintDriver().GetDriverCapability(printer, 1984);  // the TOML parser would end the process: it is done by now
    const std::string whole = "S_OK 1 8434 1024 colour";
    bool failed = true;
    for (long n = 1; failed; ++n) {
        SCOPED_TRACE(n);
        // The library is to be detected, and the thread new to all that is kept for each.
        DeletePrinterDataW(printer, const_cast<LPWSTR>(W("XWorkflowDLL")));
        std::thread([&] {
            const auto provider = ComPtr<MorvanePtProvider>::Adopt(new MorvanePtProvider);
            const std::string first = Bind(*provider.Get(), printer, n, &failed);
            EXPECT_EQ(first, first.starts_with("S_OK") ? whole : "0x8007000E 0 5001 0");
            EXPECT_EQ(Bind(*provider.Get(), printer), whole);
        }).join();
        EXPECT_EQ(LiveBstrCount(), 0);
        EXPECT_EQ(GetModuleHandleA("mvwftuC0.dll"), nullptr) << "the library outlives its user";
    }
}

TEST(LackOfMemory, ForATextOfADocumentIsTheUnitsOwnFailure) {
    const TestStore store;
    const BoundProvider press(kPress);
    TestDevmode devmode = MakeJobDevmode();
    bool failed = true;
    for (long n = 1; failed; ++n) {
        SCOPED_TRACE(n);
        const auto ticket = LoadUsual("PrintTicket", "");
        ReportCounter reports;
        textsLeft = n;
        const HRESULT result = press.ToTicket(devmode, ticket);
        failed = textsLeft == 0;
        textsLeft = 0;
        EXPECT_EQ(result, reports.count ? E_FAIL : S_OK);
        EXPECT_EQ(reports.last.className.ToUtf8(), reports.count ? "MorvaneComException" : "");
    }
}

}  // namespace
