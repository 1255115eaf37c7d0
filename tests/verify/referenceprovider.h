// The reference provider: it does nothing, correctly. Faults are classes that derive from it and do one thing wrong.
#pragma once

#include <printsubsystem/printticketprovider.h>

#include <atomic>
#include <functional>
#include <string>

class ReferenceProvider : public IPrintOemPrintTicketProvider {
public:
    ReferenceProvider();
    ReferenceProvider(const ReferenceProvider&) = delete;
    ReferenceProvider& operator=(const ReferenceProvider&) = delete;
    virtual ~ReferenceProvider();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetSupportedVersions(HANDLE printer, INT** versions, INT* count) override;
    HRESULT STDMETHODCALLTYPE BindPrinter(HANDLE printer, INT version, POEMPTOPTS options, INT* namespaceCount,
                                          BSTR** namespaces) override;
    HRESULT STDMETHODCALLTYPE PublishPrintTicketHelperInterface(IUnknown* helper) override;
    HRESULT STDMETHODCALLTYPE QueryDeviceDefaultNamespace(BSTR* namespaceUri) override;
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticket, ULONG devmodeBytes,
                                                          PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode) override;
    HRESULT STDMETHODCALLTYPE ConvertDevModeToPrintTicket(ULONG devmodeBytes, PDEVMODEW devmode, ULONG privateBytes,
                                                          PVOID privateDevmode, IXMLDOMDocument2* ticket) override;
    HRESULT STDMETHODCALLTYPE CompletePrintCapabilities(IXMLDOMDocument2* ticket,
                                                        IXMLDOMDocument2* capabilities) override;
    HRESULT STDMETHODCALLTYPE ExpandIntentOptions(IXMLDOMDocument2* ticket) override;
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override;

protected:
    HANDLE printer_ = nullptr;

private:
    std::atomic<ULONG> references_ = 1;
};

// A static object of a file of faults: a faulty provider, chosen by its name in the environment variable MV_FAULT, and
// the check that has to catch it.
class FaultRegistration {
public:
    using Maker = std::function<ReferenceProvider*()>;

    FaultRegistration(const char* fault, const char* check, Maker make);
};

// Faults of the library itself.
inline constexpr const char* kAggregates = "takes an outer object";
inline constexpr const char* kLoadsOnce = "loads once in a process";

// For a class that derives from ReferenceProvider.
template <class Faulty>
FaultRegistration::Maker MakeFaulty() {
    return [] { return new Faulty; };
}
