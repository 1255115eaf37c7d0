// Colour management: PageColorManagement and PageICMRenderingIntent, to and from the DEVMODE's ICM fields.
#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/producttexts.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>

namespace {

constexpr const WCHAR* kColorManagement = W("PageColorManagement");
constexpr const WCHAR* kRenderingIntent = W("PageICMRenderingIntent");

struct ColorOption {
    const WCHAR* name;
    DWORD devmodeValue;
    DWORD displayString;  // 0: never offered
};

constexpr ColorOption kMethodNone = {W("None"), DMICMMETHOD_NONE, facts::text::kNoColorManagement.number};
constexpr ColorOption kMethodSystem = {W("System"), DMICMMETHOD_SYSTEM, facts::text::kSystemColorManagement.number};
constexpr ColorOption kMethodDriver = {W("Driver"), DMICMMETHOD_DRIVER, 0};
constexpr ColorOption kMethodDevice = {W("Device"), DMICMMETHOD_DEVICE, facts::text::kDeviceColorManagement.number};
constexpr ColorOption kMethods[] = {kMethodNone, kMethodSystem, kMethodDriver, kMethodDevice};

constexpr ColorOption kIntents[] = {
    {W("AbsoluteColorimetric"), DMICM_ABS_COLORIMETRIC, facts::text::kAbsoluteColorimetric.number},
    {W("RelativeColorimetric"), DMICM_COLORIMETRIC, facts::text::kRelativeColorimetric.number},
    {W("Photographs"), DMICM_CONTRAST, facts::text::kPhotographs.number},
    {W("BusinessGraphics"), DMICM_SATURATE, facts::text::kBusinessGraphics.number},
};
constexpr const WCHAR* kDefaultIntent = W("Photographs");

// The option that stands for the DEVMODE value, or the default.
template <std::size_t Count>
const WCHAR* NameOfValue(const ColorOption (&options)[Count], DWORD value, const WCHAR* defaultName) {
    for (const ColorOption& option : options)
        if (option.devmodeValue == value) return option.name;
    return defaultName;
}

// Puts the feature with the chosen option, both keywords, in place of what the ticket holds of it.
void ReplaceFeature(PrintTicketXmlDocument& ticket, const WCHAR* feature, const WCHAR* option) {
    const Bstr keywords = ticket.GetKeywordsPrefix();
    DeleteEveryFeature(ticket, keywords, feature);
    ComPtr<IXMLDOMElement> featureElement, optionElement;
    ticket.CreateFeatureOptionPair(feature, true, option, featureElement.Put(), optionElement.Put());
    ticket.AppendChildToRootNode(featureElement.Get());
}

}  // namespace

bool MorvanePtProvider::HasColorFeatures() {
    return controllerFamily_ == DataModelIds::kControllerFamily8434 && IsColorDevice();
}

HRESULT MorvanePtProvider::AddOrReplaceColorFeaturesCapabilities(PrintCapabilitiesXmlDocument& capabilities) {
    return RunFeatureUnit([&] {
        if (!HasColorFeatures()) return S_OK;
        const Bstr keywords = capabilities.GetKeywordsPrefix();
        const ProductStringLoader& texts = GetProductStringLoader();
        const auto createFeature = [&](const WCHAR* name, DWORD display) {
            DeleteEveryFeature(capabilities, keywords, name);
            ComPtr<IXMLDOMElement> feature;
            capabilities.CreateFeature(name, texts.LoadStringW(display), feature.Put());
            return feature;
        };
        const auto offer = [&](const ComPtr<IXMLDOMElement>& feature, const ColorOption& option) {
            capabilities.AppendChildOption(option.name, keywords.Get(), texts.LoadStringW(option.displayString),
                                           W("None"), feature.Get());
        };

        const auto management = createFeature(kColorManagement, facts::text::kColorManagement.number);
        if (IsAtLeastOsVersion6()) offer(management, kMethodNone);
        if (IsPostScriptDevice()) offer(management, kMethodDevice);
        if (!HasPrivateNamespace() && IsAtLeastOsVersion6()) offer(management, kMethodSystem);
        capabilities.AppendChildToRootNode(management.Get());

        if (!IsAtLeastOsVersion6()) {
            DeleteEveryFeature(capabilities, keywords, kRenderingIntent);
            return S_OK;
        }
        const auto intents = createFeature(kRenderingIntent, facts::text::kRenderingIntent.number);
        for (const ColorOption& intent : kIntents) offer(intents, intent);
        return capabilities.AppendChildToRootNode(intents.Get());
    });
}

// The rendering intent is not read in this direction.
HRESULT MorvanePtProvider::ConvertColorFeaturesToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                         AttributeBytesIndexedList*, bool*) {
    return RunFeatureUnit([&] {
        if (!HasColorFeatures()) return S_OK;
        Bstr option, prefix;
        if (ticket.GetFeatureOption(kColorManagement, &option, &prefix) != S_OK) return S_OK;
        if (!IsAtLeastOsVersion6()) {
            devmode->dmICMMethod = DMICMMETHOD_DEVICE;
            return S_OK;
        }
        if (prefix.View() != ticket.GetKeywordsPrefix().View()) return S_OK;
        for (const ColorOption& method : kMethods)
            if (option.View() == method.name) devmode->dmICMMethod = method.devmodeValue;
        return S_OK;
    });
}

HRESULT MorvanePtProvider::ConvertDevmodeToColorFeatures(PrintTicketXmlDocument& ticket, DEVMODEW* devmode, XDevmode&) {
    return RunFeatureUnit([&] {
        if (!HasColorFeatures() || !IsAtLeastOsVersion6()) return S_OK;
        ReplaceFeature(ticket, kColorManagement, NameOfValue(kMethods, devmode->dmICMMethod, kMethodDevice.name));
        ReplaceFeature(ticket, kRenderingIntent, NameOfValue(kIntents, devmode->dmICMIntent, kDefaultIntent));
        return S_OK;
    });
}
