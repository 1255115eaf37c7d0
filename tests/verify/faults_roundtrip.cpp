// Providers that offer more than they keep.
#include "documentedit.h"
#include "referenceprovider.h"

namespace {

struct LosesLandscape : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        devmode->dmOrientation = DMORIENT_PORTRAIT;
        return S_OK;
    }
};

// Either alone is kept.
struct LosesOneOfTwo : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        if (devmode->dmOrientation == DMORIENT_LANDSCAPE && devmode->dmPaperSize != DMPAPER_LETTER)
            devmode->dmOrientation = DMORIENT_PORTRAIT;
        return S_OK;
    }
};

struct RefusesLandscape : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ValidatePrintTicket(IXMLDOMDocument2* ticket) override {
        const bool isLandscape = GetText(ticket).find(Widen("psk:Landscape")) != DocumentText::npos;
        return isLandscape ? E_PRINTTICKET_FORMAT : S_NO_CONFLICT;
    }
};

// Each ticket has one copy more than the one before.
struct CountsUp : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        devmode->dmScale = static_cast<SHORT>(++scale);
        return S_OK;
    }
    int scale = 0;
};

struct LosesCopies : ReferenceProvider {
    HRESULT STDMETHODCALLTYPE ConvertPrintTicketToDevMode(IXMLDOMDocument2*, ULONG, PDEVMODEW devmode, ULONG,
                                                          PVOID) override {
        devmode->dmCopies = 1;
        return S_OK;
    }
};

const FaultRegistration registrations[] = {
    {"loses an option", "options", MakeFaulty<LosesLandscape>()},
    {"loses one of two options", "pairs-of-options", MakeFaulty<LosesOneOfTwo>()},
    {"refuses what it offers", "offers-hold", MakeFaulty<RefusesLandscape>()},
    {"changes a field with every run", "devmode-fields-settle", MakeFaulty<CountsUp>()},
    {"loses a number", "parameters", MakeFaulty<LosesCopies>()},
};

}  // namespace
