// Copies: the parameter JobCopiesAllDocuments, to and from dmCopies.
#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/privateparameters.h>
#include <facts/producttexts.h>
#include <mscacheddevicecapabilities.h>
#include <mvutil/printer.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>
#include <throwscheme.h>
#include <winspool.h>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/ptpcprovider/miscfeaturesimpl");
constexpr const WCHAR* kCopies = kWide<facts::kPrivateCopiesParameter>.text;

}  // namespace

HRESULT MorvanePtProvider::AddOrReplaceMiscFeaturesCapabilities(PrintCapabilitiesXmlDocument& capabilities,
                                                                MsCachedDeviceCapabilities& deviceCapabilities) {
    return RunFeatureUnit([&] {
        const CXString printerName = Printer(printerHandle_).GetPrinterName();
        const int maximumCopies =
            DeviceCapabilitiesW(printerName, nullptr, DC_COPIES, nullptr, deviceCapabilities.GetDevmode());

        const Bstr keywords = capabilities.GetKeywordsPrefix();
        DeleteEveryParameterDef(capabilities, keywords, kCopies);
        ComPtr<IXMLDOMElement> definition;
        capabilities.CreateIntegerParameterDef(keywords.Get(), kCopies, W("Unconditional"),
                                               GetProductStringLoader().LoadStringW(facts::text::kCopies.number), 1, 1,
                                               maximumCopies, 1, W("copies"), definition.Put());
        return ComChecks(W("MorvanePtProvider::AddOrReplaceMiscFeaturesCapabilities"), kSourceUnit)
            .Succeeds(capabilities.GetRootNode()->appendChild(definition.Get(), nullptr), 55);
    });
}

HRESULT MorvanePtProvider::ConvertMiscFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                        AttributeBytesIndexedList*, bool*) {
    return RunFeatureUnit([&] {
        ComPtr<IXMLDOMNode> value;
        const HRESULT hr =
            ticket.GetParameterInitValueNodeIfExists(ticket.GetPrivatePrefix().Get(), kCopies, value.Put());
        if (hr != S_OK) return hr;
        Bstr text;
        ComChecks(W("MorvanePtProvider::ConvertMiscFeaturesToDevmode"), kSourceUnit)
            .Succeeds(GetTrimmedText(value.Get(), &text), 88);
        if (!text.IsEmpty()) devmode->dmCopies = static_cast<SHORT>(ReadDecimalInteger(text.View()));
        return S_OK;
    });
}

HRESULT MorvanePtProvider::ConvertDevmodeToMiscFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode, XDevmode&) {
    return RunFeatureUnit([&] {
        const Bstr prefix = ticket.GetPrivatePrefix();
        DeleteEveryParameterInit(ticket, prefix, kCopies);
        ComPtr<IXMLDOMElement> copies;
        ticket.CreateSignedIntegerParameterInit(prefix.Get(), kCopies, devmode->dmCopies, copies.Put());
        return ComChecks(W("MorvanePtProvider::ConvertDevmodeToMiscFeatures"), kSourceUnit)
            .Succeeds(ticket.GetRootNode()->appendChild(copies.Get(), nullptr), 128);
    });
}
