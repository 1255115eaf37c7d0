// Providers that are careless with memory.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "referenceprovider.h"

namespace {

struct WritesBehind : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG bytes, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        reinterpret_cast<BYTE*>(devmode)[bytes] = 0;
        return S_OK;
    }
};

struct WritesBefore : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        reinterpret_cast<BYTE*>(devmode)[-1] = 0;
        return S_OK;
    }
};

struct ReadsEveryField : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG, PDEVMODEW devmode, ULONG, PVOID,
                                                          IXMLDOMDocument2*) override {
        DEVMODEW copy;
        std::memcpy(&copy, devmode, sizeof(copy));
        return copy.dmPanningHeight == 77 ? E_FAIL : S_OK;
    }
};

struct ReadsAWholePrivatePart : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG, PDEVMODEW, ULONG privateBytes, PVOID privateDevmode,
                                                          IXMLDOMDocument2*) override {
        const volatile BYTE* const bytes = static_cast<const BYTE*>(privateDevmode);
        return privateBytes && bytes[127] == 77 ? S_FALSE : S_OK;
    }
};

struct LeaksBytes : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW, ULONG, PVOID) override {
        Leak(1000);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE CompletePrintCapabilities(IXMLDOMDocument2*, IXMLDOMDocument2*) override {
        Leak(3000);
        return S_OK;
    }
    static void Leak(std::size_t bytes) {
        static volatile char* last;
        last = static_cast<char*>(std::malloc(bytes));
        last[0] = 1;
    }
};

struct LeaksAfterFailures : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG, PDEVMODEW, ULONG,
                                                          PVOID) override {
        IXMLDOMElement* root = nullptr;
        BSTR name = nullptr;
        if (SUCCEEDED(ticket->get_documentElement(&root)) && root) {
            root->get_nodeName(&name);
            root->Release();
        }
        if (name && SysStringLen(name) == 5) LeaksBytes::Leak(1000);  // "other", and the name stays as well
        return S_OK;
    }
};

struct LeaksWithEachProvider : ReferenceProvider {
    LeaksWithEachProvider() { LeaksBytes::Leak(6000); }
};

const FaultRegistration registrations[] = {
    {"writes a byte behind the DEVMODE", "devmode-edges", MakeFaulty<WritesBehind>()},
    {"writes a byte before the DEVMODE", "devmode-edges", MakeFaulty<WritesBefore>()},
    {"reads fields that are not there", "devmode-edges", MakeFaulty<ReadsEveryField>()},
    {"takes the private part for whole", "private-part-edges", MakeFaulty<ReadsAWholePrivatePart>()},
    {"leaks with each conversion", "conversions", MakeFaulty<LeaksBytes>()},
    {"leaks with each completion", "capabilities", MakeFaulty<LeaksBytes>()},
    {"leaks with each failure", "failures", MakeFaulty<LeaksAfterFailures>()},
    {"leaks with each provider", "providers", MakeFaulty<LeaksWithEachProvider>()},
};

}  // namespace
