// Providers that break the contract of the interface.
#include <objbase.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include "referenceprovider.h"

namespace {

struct NoVersions : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE, INT** versions, INT* count) override {
        *versions = nullptr;
        *count = 0;
        return S_OK;
    }
};

struct WrongVersion : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE printer, INT** versions, INT* count) override {
        const HRESULT result = ReferenceProvider::GetSupportedVersions(printer, versions, count);
        **versions = 7;
        return result;
    }
};

struct Crashing : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE, INT** versions, INT*) override {
        return **versions;  // the caller's is null
    }
};

struct Hanging : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE, INT**, INT*) override {
        for (volatile bool forever = true; forever;) continue;
        return S_OK;
    }
};

// Does something to the arguments of a BindPrinter that has succeeded.
struct BindsOddly : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* count,
                                          BSTR** namespaces) override {
        const HRESULT result = ReferenceProvider::BindPrinter(printer, version, options, count, namespaces);
        return SUCCEEDED(result) ? Spoil(printer, options, count, namespaces) : result;
    }
    virtual HRESULT Spoil(HANDLE printer, POEMPTOPTS options, INT* count, BSTR** namespaces) = 0;
};

struct OddOptions : BindsOddly {
    HRESULT Spoil(HANDLE, POEMPTOPTS options, INT*, BSTR**) override {
        *options = static_cast<OEMPTOPTS>(6);
        return S_OK;
    }
};

struct MissingNamespaces : BindsOddly {
    HRESULT Spoil(HANDLE, POEMPTOPTS, INT* count, BSTR**) override {
        *count = 2;
        return S_OK;
    }
};

struct MissingNamespace : BindsOddly {
    HRESULT Spoil(HANDLE, POEMPTOPTS, INT* count, BSTR** namespaces) override {
        *count = 1;
        *namespaces = static_cast<BSTR*>(CoTaskMemAlloc(sizeof(BSTR)));
        **namespaces = nullptr;
        return S_OK;
    }
};

struct ClosesTheHandle : BindsOddly {
    HRESULT Spoil(HANDLE printer, POEMPTOPTS, INT*, BSTR**) override {
        ClosePrinter(printer);
        return S_OK;
    }
};

struct BindsOnce : BindsOddly {
    HRESULT Spoil(HANDLE, POEMPTOPTS, INT*, BSTR**) override {
        ++binds;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG bytes, PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode, IXMLDOMDocument2* ticket) override {
        if (binds > 1) return E_FAIL;
        return ReferenceProvider::ConvertDevModeToPrintTicket(bytes, devmode, privateBytes, privateDevmode, ticket);
    }
    int binds = 0;
};

struct TakesAnyVersion : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT, POEMPTOPTS options, INT* count,
                                          BSTR** namespaces) override {
        return ReferenceProvider::BindPrinter(printer, 1, options, count, namespaces);
    }
};

// Must have been bound: what it needs is made there.
struct NeedsTheBind : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* ticket) override {
        if (!printer_) *static_cast<volatile int*>(nullptr) = 1;
        return ReferenceProvider::ExpandIntentOptions(ticket);
    }
};

struct ValidatesWithOk : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2*) override { return S_OK; }
};

struct RemovesTheRoot : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* ticket) override {
        IXMLDOMNode *root = nullptr, *removed = nullptr;
        ticket->get_lastChild(&root);
        if (root && SUCCEEDED(ticket->removeChild(root, &removed)) && removed) removed->Release();
        if (root) root->Release();
        return S_OK;
    }
};

struct KeepsTheDocument : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        ticket->AddRef();
        return S_NO_CONFLICT;
    }
};

struct KeepsTheHelper : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE PublishPrintTicketHelperInterface(IUnknown* helper) override {
        helper->AddRef();
        return S_OK;
    }
};

struct HasEveryInterface : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        return ReferenceProvider::QueryInterface(IID_IUnknown, object);
    }
};

struct BelievesTheClaim : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG bytes, PDEVMODEW devmode,
                                                          ULONG, PVOID) override {
        return ticket && bytes && devmode ? S_OK : E_INVALIDARG;
    }
};

struct TakesNothingForSomething : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE QueryDeviceDefaultNamespace(BSTR*) override { return S_OK; }
};

struct WantsThePrivatePart : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG, PDEVMODEW, ULONG, PVOID privateDevmode,
                                                          IXMLDOMDocument2*) override {
        return privateDevmode ? S_OK : E_INVALIDARG;
    }
};

// Never released: the library can never go.
struct KeepsItself : ReferenceProvider {
    KeepsItself() { AddRef(); }
};

struct ForItsOwnThread : BindsOddly {
    HRESULT Spoil(HANDLE, POEMPTOPTS, INT*, BSTR**) override {
        thread = GetThreadNumber();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG, PDEVMODEW, ULONG, PVOID, IXMLDOMDocument2*) override {
        return thread == GetThreadNumber() ? S_OK : E_UNEXPECTED;
    }
    static int GetThreadNumber() {
        static std::atomic<int> last = 0;
        thread_local const int number = ++last;
        return number;
    }
    int thread = 0;
};

const FaultRegistration registrations[] = {
    {"supports no version", "versions", MakeFaulty<NoVersions>()},
    {"lists a wrong version", "versions", MakeFaulty<WrongVersion>()},
    {"crashes", "versions", MakeFaulty<Crashing>()},
    {"hangs", "versions", MakeFaulty<Hanging>()},
    {"answers odd options", "bind-options", MakeFaulty<OddOptions>()},
    {"reports namespaces that are not there", "bind-namespaces", MakeFaulty<MissingNamespaces>()},
    {"hands out no text for a namespace", "bind-namespaces", MakeFaulty<MissingNamespace>()},
    {"takes any version", "bind-versions", MakeFaulty<TakesAnyVersion>()},
    {"closes the printer's handle", "printer-handle", MakeFaulty<ClosesTheHandle>()},
    {"fails after a second bind", "bind-twice", MakeFaulty<BindsOnce>()},
    {"crashes before the bind", "calls-before-bind", MakeFaulty<NeedsTheBind>()},
    {"validates with S_OK", "results", MakeFaulty<ValidatesWithOk>()},
    {"removes the root", "results", MakeFaulty<RemovesTheRoot>()},
    {"keeps a reference on the document", "document-references", MakeFaulty<KeepsTheDocument>()},
    {"keeps the helper", "helper-references", MakeFaulty<KeepsTheHelper>()},
    {"has every interface", "identity", MakeFaulty<HasEveryInterface>()},
    {"believes a DEVMODE's claim", "missing-input", MakeFaulty<BelievesTheClaim>()},
    {"succeeds without an out argument", "null-out-arguments", MakeFaulty<TakesNothingForSomething>()},
    {"wants the private part", "private-argument", MakeFaulty<WantsThePrivatePart>()},
    {"never ends", "unloading", MakeFaulty<KeepsItself>()},
    {kAggregates, "class-factory", MakeFaulty<ReferenceProvider>()},
    {kLoadsOnce, "loading-again", MakeFaulty<ReferenceProvider>()},
    {"works on one thread alone", "threads", MakeFaulty<ForItsOwnThread>()},
};

}  // namespace
