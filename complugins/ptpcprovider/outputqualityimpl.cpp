// Output quality: PageOutputQuality is "Automatic" or absent, as the driver's own quality settings travel elsewhere.
#include <ptpcprovider/outputqualityimpl.h>

#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/producttexts.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>
#include <throwscheme.h>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/ptpcprovider/outputqualityimpl");
constexpr const WCHAR* kOutputQuality = W("PageOutputQuality");
constexpr const WCHAR* kAutomatic = W("Automatic");

}  // namespace

bool MorvanePtProvider::HasAutomaticOutputQuality() {
    return GetProductData().GetControllerFamily() == DataModelIds::kControllerFamily8430;
}

std::vector<PageOutputQualityDataEntry> MorvanePtProvider::GetPageOutputQualityCapabilitiesAndPrintSchemaMappings() {
    return {};
}

HRESULT MorvanePtProvider::AddOrReplacePageOutputQualityCapabilities(PrintCapabilitiesXmlDocument& capabilities) {
    return RunFeatureUnit([&] {
        const Bstr keywords = capabilities.GetKeywordsPrefix();
        DeleteEveryFeature(capabilities, keywords, kOutputQuality);
        if (!HasAutomaticOutputQuality()) return S_OK;
        ComPtr<IXMLDOMElement> feature, option;
        const ProductStringLoader& texts = GetProductStringLoader();
        capabilities.CreatePickOneFeature(kOutputQuality, texts.LoadStringW(facts::text::kOutputQuality.number),
                                          feature.Put());
        capabilities.CreateOption(kAutomatic, keywords.Get(), texts.LoadStringW(facts::text::kAutomatic.number),
                                  W("None"), option.Put());
        const HRESULT result = ComChecks(W("MorvanePtProvider::AddOrReplacePageOutputQualityCapabilities"), kSourceUnit)
                                   .Succeeds(feature->appendChild(option.Get(), nullptr));
        capabilities.AppendChildToRootNode(feature.Get());
        return result;
    });
}

HRESULT MorvanePtProvider::ConvertPageOutputQualityToDevmode(PrintTicketXmlDocument&, AttributeBytesIndexedList*,
                                                             bool*) {
    return S_OK;  // no public field and no document property follows the ticket's quality
}

HRESULT MorvanePtProvider::ConvertDevmodeToPageOutputQuality(PrintTicketXmlDocument& ticket, XDevmode&) {
    return RunFeatureUnit([&] {
        const Bstr keywords = ticket.GetKeywordsPrefix();
        DeleteEveryFeature(ticket, keywords, kOutputQuality);
        if (!HasAutomaticOutputQuality()) return S_OK;
        ComPtr<IXMLDOMElement> feature, option;
        ticket.CreateFeatureOptionPair(kOutputQuality, true, kAutomatic, feature.Put(), option.Put());
        return ticket.AppendChildToRootNode(feature.Get());
    });
}
