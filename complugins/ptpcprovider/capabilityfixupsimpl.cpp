// Fix-ups of what the core driver wrote: page orientation, resolutions and duplex.
#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/producttexts.h>
#include <mscacheddevicecapabilities.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <throwscheme.h>

#include <algorithm>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/ptpcprovider/capabilityfixupsimpl");

struct DuplexOption {
    const WCHAR* name;
    DWORD displayString;
};
constexpr DuplexOption kDuplexOptions[] = {{W("OneSided"), facts::text::kOneSided.number},
                                           {W("TwoSidedLongEdge"), facts::text::kTwoSidedLongEdge.number},
                                           {W("TwoSidedShortEdge"), facts::text::kTwoSidedShortEdge.number}};

}  // namespace

HRESULT MorvanePtProvider::DeleteRedundantPageOrientationFromPpdGpdNamespace(PrintSchemaXmlDocument& document) {
    return RunFeatureUnit([&] {
        return document.DeleteFeatureNodeIfADuplicateExists(document.GetKeywordsPrefix().Get(), W("PageOrientation"));
    });
}

HRESULT MorvanePtProvider::FixUpResolutionCapabilities(PrintCapabilitiesXmlDocument& capabilities,
                                                       MsCachedDeviceCapabilities& deviceCapabilities) {
    return RunFeatureUnit([&]() -> HRESULT {
        const ComChecks checks(W("MorvanePtProvider::FixUpResolutionCapabilities"), kSourceUnit);
        const std::vector<_tag_ResolutionInfoRec> records =
            deviceCapabilities.GetResolutionEnumsCachedDeviceCapabilitiesVector(printerHandle_);
        if (records.empty()) return E_FAIL;
        ComPtr<IXMLDOMNode> feature;
        capabilities.GetFeatureNode(capabilities.GetKeywordsPrefix().Get(), W("PageResolution"), feature.Put());
        capabilities.ReplaceDisplayNamePropertyValue(
            feature.Get(), GetProductStringLoader().LoadStringW(facts::text::kResolution.number));

        const ComPtr<IXMLDOMNodeList> options = capabilities.GetChildOptionNodes(feature.Get());
        LONG count = 0;
        checks.Succeeds(options->get_length(&count));
        HRESULT result = S_OK;
        for (LONG index = 0; index < count; ++index) {
            ComPtr<IXMLDOMNode> option;
            checks.Succeeds(options->get_item(index, option.Put()));
            checks.Require(static_cast<bool>(option), E_FAIL);
            const auto read = [&](const WCHAR* property) {
                return ReadDecimalInteger(
                    capabilities.GetChildScoredPropertyValueAsString(option.Get(), property).AsWideString());
            };
            const LONG x = read(W("ResolutionX")), y = read(W("ResolutionY"));
            const auto record = std::find_if(records.begin(), records.end(), [&](const _tag_ResolutionInfoRec& known) {
                return known.crossFeed == x && known.feed == y;
            });
            if (record == records.end()) {
                result = capabilities.DeleteNode(option.Get());
                continue;
            }
            capabilities.ReplaceDisplayNamePropertyValue(option.Get(), record->name);
            result = S_OK;
        }
        return result;
    });
}

HRESULT MorvanePtProvider::FixUpDuplexCapabilities(PrintCapabilitiesXmlDocument& capabilities) {
    return RunFeatureUnit([&] {
        const Bstr keywords = capabilities.GetKeywordsPrefix();
        ComPtr<IXMLDOMNode> feature;
        capabilities.GetFeatureNode(keywords.Get(), W("JobDuplexAllDocumentsContiguously"), feature.Put());
        const ProductStringLoader& texts = GetProductStringLoader();
        capabilities.ReplaceDisplayNamePropertyValue(feature.Get(), texts.LoadStringW(facts::text::kDuplex.number));
        HRESULT result = S_OK;
        for (const DuplexOption& option : kDuplexOptions) {
            const CXString text = texts.LoadStringW(option.displayString);
            if (text.IsEmpty()) continue;
            result =
                capabilities.ReplaceOptionDisplayNamePropertyValue(feature.Get(), keywords.Get(), option.name, text);
        }
        return result;
    });
}
