// The reference provider, and the plug-in's exports.
#include "referenceprovider.h"

#include <objbase.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

std::atomic<long> live = 0;  // objects and locks

struct Fault {
    std::string name, check;
    FaultRegistration::Maker make;
};

std::vector<Fault>& GetFaults() {
    static std::vector<Fault> faults;
    return faults;
}

bool IsFault(const char* name) {
    const char* const chosen = std::getenv("MV_FAULT");
    return chosen && std::string(chosen) == name;
}

// Whether the library was in this process before; a variable of the environment outlives it.
bool wasLoaded = [] {
    const bool was = std::getenv("MV_LOADED") != nullptr;
    if (IsFault(kLoadsOnce) && !was) putenv(strdup("MV_LOADED=1"));
    return was;
}();

// The reference itself when the environment names no fault; null when it names one that there is not.
ReferenceProvider* MakeChosen() {
    const char* const name = std::getenv("MV_FAULT");
    if (!name || !*name) return new ReferenceProvider;
    for (const Fault& fault : GetFaults())
        if (fault.name == name) return fault.make();
    return nullptr;
}

bool IsWhole(ULONG bytes, const DEVMODEW* devmode) {
    return devmode && bytes >= offsetof(DEVMODEW, dmFields) && devmode->dmSize >= offsetof(DEVMODEW, dmFields) &&
           ULONG{devmode->dmSize} + devmode->dmDriverExtra <= bytes;
}

class Factory final : public IClassFactory {
public:
    virtual ~Factory() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) return E_NOINTERFACE;
        *object = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        ++live;
        return ++references_;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        --live;
        return --references_;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer && !IsFault(kAggregates)) return CLASS_E_NOAGGREGATION;
        ReferenceProvider* const provider = MakeChosen();
        if (!provider) return E_FAIL;
        const HRESULT result = provider->QueryInterface(iid, object);
        provider->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        live += lock ? 1 : -1;
        return S_OK;
    }

private:
    std::atomic<ULONG> references_ = 0;
};

Factory factory;

}  // namespace

FaultRegistration::FaultRegistration(const char* fault, const char* check, Maker make) {
    GetFaults().push_back({fault, check, std::move(make)});
}

ReferenceProvider::ReferenceProvider() { ++live; }
ReferenceProvider::~ReferenceProvider() { --live; }

HRESULT ReferenceProvider::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IPrintOemPrintTicketProvider)) return E_NOINTERFACE;
    *object = static_cast<IPrintOemPrintTicketProvider*>(this);
    AddRef();
    return S_OK;
}

ULONG ReferenceProvider::AddRef() { return ++references_; }

ULONG ReferenceProvider::Release() {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
}

HRESULT ReferenceProvider::GetSupportedVersions(HANDLE, INT** versions, INT* count) {
    if (!versions || !count) return E_INVALIDARG;
    *count = 0;
    *versions = static_cast<INT*>(CoTaskMemAlloc(sizeof(INT)));
    if (!*versions) return E_OUTOFMEMORY;
    **versions = 1;
    *count = 1;
    return S_OK;
}

HRESULT ReferenceProvider::BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount,
                                       BSTR** namespaces) {
    if (!printer || !options || !namespaceCount || !namespaces) return E_INVALIDARG;
    *namespaceCount = 0;
    *namespaces = nullptr;
    if (version != 1) return E_VERSION_NOT_SUPPORTED;
    printer_ = printer;
    *options = OEMPT_DEFAULT;
    return S_OK;
}

HRESULT ReferenceProvider::PublishPrintTicketHelperInterface(IUnknown* helper) { return helper ? S_OK : E_INVALIDARG; }

HRESULT ReferenceProvider::QueryDeviceDefaultNamespace(BSTR* namespaceUri) {
    if (!namespaceUri) return E_INVALIDARG;
    *namespaceUri = nullptr;
    return E_NOTIMPL;
}

HRESULT ReferenceProvider::ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG devmodeBytes, PDEVMODEW devmode,
                                                       ULONG, PVOID) {
    return ticket && IsWhole(devmodeBytes, devmode) ? S_OK : E_INVALIDARG;
}

HRESULT ReferenceProvider::ConvertDevModeToPrintTicket(ULONG devmodeBytes, PDEVMODEW devmode, ULONG, PVOID,
                                                       IXMLDOMDocument2* ticket) {
    return ticket && IsWhole(devmodeBytes, devmode) ? S_OK : E_INVALIDARG;
}

HRESULT ReferenceProvider::CompletePrintCapabilities(IXMLDOMDocument2*, IXMLDOMDocument2* capabilities) {
    return capabilities ? S_OK : E_INVALIDARG;
}

HRESULT ReferenceProvider::ExpandIntentOptions(IXMLDOMDocument2* ticket) { return ticket ? S_OK : E_INVALIDARG; }

HRESULT ReferenceProvider::ValidatePrintTicket(IXMLDOMDocument2* ticket) {
    return ticket ? S_NO_CONFLICT : E_INVALIDARG;
}

extern "C" {

__declspec(dllexport) HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (wasLoaded) return E_UNEXPECTED;
    if (!IsEqualCLSID(classId, CLSID_OEMPTPROVIDER)) return CLASS_E_CLASSNOTAVAILABLE;
    return factory.QueryInterface(iid, object);
}

__declspec(dllexport) HRESULT STDMETHODCALLTYPE DllCanUnloadNow() { return live == 0 ? S_OK : S_FALSE; }

// For the test: calls the function with each fault and the check that has to catch it.
__declspec(dllexport) void ListFaults(void (*add)(void* context, const char* fault, const char* check), void* context) {
    for (const Fault& fault : GetFaults()) add(context, fault.name.c_str(), fault.check.c_str());
}

}  // extern "C"
