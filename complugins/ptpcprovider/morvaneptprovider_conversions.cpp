// The five conversion operations: fixed scripts over the feature units, behind one exception wall.
#include "ptpcprovider/morvaneptprovider.h"

#include <caughtexception.h>
#include <mscacheddevicecapabilities.h>
#include <mvutil/operationscope.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>
#include <xdevmode.h>

#include <cstring>

namespace {

// Runs an operation's script, within which the printer stays as it is; whatever escapes it is reported once and becomes
// E_FAIL.
template <class Script>
HRESULT RunOperation(const WCHAR* operation, Script script, LONG line = __builtin_LINE()) {
    try {
        const OperationScope scope;
        return script();
    } catch (...) {
        ReportCaughtException(operation, W("morvaneptprovider"), line);
        return E_FAIL;
    }
}

// Whether the bytes handed in hold a DEVMODE as it describes itself, with every public field that is read here.
bool HoldsWholeDevmode(ULONG bytes, const DEVMODEW* devmode) {
    constexpr ULONG kPublicFieldsEnd = offsetof(DEVMODEW, dmICMIntent) + sizeof(devmode->dmICMIntent);
    static_assert(kPublicFieldsEnd == 196);
    if (bytes < kPublicFieldsEnd) return false;
    WORD publicBytes, extraBytes;
    std::memcpy(&publicBytes, &devmode->dmSize, sizeof(publicBytes));
    std::memcpy(&extraBytes, &devmode->dmDriverExtra, sizeof(extraBytes));
    return publicBytes >= kPublicFieldsEnd && ULONG{publicBytes} + extraBytes <= bytes;
}

}  // namespace

HRESULT MorvanePtProvider::ConvertPrintTicketToDevMode(IXMLDOMDocument2* ticketDom, ULONG devmodeBytes,
                                                       PDEVMODEW devmode, ULONG, PVOID) {
    if (devmodeBytes == 0 || !devmode || !ticketDom || !HoldsWholeDevmode(devmodeBytes, devmode)) return E_INVALIDARG;
    return RunOperation(W("MorvanePtProvider::ConvertPrintTicketToDevMode"), [&] {
        PrintTicketXmlDocument ticket(ticketDom);
        MsCachedDeviceCapabilities deviceCapabilities(devmode);
        XDevmode xdevmode(devmode);
        // The restored block comes first, so that what the units write replaces what it held.
        GetMorvaneDriverDataFromPrintTicketAndUpdateDevmode(ticket, xdevmode);
        bool changed = false;
        const auto list = CreateDataModelDataAttributeBytesIndexedList(xdevmode);

        ConvertPageMediaTypeToDevmode(ticket, deviceCapabilities, list.get(), &changed);
        ConvertPageMediaSizeToDevmode(ticket, devmode, deviceCapabilities);
        ConvertPageOutputQualityToDevmode(ticket, list.get(), &changed);
        ConvertColorFeaturesToDevmode(ticket, devmode, list.get(), &changed);
        ConvertMiscFeaturesToDevmode(ticket, devmode, list.get(), &changed);

        if (changed) CommitChangesToDevmodeFromDataModelDataAttributeBytesIndexedList(xdevmode, list.get());
        return S_OK;
    });
}

HRESULT MorvanePtProvider::ConvertDevModeToPrintTicket(ULONG devmodeBytes, PDEVMODEW devmode, ULONG, PVOID,
                                                       IXMLDOMDocument2* ticketDom) {
    if (devmodeBytes == 0 || !devmode || !ticketDom || !HoldsWholeDevmode(devmodeBytes, devmode)) return E_INVALIDARG;
    return RunOperation(W("MorvanePtProvider::ConvertDevModeToPrintTicket"), [&] {
        PrintTicketXmlDocument ticket(ticketDom);
        MsCachedDeviceCapabilities deviceCapabilities(devmode);
        XDevmode xdevmode(devmode);

        DeleteRedundantPageOrientationFromPpdGpdNamespace(ticket);
        ConvertDevmodeToPageMediaType(ticket, xdevmode, deviceCapabilities);
        ConvertDevmodeToPageMediaSize(ticket, devmode, deviceCapabilities);
        ConvertDevmodeToPageOutputQuality(ticket, xdevmode);
        ConvertDevmodeToColorFeatures(ticket, devmode, xdevmode);
        ConvertDevmodeToMiscFeatures(ticket, devmode, xdevmode);

        if (HasPrivateNamespace()) EmbedPrivateMvjtInPrintTicket(ticket, xdevmode);  // the root's first child
        SetMorvaneDriverDataInPrintTicket(ticket, xdevmode);                         // the root's last child
        return S_OK;
    });
}

HRESULT MorvanePtProvider::CompletePrintCapabilities(IXMLDOMDocument2* ticketDom, IXMLDOMDocument2* capabilitiesDom) {
    if (!capabilitiesDom) return E_INVALIDARG;
    return RunOperation(W("MorvanePtProvider::CompletePrintCapabilities"), [&] {
        PrintCapabilitiesXmlDocument capabilities(capabilitiesDom);
        PrintTicketXmlDocument ticket(ticketDom);  // may be without a document
        MsCachedDeviceCapabilities deviceCapabilities(nullptr);

        DeleteRedundantPageOrientationFromPpdGpdNamespace(capabilities);
        FixUpResolutionCapabilities(capabilities, deviceCapabilities);
        AddOrReplacePageOutputQualityCapabilities(capabilities);
        AddOrReplaceColorFeaturesCapabilities(capabilities);
        AddOrReplaceMiscFeaturesCapabilities(capabilities, deviceCapabilities);
        FixUpDuplexCapabilities(capabilities);
        ReplacePageMediaSizeCapabilities(capabilities, ticket, deviceCapabilities);
        ReplacePageImageableSizeAndAreaProperties(capabilities, ticket, deviceCapabilities);
        AddOrReplacePageMediaTypeCapabilities(capabilities, deviceCapabilities);

        if (HasPrivateNamespace()) AddJobMvjtJobTicketCapabilities(capabilities);  // the root's first child
        AddMorvaneDriverDataCapabilities(capabilities);                            // the root's last child
        return S_OK;
    });
}

HRESULT MorvanePtProvider::ExpandIntentOptions(IXMLDOMDocument2* ticketDom) {
    if (!ticketDom) return E_INVALIDARG;
    return RunOperation(W("MorvanePtProvider::ExpandIntentOptions"), [&] {
        PrintTicketXmlDocument ticket(ticketDom);  // nothing is expanded; only the private prefix is normalised
        return S_OK;
    });
}

HRESULT MorvanePtProvider::ValidatePrintTicket(IXMLDOMDocument2* ticketDom) {
    if (!ticketDom) return E_INVALIDARG;
    return RunOperation(W("MorvanePtProvider::ValidatePrintTicket"), [&] {
        PrintTicketXmlDocument ticket(ticketDom);  // no constraint is evaluated; only the private prefix is normalised
        return S_NO_CONFLICT;
    });
}
