// The provider's calls, handed on.
#include "keptprovider.h"

#include <ptpcprovider/morvaneptprovider.h>

#include "liveobjects.h"

namespace {

class KeptProvider final : public IPrintOemPrintTicketProvider {
public:
    KeptProvider() : provider_(ComPtr<MorvanePtProvider>::Adopt(new MorvanePtProvider)) { ++liveObjects; }
    KeptProvider(const KeptProvider&) = delete;
    KeptProvider& operator=(const KeptProvider&) = delete;
    virtual ~KeptProvider() {
        provider_.Reset();
        --liveObjects;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IPrintOemPrintTicketProvider)) return E_NOINTERFACE;
        *object = static_cast<IPrintOemPrintTicketProvider*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE printer, INT** versions, INT* count) override {
        return provider_->GetSupportedVersions(printer, versions, count);
    }
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount,
                                          BSTR** namespaces) override {
        return provider_->BindPrinter(printer, version, options, namespaceCount, namespaces);
    }
    HRESULT STDMETHODCALLTYPE PublishPrintTicketHelperInterface(IUnknown* helper) override {
        return provider_->PublishPrintTicketHelperInterface(helper);
    }
    HRESULT STDMETHODCALLTYPE QueryDeviceDefaultNamespace(BSTR* namespaceUri) override {
        return provider_->QueryDeviceDefaultNamespace(namespaceUri);
    }
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG devmodeBytes,
                                                          PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode) override {
        return provider_->ConvertPrintTicketToDevMode(ticket, devmodeBytes, devmode, privateBytes, privateDevmode);
    }
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG devmodeBytes, PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode, IXMLDOMDocument2* ticket) override {
        return provider_->ConvertDevModeToPrintTicket(devmodeBytes, devmode, privateBytes, privateDevmode, ticket);
    }
    HRESULT STDMETHODCALLTYPE CompletePrintCapabilities(IXMLDOMDocument2* ticket,
                                                        IXMLDOMDocument2* capabilities) override {
        return provider_->CompletePrintCapabilities(ticket, capabilities);
    }
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* ticket) override {
        return provider_->ExpandIntentOptions(ticket);
    }
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        return provider_->ValidatePrintTicket(ticket);
    }

private:
    std::atomic<ULONG> references_ = 1;
    ComPtr<MorvanePtProvider> provider_;
};

}  // namespace

ComPtr<IPrintOemPrintTicketProvider> MakeKeptProvider() {
    return ComPtr<IPrintOemPrintTicketProvider>::Adopt(new KeptProvider);
}
