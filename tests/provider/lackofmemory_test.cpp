// Memory that gives out at any one allocation: a binding tells it and the next one is whole; of a conversion it ends
// the unit that met it.
#include "boundprovider.h"

#include <livecounts.h>
#include <support/capabilitycaches.h>
#include <support/jobdevmode.h>

#include <mvutil/printdriver.h>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <dlfcn.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <thread>

namespace {

// Allocations of the thread until one fails, of objects and of texts for documents; none does from 0 on.
thread_local long allocationsLeft = 0, textsLeft = 0;

// Counts down while it lives.
struct FailAt {
    FailAt(long& left, long n) : left_(left) { left_ = n; }
    ~FailAt() { left_ = 0; }
    FailAt(const FailAt&) = delete;
    FailAt& operator=(const FailAt&) = delete;
    bool HasFailed() const { return left_ == 0; }
    long& left_;
};

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t bytes) {
    void* const memory = allocationsLeft > 0 && --allocationsLeft == 0 ? nullptr : std::malloc(bytes);
    if (!memory) throw std::bad_alloc();
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

// In the place of the platform's.
extern "C" __declspec(dllexport) BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    static const auto allocate = reinterpret_cast<decltype(&SysAllocStringLen)>(dlsym(RTLD_NEXT, "SysAllocStringLen"));
    return textsLeft > 0 && --textsLeft == 0 ? nullptr : allocate(text, length);
}

namespace {

// The binding as one text: what the call answers and what the provider then is.
std::string Bind(MorvanePtProvider& provider, HANDLE printer, long failAt) {
    OEMPTOPTS options = OEMPT_DEFAULT;
    INT count = 0;
    BSTR* namespaces = nullptr;
    HRESULT result = S_OK;
    bool failed = false;
    {
        const FailAt plan(allocationsLeft, failAt);
        result = provider.BindPrinter(printer, 1, &options, &count, &namespaces);
        failed = failAt > 0 && plan.HasFailed();
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

TEST(LackOfMemory, ForATextOfADocumentIsTheUnitsOwnFailure) {
    const TestStore store;
    const BoundProvider press(kPress);
    StorePapers(press.GetPrinter(), {MakePaper(1, 2159, 2794, 6430, 25001, W("Letter"))});
    StoreMedia(press.GetPrinter(), {MakeMedia(6800, W("Plain"))});
    TestDevmode devmode = MakeJobDevmode();
    const struct {
        const char* root;
        std::function<HRESULT(const ComPtr<IXMLDOMDocument2>&)> run;
    } operations[] = {
        {"PrintTicket", [&](const auto& d) { return press.ToTicket(devmode, d); }},
        {"PrintTicket", [&](const auto& d) { return press.ToDevmode(d, devmode); }},
        {"PrintCapabilities", [&](const auto& d) { return press->CompletePrintCapabilities(nullptr, d.Get()); }}};
    for (const auto& operation : operations) {
        long went = 0;
        for (bool failed = true; failed; ++went) {
            SCOPED_TRACE(testing::Message() << operation.root << " text " << went + 1);
            const auto document =
                Load("<psf:" + std::string(operation.root) + " xmlns:psf='{psf}' xmlns:psk='{psk}' xmlns:n1='{mk}'>" +
                     Feature("PageMediaSize", Option("psk:Old")) + "</psf:" + operation.root + ">");
            const long texts = LiveBstrCount();
            ReportCounter reports;
            {
                const FailAt plan(textsLeft, went + 1);
                const HRESULT result = operation.run(document);
                failed = plan.HasFailed();
                EXPECT_EQ(result, reports.count ? E_FAIL : S_OK);
            }
            if (reports.count) {
                EXPECT_EQ(reports.last.className.ToUtf8(), "MorvaneComException");
            }
            EXPECT_EQ(LiveBstrCount(), texts);
        }
        EXPECT_GT(went, 100);
    }
}

}  // namespace
