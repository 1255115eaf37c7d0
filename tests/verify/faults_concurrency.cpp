// Providers that share what they should not, and slow ones.
#include <windows.h>
#include <chrono>
#include <ctime>
#include <thread>
// After windows.h, which it needs.
#include <winspool.h>

#include "documentedit.h"
#include "referenceprovider.h"

namespace {

// One DEVMODE's copies for all objects: between two calls another thread may have come.
struct SharesAVariable : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        copies = devmode->dmCopies;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        devmode->dmCopies = copies;
        return S_OK;
    }
    static inline std::atomic<SHORT> copies = 0;
};

struct CountsItsObjects : ReferenceProvider {
    CountsItsObjects() { ++live; }
    ~CountsItsObjects() override { --live; }
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        devmode->dmScale = static_cast<SHORT>(live.load());
        return S_OK;
    }
    static inline std::atomic<int> live = 0;
};

// What the object bound last says counts for all.
struct KnowsOnePrinter : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* count,
                                          BSTR** namespaces) override {
        last = printer;
        return ReferenceProvider::BindPrinter(printer, version, options, count, namespaces);
    }
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        devmode->dmScale = last == printer_ ? 50 : 100;
        return S_OK;
    }
    static inline std::atomic<HANDLE> last = nullptr;
};

std::size_t CountFeatures(IXMLDOMDocument2* ticket) {
    const DocumentText text = GetText(ticket), words = Widen("psk:PageOdd");
    std::size_t count = 0;
    for (std::size_t at = text.find(words); at != DocumentText::npos; at = text.find(words, at + 1)) ++count;
    return count;
}

struct IsQuadratic : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        const std::size_t features = CountFeatures(ticket);
        [[maybe_unused]] volatile std::size_t steps = 0;
        for (std::size_t step = features * features * 40; step > 0; --step) steps = step;
        return S_NO_CONFLICT;
    }
};

struct AsksForEachFeature : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        DWORD needed = 0;
        for (std::size_t left = CountFeatures(ticket); left > 0; --left) GetPrinterW(printer_, 2, nullptr, 0, &needed);
        return S_NO_CONFLICT;
    }
};

struct IsSlow : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2*) override {
        const std::clock_t end = std::clock() + CLOCKS_PER_SEC * 7 / 10;
        while (std::clock() < end) continue;
        return S_NO_CONFLICT;
    }
};

const FaultRegistration registrations[] = {
    {"shares a variable between threads", "several-threads", MakeFaulty<SharesAVariable>()},
    {"depends on how many objects there are", "binding-on-threads", MakeFaulty<CountsItsObjects>()},
    {"knows one printer in a process", "two-printers", MakeFaulty<KnowsOnePrinter>()},
    {"is slow", "times", MakeFaulty<IsSlow>()},
    {"is quadratic", "growth", MakeFaulty<IsQuadratic>()},
    {"asks the spooler for each feature", "spooler-questions", MakeFaulty<AsksForEachFeature>()},
};

}  // namespace
