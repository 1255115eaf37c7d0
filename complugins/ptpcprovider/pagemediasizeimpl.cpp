// Page media size: the printer's paper sizes as options of PageMediaSize, to and from the DEVMODE's paper fields.
#include <ptpcprovider/paperlengths.h>

#include "ptpcprovider/morvaneptprovider.h"

#include <bstr.h>
#include <comptr.h>
#include <facts/producttexts.h>
#include <facts/units.h>
#include <mscacheddevicecapabilities.h>
#include <mvutil/operatingsystem.h>
#include <ptpcprovider/featureunit.h>
#include <ptpcprovider/printcapabilitiesxmldocument.h>
#include <ptpcprovider/printticketxmldocument.h>
#include <throwscheme.h>
#include <xdevmode.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <unordered_map>
#include <unordered_set>

namespace {

constexpr const WCHAR* kSourceUnit = W("complugins/ptpcprovider/pagemediasizeimpl");
constexpr const WCHAR* kMediaSize = W("PageMediaSize");
constexpr const WCHAR* kCustomOption = W("CustomMediaSize");
constexpr const WCHAR* kPostScriptCustomOption = W("PSCustomMediaSize");

// A ScoredProperty of a custom size with the parameter that it refers to, and what a ticket gives that parameter.
struct CustomSizeProperty {
    enum class Content { Width, Length, Zero, One };

    const WCHAR* name;
    const WCHAR* parameter;
    Content content;

