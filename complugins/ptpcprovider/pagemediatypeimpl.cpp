// Page media type: the printer's media types as options of PageMediaType, to and from the document properties.
#include <ptpcprovider/reportedmediatypes.h>

#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/features.h>
#include <facts/producttexts.h>
#include <mscacheddevicecapabilities.h>
#include <mvutil/crc32.h>
#include <mvutil/formatting.h>
#include <mvutil/printer.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/mediatypetable.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>
#include <throwscheme.h>
#include <winspool.h>
#include <xdevmode.h>

#include <algorithm>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/ptpcprovider/pagemediatypeimpl");
constexpr const WCHAR* kMediaType = W("PageMediaType");

// Where the document properties hold the media type: an option inside two collections.
const AttributeBytesFeatureId kOuterCollection(facts::feature::kPaper);
const AttributeBytesFeatureId kInnerCollection(facts::feature::kStock);
const AttributeBytesFeatureId kMediaTypeFeature(facts::feature::kMediaType);

CXString MakeCustomOptionName(const CXString& mediaName) {
    CXString name;
    name.Format(W("%s%u"), W("CustomType_"),
                Crc32::GetCrc(mediaName.GetString(), mediaName.GetLength() * sizeof(WCHAR)));
    return name;
}

MediaTypeDataEntry MakeEntry(const MediaTypeRow& row, const ReportedMediaType& type) {
    MediaTypeDataEntry entry{type.name, row.value, row.optionName, row.inKeywordsNamespace, row.properties};
    if (IsUserDefinedMediaType(type.number)) {
        entry.value = type.number;
        entry.inKeywordsNamespace = false;
        entry.optionName = MakeCustomOptionName(type.name);
    }
    return entry;
}

// The media type that the document properties hold: a known value, or a text that the user made.
struct ChosenMediaType {
    DWORD value = DataModelIds::kNotSet;
    CXString text;
};

AttributeBytesListValue MakeListValue(const AttributeBytesIndexedList& list) {
    AttributeBytesRawList raw;
    raw.ImportFromIndexedList(list);
    return AttributeBytesListValue(1, raw);
}

// Whether the entry was not yet the one that the list holds.
bool StoreMediaType(AttributeBytesIndexedList& list, const MediaTypeDataEntry& entry) {
    AttributeBytesIndexedList outer, inner;
    list.GetCollection(kOuterCollection, outer);
    outer.GetCollection(kInnerCollection, inner);
    ChosenMediaType current;
    inner.GetOptionValueOrNewId(kMediaTypeFeature, current.value, current.text);
    if (current.value == entry.value) return false;
    const bool isUserDefined = IsUserDefinedMediaType(entry.value);
    if (isUserDefined && !current.text.IsEmpty() && current.text == entry.displayName) return false;

    inner.SetAttributeBytes(kMediaTypeFeature,
                            isUserDefined ? AttributeBytesOptionValue(AttributeBytesNewValueId(entry.displayName), true)
                                          : AttributeBytesOptionValue(AttributeBytesValueId(entry.value),
                                                                      entry.value != DataModelIds::kNotSet));
    outer.SetAttributeBytes(kInnerCollection, MakeListValue(inner));
    list.SetAttributeBytes(kOuterCollection, MakeListValue(outer));
    return true;
}

}  // namespace

std::vector<MediaTypeDataEntry> MorvanePtProvider::GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(
    MsCachedDeviceCapabilities& deviceCapabilities) {
    const CXString printerName = Printer(printerHandle_).GetPrinterName();
    const std::vector<ReportedMediaType> types = ReadReportedMediaTypes([&](WORD capability, WCHAR* output) {
        return DeviceCapabilitiesW(printerName, nullptr, capability, output, deviceCapabilities.GetDevmode());
    });
    std::vector<MediaTypeDataEntry> entries;
    for (const ReportedMediaType& type : types)
        if (const MediaTypeRow* const row = FindMediaType(type.number)) entries.push_back(MakeEntry(*row, type));
    return entries;
}

