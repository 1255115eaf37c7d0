// The embedded job ticket: the whole MVJT text of a job, put into the private parameter JobMorvaneMvjtJobTicket.
#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/privateparameters.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>
#include <renbase.h>
#include <throwscheme.h>
#include <xdevmode.h>
#include <xoempdev.h>

#include <utility>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/ptpcprovider/embeddedjobticketimpl");
constexpr const WCHAR* kJobTicket = kWide<facts::kJobTicketParameter>.text;
constexpr LONG kMaximumJobTicketLength = 3500000;  // characters

// Makes the element the root's first child. Throws the method's exception when the document refuses.
HRESULT InsertFirst(const PrintSchemaXmlDocument& document, IXMLDOMElement* element, const WCHAR* methodName) {
    const ComChecks checks(methodName, kSourceUnit);
    const auto root = document.GetRootNode();
    ComPtr<IXMLDOMNode> first;
    checks.Succeeds(root->get_firstChild(first.Put()));
    return checks.Succeeds(root->insertBefore(element, Variant(first.Get()).Get(), nullptr));
}

}  // namespace

HRESULT MorvanePtProvider::GetMorvaneMvjtJobTicketAsCdataSection(XDevmode& xdevmode, Bstr& text) {
    return RunFeatureUnit([&]() -> HRESULT {
        text.Reset();
        ProductData& productData = GetProductData();
        if (productData.GetControllerFamily() != DataModelIds::kControllerFamily8434) return S_FALSE;
        RenMvjtForXps generator;
        XOemPdev pdev;
        ByteBuffer buffer;
        generator.GenerateMvjt(printerHandle_, xdevmode.GetDevmode(), pdev, xdevmode, buffer, driverCapabilityFlags_,
                               productData);
        if (buffer.getDword() == 0) return S_FALSE;
        *text.Put() = SysAllocString(buffer.getAsStringValueFromAnsiBuffer());
        return text.Get() ? S_OK : E_OUTOFMEMORY;
    });
}

HRESULT MorvanePtProvider::EmbedPrivateMvjtInPrintTicket(PrintTicketXmlDocument& ticket, XDevmode& xdevmode) {
    return RunFeatureUnit([&]() -> HRESULT {
        const Bstr prefix = ticket.GetPrivatePrefix();
        DeleteEveryParameterInit(ticket, prefix, kJobTicket);
        Bstr text;
        if (GetMorvaneMvjtJobTicketAsCdataSection(xdevmode, text) == S_FALSE) return S_FALSE;
        ComPtr<IXMLDOMElement> parameter;  // after a failure the text is empty, which the document refuses
        ticket.CreateStringParameterInit(prefix.Get(), kJobTicket, std::move(text), parameter.Put());
        return InsertFirst(ticket, parameter.Get(), W("MorvanePtProvider::EmbedPrivateMvjtInPrintTicket"));
    });
}

HRESULT MorvanePtProvider::AddJobMvjtJobTicketCapabilities(PrintCapabilitiesXmlDocument& capabilities) {
    return RunFeatureUnit([&] {
        const Bstr prefix = capabilities.GetPrivatePrefix();
        DeleteEveryParameterDef(capabilities, prefix, kJobTicket);
        ComPtr<IXMLDOMElement> definition;
        const HRESULT created =
            capabilities.CreateStringParameterDef(prefix.Get(), kJobTicket, W("Optional"), CXString(), CXString(), 0,
                                                  kMaximumJobTicketLength, W("base64"), definition.Put());
        if (FAILED(created)) return created;
        InsertFirst(capabilities, definition.Get(), W("MorvanePtProvider::AddJobMvjtJobTicketCapabilities"));
        return created;
    });
}