    ULONG ValueOf(const _tag_FormsInfoRec& record) const {
        switch (content) {
            case Content::Width:
                return static_cast<ULONG>(MicrometresOfTenths(record.width));
            case Content::Length:
                return static_cast<ULONG>(MicrometresOfTenths(record.length));
            case Content::Zero:
                return 0;
            case Content::One:
                return 1;
        }
        return 0;
    }
};
using Content = CustomSizeProperty::Content;

constexpr CustomSizeProperty kCustomProperties[] = {
    {W("MediaSizeWidth"), W("PageMediaSizeMediaSizeWidth"), Content::Width},
    {W("MediaSizeHeight"), W("PageMediaSizeMediaSizeHeight"), Content::Length},
};
constexpr CustomSizeProperty kPostScriptCustomProperties[] = {
    {W("PSWidth"), W("PageMediaSizePSWidth"), Content::Width},
    {W("PSHeight"), W("PageMediaSizePSHeight"), Content::Length},
    {W("PSWidthOffset"), W("PageMediaSizePSWidthOffset"), Content::Zero},
    {W("PSHeightOffset"), W("PageMediaSizePSHeightOffset"), Content::Zero},
    {W("PSOrientation"), W("PageMediaSizePSOrientation"), Content::One},
};

std::span<const CustomSizeProperty> CustomSizeProperties(bool isPostScript) {
    if (isPostScript) return kPostScriptCustomProperties;
    return kCustomProperties;
}

bool IsOfType(const _tag_FormsInfoRec& record, PageSizeTypeEnum type) {
    return record.pageSizeType == static_cast<DWORD>(type);
}

// The size that a ticket asks for: by value, by size, or both.
struct TicketSize {
    LONG width = 0;   // micrometres; 0 when the ticket gives no usable size
    LONG height = 0;  // micrometres
    DWORD value = 0;  // data-model value of the page size; 0 for none
    bool isDefault = false;
    bool isCustom = false;
};

TicketSize MakeDefaultSize() {
    TicketSize size;
    size.value = OperatingSystem::UseEnglishPaperSizes() ? DataModelIds::kPageSizeLetter : DataModelIds::kPageSizeA4;
    size.isDefault = true;
    return size;
}

// The value of the first entry of the option's name; 0 when none bears it.
DWORD FindValueOfOption(const std::vector<const PageSizeDictionaryEntry*>& entries, WideStringView option) {
    for (const PageSizeDictionaryEntry* const entry : entries)
        if (option == entry->GetMsPageMediaSizeOptionName()) return entry->GetValueId().GetValueEnum();
    return 0;
}

DWORD FindValueOfOption(const PageSizeDictionary& dictionary, WideStringView option, const TicketSize& size) {
    DWORD value = 0;
    if (size.width > 0 && size.height > 0) {
        value = FindValueOfOption(dictionary.GetPageSizeEntryRefs(Dimension(size.width, Dimension::Micrometres),
                                                                  Dimension(size.height, Dimension::Micrometres)),
                                  option);
    }
    for (const PageSizeTypeEnum type : {PageSizeTypeEnum::Common, PageSizeTypeEnum::Other})
        if (value == 0) value = FindValueOfOption(dictionary.GetPageSizeEntryRefs(type), option);
    return value;
}

TicketSize ReadTicketSize(const PrintTicketXmlDocument& ticket, const PageSizeDictionary& dictionary) {
    Bstr option, prefix;
    if (!ticket.HasDocument() || ticket.GetFeatureOption(kMediaSize, &option, &prefix) == kElementNotFound)
        return MakeDefaultSize();

    TicketSize size;
    const bool isPostScript = option.View() == kPostScriptCustomOption;
    size.isCustom = isPostScript || option.View() == kCustomOption;
    const bool isRead = ticket.GetScoredPropertyValue(kMediaSize, isPostScript ? W("PSWidth") : W("MediaSizeWidth"),
                                                      &size.width) == S_OK &&
                        ticket.GetScoredPropertyValue(kMediaSize, isPostScript ? W("PSHeight") : W("MediaSizeHeight"),
                                                      &size.height) == S_OK;
    if (!isRead || size.width < 1 || size.height < 1) {
        if (size.isCustom) return MakeDefaultSize();
        size.width = size.height = 0;
    }
    size.value = FindValueOfOption(dictionary, option.View(), size);
    return size;
}

bool IsSameLength(LONG tenths, LONG micrometres) {
    return Dimension::IsEquivalent(Dimension(tenths, Dimension::TenthsOfMillimetre),
                                   Dimension(micrometres, Dimension::Micrometres), Dimension::Millimetres, 0,
                                   facts::kToNearest);
}

_tag_FormsInfoRec MakeCustomRecord(const TicketSize& size) {
    const auto tenths = [](LONG micrometres) {
        return Dimension(micrometres, Dimension::Micrometres)
            .GetValue(Dimension::TenthsOfMillimetre)
            .GetLongValue(facts::kToNearest);
    };
    _tag_FormsInfoRec record = {};
    record.msPaperId = DMPAPER_USER;
    record.width = tenths(size.width);
    record.length = tenths(size.height);
    return record;
}

// The record that the size asks for; a custom one when there is none.
_tag_FormsInfoRec SelectRecord(const std::vector<_tag_FormsInfoRec>& records, const TicketSize& size) {
    const _tag_FormsInfoRec* bySize = nullptr;
    const _tag_FormsInfoRec* byValue = nullptr;
    for (const _tag_FormsInfoRec& record : records) {
        if ((!bySize || IsOfType(record, PageSizeTypeEnum::UserForm)) && IsSameLength(record.width, size.width) &&
            IsSameLength(record.length, size.height)) {
            bySize = &record;
        }
        // Records may be without a value: then 0 says nothing of which size they are.
        if (size.value != 0 && record.pageSizeValue == size.value) {
            byValue = &record;
            break;
        }
    }
    if (size.isCustom && !bySize) return MakeCustomRecord(size);
    if (byValue) return *byValue;
    return bySize ? *bySize : MakeCustomRecord(size);
}

// The paper numbers under which the list has records of more than one type.
std::unordered_set<WORD> FindNumbersOfSeveralTypes(const std::vector<_tag_FormsInfoRec>& records) {
    std::unordered_map<WORD, DWORD> types;
    std::unordered_set<WORD> numbers;
    for (const _tag_FormsInfoRec& record : records) {
        const auto [known, isNew] = types.emplace(record.msPaperId, record.pageSizeType);
        if (!isNew && known->second != record.pageSizeType) numbers.insert(record.msPaperId);
    }
    return numbers;
}

// The ScoredProperties that say an option's size.
void AppendSizeProperties(PrintSchemaXmlDocument& document, IXMLDOMNode* option, const _tag_FormsInfoRec& record) {
    document.AppendChildIntegerScoredProperty(option, W("MediaSizeWidth"), MicrometresOfTenths(record.width));
    document.AppendChildIntegerScoredProperty(option, W("MediaSizeHeight"), MicrometresOfTenths(record.length));
}
void AppendCustomSizeProperties(PrintSchemaXmlDocument& document, IXMLDOMNode* option, bool isPostScript) {
    const Bstr keywords = document.GetKeywordsPrefix();
    for (const CustomSizeProperty& property : CustomSizeProperties(isPostScript)) {
        document.AppendChildParameterRefScoredProperty(option, keywords.Get(), property.name, keywords.Get(),
                                                       property.parameter);
    }
}

}  // namespace

