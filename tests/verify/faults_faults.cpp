// Providers that do not look at what their calls answer.
#include <cstdlib>
#include <new>
#include <vector>

#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include "referenceprovider.h"

namespace {

IXMLDOMElement* GetRoot(IXMLDOMDocument2* ticket) {
    IXMLDOMElement* root = nullptr;
    if (FAILED(ticket->get_documentElement(&root))) return nullptr;
    return root;
}

// Lets go of the root only when all went well.
struct LeaksANode : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        IXMLDOMElement* const root = GetRoot(ticket);
        BSTR name = nullptr;
        if (!root || FAILED(root->get_nodeName(&name))) return E_FAIL;
        SysFreeString(name);
        root->Release();
        return S_NO_CONFLICT;
    }
};

struct TakesTheRootForGranted : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        GetRoot(ticket)->Release();
        return S_NO_CONFLICT;
    }
};

struct LetsExceptionsOut : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        if (IXMLDOMElement* const root = GetRoot(ticket)) root->Release();
        return S_NO_CONFLICT;
    }
};

struct UsesMemory : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* count,
                                          BSTR** namespaces) override {
        Fill();
        return ReferenceProvider::BindPrinter(printer, version, options, count, namespaces);
    }
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2*) override {
        Fill();
        return S_OK;
    }
    static void Fill() {
        void* const memory = ::operator new(100, std::nothrow);
        static_cast<volatile char*>(memory)[0] = 1;
        ::operator delete(memory);
    }
};

struct UsesTexts : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2*) override {
        const WCHAR source[] = {'a', 0};
        const BSTR text = SysAllocStringLen(source, 1);
        static_cast<volatile WCHAR*>(text)[0] = 'b';
        SysFreeString(text);
        return S_OK;
    }
};

struct AsksTheRegistry : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2*) override {
        const WCHAR path[] = {'S', 'o', 'f', 't', 'w', 'a', 'r', 'e', 0};
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) == ERROR_REGISTRY_IO_FAILED) std::abort();
        if (key) RegCloseKey(key);
        return S_OK;
    }
};

struct AsksTheSpooler : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* count,
                                          BSTR** namespaces) override {
        const HRESULT result = ReferenceProvider::BindPrinter(printer, version, options, count, namespaces);
        if (SUCCEEDED(result)) Ask();
        return result;
    }
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2*) override {
        Ask();
        return S_OK;
    }
    void Ask() const {
        DWORD needed = 0;
        GetPrinterW(printer_, 2, nullptr, 0, &needed);
        std::vector<BYTE> answer(needed);
        GetPrinterW(printer_, 2, answer.data(), needed, &needed);
        if (reinterpret_cast<const PRINTER_INFO_2W*>(answer.data())->pPrinterName[0] == 0) std::abort();
    }
};

const FaultRegistration registrations[] = {
    {"keeps a node when a DOM call fails", "dom-calls-fail", MakeFaulty<LeaksANode>()},
    {"takes the root for granted", "dom-out-of-memory", MakeFaulty<TakesTheRootForGranted>()},
    {"lets an exception out", "dom-calls-throw", MakeFaulty<LetsExceptionsOut>()},
#ifndef _WIN32
    {"does not look whether there is memory", "memory-gives-out", MakeFaulty<UsesMemory>()},
    {"does not look whether there is memory to bind", "memory-gives-out-while-binding", MakeFaulty<UsesMemory>()},
    {"does not look whether there is a text", "texts-give-out", MakeFaulty<UsesTexts>()},
    {"trusts the registry", "registry-fails", MakeFaulty<AsksTheRegistry>()},
    {"trusts the spooler", "spooler-fails", MakeFaulty<AsksTheSpooler>()},
    {"trusts the spooler while binding", "spooler-fails-while-binding", MakeFaulty<AsksTheSpooler>()},
#endif
};

}  // namespace