HRESULT MorvanePtProvider::AddOrReplacePageMediaTypeCapabilities(PrintCapabilitiesXmlDocument& capabilities,
                                                                 MsCachedDeviceCapabilities& deviceCapabilities) {
    return RunFeatureUnit([&]() -> HRESULT {
        const auto entries = GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(deviceCapabilities);
        if (entries.empty()) return E_FAIL;
        const Bstr keywords = capabilities.GetKeywordsPrefix();
        const Bstr privatePrefix = capabilities.GetPrivatePrefix();
        DeleteEveryFeature(capabilities, keywords, kMediaType);
        ComPtr<IXMLDOMElement> feature;
        capabilities.CreatePickOneFeature(
            kMediaType, GetProductStringLoader().LoadStringW(facts::text::kMediaType.number), feature.Put());
        HRESULT result = S_OK;
        for (const MediaTypeDataEntry& entry : entries) {
            ComPtr<IXMLDOMElement> option;
            capabilities.CreateOption(entry.optionName,
                                      entry.inKeywordsNamespace ? keywords.Get() : privatePrefix.Get(),
                                      entry.displayName, W("None"), option.Put());
            for (std::size_t index = 0; index < kMediaTypePropertyCount; ++index) {
                if (*entry.properties[index] == W('\0')) continue;
                capabilities.AppendChildQNameScoredProperty(option.Get(), kMediaTypeProperties[index],
                                                            entry.properties[index]);
            }
            result = ComChecks(W("MorvanePtProvider::AddOrReplacePageMediaTypeCapabilities"), kSourceUnit)
                         .Succeeds(feature->appendChild(option.Get(), nullptr));
        }
        capabilities.AppendChildToRootNode(feature.Get());
        return result;
    });
}

HRESULT MorvanePtProvider::ConvertPageMediaTypeToDevmode(PrintTicketXmlDocument& ticket,
                                                         MsCachedDeviceCapabilities& deviceCapabilities,
                                                         AttributeBytesIndexedList* list, bool* changed) {
    return RunFeatureUnit([&] {
        Bstr option, prefix;
        if (ticket.GetFeatureOption(kMediaType, &option, &prefix) != S_OK) return S_OK;
        const auto entries = GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(deviceCapabilities);
        if (entries.empty() || !list) return S_OK;
        const Bstr keywords = ticket.GetKeywordsPrefix();
        const Bstr privatePrefix = ticket.GetPrivatePrefix();
        const auto named = std::find_if(entries.begin(), entries.end(), [&](const MediaTypeDataEntry& entry) {
            return option.View() == entry.optionName.AsWideString() &&
                   prefix.View() == (entry.inKeywordsNamespace ? keywords : privatePrefix).View();
        });
        if (StoreMediaType(*list, named == entries.end() ? entries.front() : *named)) *changed = true;
        return S_OK;
    });
}

HRESULT MorvanePtProvider::ConvertDevmodeToPageMediaType(PrintTicketXmlDocument& ticket, XDevmode& xdevmode,
                                                         MsCachedDeviceCapabilities& deviceCapabilities) {
    return RunFeatureUnit([&]() -> HRESULT {
        AttributeBytesIndexedList outer, inner;
        ChosenMediaType chosen;
        xdevmode.GetDocPropAttributeBytesIndexedList()->GetCollection(kOuterCollection, outer);
        if (outer.GetCollection(kInnerCollection, inner))
            inner.GetOptionValueOrNewId(kMediaTypeFeature, chosen.value, chosen.text);
        const CXString customName = chosen.text.IsEmpty() ? CXString() : MakeCustomOptionName(chosen.text);

        const auto entries = GetMediaTypeCachedDeviceCapabilitiesAndPrintSchemaMappings(deviceCapabilities);
        if (entries.empty()) return E_FAIL;
        const auto found = std::find_if(entries.begin(), entries.end(), [&](const MediaTypeDataEntry& entry) {
            return entry.value == chosen.value ||
                   (IsUserDefinedMediaType(entry.value) && entry.optionName == customName);
        });
        const MediaTypeDataEntry& entry = found == entries.end() ? entries.front() : *found;
        ComPtr<IXMLDOMElement> feature, option;
        ticket.CreateFeatureOptionPair(kMediaType, entry.inKeywordsNamespace, entry.optionName, feature.Put(),
                                       option.Put());
        const Bstr keywords = ticket.GetKeywordsPrefix();
        DeleteEveryFeature(ticket, keywords, kMediaType);
        return ticket.AppendChildToRootNode(feature.Get());
    });
}