void MorvanePtProvider::GetMsPageMediaSizeOptionName(bool custom, const _tag_FormsInfoRec& record, CXString* name,
                                                     MsPrintTicketNamespacesEnum* kind) {
    const ComChecks checks(W("MorvanePtProvider::GetMsPageMediaSizeOptionName"), kSourceUnit);
    checks.Require(name != nullptr, E_POINTER, 385);
    checks.Require(kind != nullptr, E_POINTER, 386);
    *kind = NamespaceKind::Keywords;
    if (custom) {
        *name = IsPostScriptDevice() ? kPostScriptCustomOption : kCustomOption;
        return;
    }
    const auto makePrivateName = [&](const WCHAR* start) {
        name->Format(W("%s%u_%ux%u"), start, record.msPaperId, static_cast<DWORD>(record.width),
                     static_cast<DWORD>(record.length));
        *kind = NamespaceKind::Private;
    };
    switch (static_cast<PageSizeTypeEnum>(record.pageSizeType)) {
        case PageSizeTypeEnum::UserForm:
            return makePrivateName(W("UserForm_"));
        case PageSizeTypeEnum::DriverCustom:
            return makePrivateName(W("DriverCustomSize_"));
        case PageSizeTypeEnum::Common:
        case PageSizeTypeEnum::Other:
        case PageSizeTypeEnum::MappedForm:
            break;
        default:
            checks.Throw(E_FAIL, 446);
    }
    const Dimension width(record.width, Dimension::TenthsOfMillimetre);
    const Dimension length(record.length, Dimension::TenthsOfMillimetre);
    for (const PageSizeDictionaryEntry* const entry : GetPageSizeDictionary().GetPageSizeEntryRefs(width, length)) {
        if (entry->GetValueId().GetValueEnum() != record.pageSizeValue) continue;
        *name = entry->GetMsPageMediaSizeOptionName();
        if (!entry->IsPredefinedMsOptionName()) *kind = NamespaceKind::Private;
        return;
    }
}

bool MorvanePtProvider::GetPrintTicketPaperSize(PrintTicketXmlDocument& ticket,
                                                MsCachedDeviceCapabilities& deviceCapabilities,
                                                _tag_FormsInfoRec* paper) {
    const TicketSize size = ReadTicketSize(ticket, GetPageSizeDictionary());
    *paper = SelectRecord(deviceCapabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printerHandle_), size);
    return size.isDefault;
}

void MorvanePtProvider::GetDevmodePaperSize(DEVMODEW* devmode, MsCachedDeviceCapabilities& deviceCapabilities,
                                            _tag_FormsInfoRec* paper) {
    std::vector<BYTE> copy(std::size_t{devmode->dmSize} + devmode->dmDriverExtra);
    std::memcpy(copy.data(), devmode, copy.size());
    DEVMODEW* const normalized = reinterpret_cast<DEVMODEW*>(copy.data());
    XDevmode::NormalizeDevmodePaperSize(printerHandle_, normalized, deviceCapabilities);
    const int number = normalized->dmPaperSize, width = normalized->dmPaperWidth, length = normalized->dmPaperLength;

    const std::vector<_tag_FormsInfoRec>& records =
        deviceCapabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printerHandle_);
    const auto findNumber = [&](int wanted) {
        return std::find_if(records.begin(), records.end(),
                            [&](const _tag_FormsInfoRec& record) { return record.msPaperId == wanted; });
    };
    auto found = records.end();
    if (number != DMPAPER_USER) {
        if (normalized->dmFields & DM_PAPERSIZE) found = findNumber(number);
    } else {
        // A driver's or user's own size stands for the dimensions until another record has them, too.
        for (auto record = records.begin(); record != records.end(); ++record) {
            if (IsOfType(*record, PageSizeTypeEnum::PostScriptCustom)) continue;
            if (record->width != width || record->length != length) continue;
            found = record;
            if (!IsOfType(*record, PageSizeTypeEnum::DriverCustom)) break;
        }
    }
    if (found != records.end()) {
        *paper = *found;
        return;
    }
    found = findNumber(DMPAPER_USER);
    if (found == records.end()) return;
    *paper = *found;
    paper->width = width;
    paper->length = length;
}

HRESULT MorvanePtProvider::ConvertPageMediaSizeToDevmode(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                         MsCachedDeviceCapabilities& deviceCapabilities) {
    return RunFeatureUnit([&] {
        _tag_FormsInfoRec paper = {};
        GetPrintTicketPaperSize(ticket, deviceCapabilities, &paper);
        const bool goesByDimensions = IsOfType(paper, PageSizeTypeEnum::DriverCustom) ||
                                      IsOfType(paper, PageSizeTypeEnum::UserForm) ||
                                      IsOfType(paper, PageSizeTypeEnum::PostScriptCustom);
        devmode->dmPaperSize = static_cast<SHORT>(goesByDimensions ? DMPAPER_USER : paper.msPaperId);
        XDevmode::SetPaperDimensions(devmode, paper.width, paper.length);
        XDevmode::SetFormName(devmode, paper.name);
        devmode->dmFields &= ~static_cast<DWORD>(DM_FORMNAME | DM_PAPERLENGTH | DM_PAPERWIDTH);
        devmode->dmFields |= DM_PAPERSIZE;
        if (devmode->dmPaperSize == DMPAPER_USER) devmode->dmFields |= DM_PAPERLENGTH | DM_PAPERWIDTH;
        return S_OK;
    });
}

HRESULT MorvanePtProvider::ConvertDevmodeToPageMediaSize(PrintTicketXmlDocument& ticket, DEVMODEW* devmode,
                                                         MsCachedDeviceCapabilities& deviceCapabilities) {
    return RunFeatureUnit([&]() -> HRESULT {
        _tag_FormsInfoRec paper = {};
        GetDevmodePaperSize(devmode, deviceCapabilities, &paper);
        const bool isCustom = paper.msPaperId == DMPAPER_USER;
        CXString name;
        NamespaceKind kind = NamespaceKind::Keywords;
        GetMsPageMediaSizeOptionName(isCustom, paper, &name, &kind);

        const Bstr keywords = ticket.GetKeywordsPrefix();
        ticket.DeleteFeatureAndOrphanParameterInitsIfExists(keywords.Get(), kMediaSize);
        ComPtr<IXMLDOMElement> feature, option;
        ticket.CreateFeatureOptionPair(kMediaSize, kind == NamespaceKind::Keywords, name, feature.Put(), option.Put());
        if (isCustom) {
            AppendCustomSizeProperties(ticket, option.Get(), IsPostScriptDevice());
        } else {
            AppendSizeProperties(ticket, option.Get(), paper);
        }
        ticket.AppendChildToRootNode(feature.Get());
        if (!isCustom) return S_OK;
        for (const CustomSizeProperty& property : CustomSizeProperties(IsPostScriptDevice()))
            ticket.AppendIntegerParameterInit(keywords.Get(), property.parameter, property.ValueOf(paper));
        return S_OK;
    });
}

HRESULT MorvanePtProvider::ReplacePageMediaSizeCapabilities(PrintCapabilitiesXmlDocument& capabilities,
                                                            PrintTicketXmlDocument&,
                                                            MsCachedDeviceCapabilities& deviceCapabilities) {
    return RunFeatureUnit([&] {
        const ComChecks checks(W("MorvanePtProvider::ReplacePageMediaSizeCapabilities"), kSourceUnit);
        const Bstr keywords = capabilities.GetKeywordsPrefix();
        const Bstr privatePrefix = capabilities.GetPrivatePrefix();
        DeleteEveryFeature(capabilities, keywords, kMediaSize);
        ComPtr<IXMLDOMElement> feature;
        capabilities.CreatePickOneFeature(
            kMediaSize, GetProductStringLoader().LoadStringW(facts::text::kMediaSize.number), feature.Put());

        const std::vector<_tag_FormsInfoRec>& records =
            deviceCapabilities.GetPaperDatabaseCachedDeviceCapabilitiesVector(printerHandle_);
        const std::unordered_set<WORD> numbersOfSeveralTypes = FindNumbersOfSeveralTypes(records);
        // The rule is that of the product whose strings were just loaded.
        const bool hidesCustom = Application::DoesApplicationNeedCustomSizeRemovedFromPrintCapabilitiesXml();
        HRESULT result = S_OK;
        for (const _tag_FormsInfoRec& record : records) {
            if (IsOfType(record, PageSizeTypeEnum::PostScriptCustom)) continue;
            const bool isCustom = record.msPaperId == DMPAPER_USER;
            if (isCustom && hidesCustom) continue;
            const bool yields =
                IsOfType(record, PageSizeTypeEnum::MappedForm) || IsOfType(record, PageSizeTypeEnum::DriverCustom);
            if (!isCustom && yields && numbersOfSeveralTypes.contains(record.msPaperId)) continue;

            CXString name;
            NamespaceKind kind = NamespaceKind::Keywords;
            GetMsPageMediaSizeOptionName(isCustom, record, &name, &kind);
            ComPtr<IXMLDOMElement> option;
            capabilities.CreateOption(name, kind == NamespaceKind::Keywords ? keywords.Get() : privatePrefix.Get(),
                                      record.name, W("None"), option.Put());
            if (isCustom) {
                AppendCustomSizeProperties(capabilities, option.Get(), IsPostScriptDevice());
            } else {
                AppendSizeProperties(capabilities, option.Get(), record);
            }
            result = checks.Succeeds(feature->appendChild(option.Get(), nullptr));
        }
        capabilities.AppendChildToRootNode(feature.Get());
        return result;
    });
}
