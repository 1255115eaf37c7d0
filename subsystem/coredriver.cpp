// CoreDriver: a small core printer driver, from the DEVMODE and the product to documents and back.
#include "coredriver.h"

#include <facts/units.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <span>

#include "devmodefields.h"
#include "hosttext.h"
#include "installedprinter.h"
#include "schemasettings.h"
#include "schematext.h"

namespace {

using namespace schematext;

using facts::kLargestField, facts::kMicrometresPerTenth, facts::kSizeTolerance;

// A DEVMODE field's value, the option that stands for it, and the option's display name; without one the option is
// taken and neither offered nor written, since another one stands for the value.
struct Choice {
    SHORT value;
    const char* keyword;
    const char* displayName;
};
constexpr Choice kOrientations[] = {
    {DMORIENT_PORTRAIT, "Portrait", "Portrait"},
    {DMORIENT_LANDSCAPE, "Landscape", "Landscape"},
};
constexpr Choice kSides[] = {
    {DMDUP_SIMPLEX, "OneSided", "One-sided"},
    {DMDUP_VERTICAL, "TwoSidedLongEdge", "Two-sided, long edge"},
    {DMDUP_HORIZONTAL, "TwoSidedShortEdge", "Two-sided, short edge"},
};
constexpr Choice kColours[] = {
    {DMCOLOR_COLOR, "Color", "Colour"},
    {DMCOLOR_MONOCHROME, "Monochrome", "Monochrome"},
    {DMCOLOR_MONOCHROME, "Grayscale", nullptr},
};
// The component writes the rendering intent and leaves it to the core driver to read it.
constexpr Choice kRenderingIntents[] = {
    {DMICM_SATURATE, "BusinessGraphics", nullptr},
    {DMICM_CONTRAST, "Photographs", nullptr},
    {DMICM_COLORIMETRIC, "RelativeColorimetric", nullptr},
    {DMICM_ABS_COLORIMETRIC, "AbsoluteColorimetric", nullptr},
};
constexpr Choice kCollations[] = {
    {DMCOLLATE_FALSE, "Uncollated", "Uncollated"},
    {DMCOLLATE_TRUE, "Collated", "Collated"},
};

// A feature that is one 16-bit field of the DEVMODE.
struct ChoiceFeature {
    const char* keyword;
    const char* displayName;
    std::size_t offset;
    DWORD flag;
    WORD capability;  // of DeviceCapabilitiesW: whether the printer has the feature
    std::span<const Choice> choices;
};
// In the order in which they are read from a ticket: of two for one field the last counts.
constexpr ChoiceFeature kChoiceFeatures[] = {
    {"PageOrientation", "Orientation", offsetof(DEVMODEW, dmOrientation), DM_ORIENTATION, DC_ORIENTATION,
     kOrientations},
    {"PageOutputColor", "Output colour", offsetof(DEVMODEW, dmColor), DM_COLOR, DC_COLORDEVICE, kColours},
    {"DocumentDuplex", "Two-sided printing of each document", offsetof(DEVMODEW, dmDuplex), DM_DUPLEX, DC_DUPLEX,
     kSides},
    {"JobDuplexAllDocumentsContiguously", "Two-sided printing", offsetof(DEVMODEW, dmDuplex), DM_DUPLEX, DC_DUPLEX,
     kSides},
    {"DocumentCollate", "Collation", offsetof(DEVMODEW, dmCollate), DM_COLLATE, DC_COLLATE, kCollations},
};

std::string Keyword(std::string_view name) { return "psk:" + std::string(name); }

SHORT GetField(const DEVMODEW& devmode, const ChoiceFeature& feature) {
    SHORT value;
    std::memcpy(&value, reinterpret_cast<const BYTE*>(&devmode) + feature.offset, sizeof value);
    return value;
}

void SetField(DEVMODEW& devmode, const ChoiceFeature& feature, SHORT value) {
    std::memcpy(reinterpret_cast<BYTE*>(&devmode) + feature.offset, &value, sizeof value);
    devmode.dmFields |= feature.flag;
}

std::string DisplayName(std::string_view name) { return Property("psk:DisplayName", ValueType::String, name); }

std::string PickOneFeature(const char* keyword, std::string_view displayName, const std::string& options) {
    if (options.empty()) return std::string();
    return Feature(Keyword(keyword),
                   Property("psf:SelectionType", ValueType::QName, "psk:PickOne") + DisplayName(displayName) + options);
}

std::string OfferedOption(const std::string& name, std::string_view displayName, const std::string& scored) {
    return Option(name, "psk:None", DisplayName(displayName) + scored);
}

std::string ScoredSize(const char* first, LONG firstValue, const char* second, LONG secondValue) {
    std::string text;
    if (firstValue > 0) text += ScoredProperty(Keyword(first), firstValue);
    if (secondValue > 0) text += ScoredProperty(Keyword(second), secondValue);
    return text;
}
std::string ScoredResolution(LONG x, LONG y) { return ScoredSize("ResolutionX", x, "ResolutionY", y); }
std::string ScoredMediaSize(LONG width, LONG length) {
    return ScoredSize("MediaSizeWidth", width, "MediaSizeHeight", length);
}

struct IntegerParameter {
    const char* name;
    const char* unit;
    const char* displayName;
    const char* mandatory;
    LONG minimum, maximum, preset;
};

std::string WriteDefinition(const IntegerParameter& parameter) {
    return ParameterDef(Keyword(parameter.name),
                        Property("psf:DataType", ValueType::QName, "xsd:integer") +
                            Property("psf:UnitType", ValueType::String, parameter.unit) +
                            Property("psf:DefaultValue", ValueType::Integer, std::to_string(parameter.preset)) +
                            Property("psf:MaxValue", ValueType::Integer, std::to_string(parameter.maximum)) +
                            Property("psf:MinValue", ValueType::Integer, std::to_string(parameter.minimum)) +
                            Property("psf:Multiple", ValueType::Integer, "1") +
                            Property("psf:Mandatory", ValueType::QName, Keyword(parameter.mandatory)) +
                            DisplayName(parameter.displayName));
}

std::string WriteCopiesDefinition(LONG maximum) {
    return WriteDefinition({"JobCopiesAllDocuments", "copies", "Copies", "Unconditional", 1, maximum, 1});
}

// Of the custom size's parameters, which the component's options refer to: sides in micrometres.
std::string WriteCustomSizeDefinitions(bool isPostScript, const SIZEL& smallest, const SIZEL& largest) {
    constexpr const char* kMandatory = "Conditional";
    const auto define = [&](const char* name, const char* displayName, LONG minimum, LONG maximum) {
        return WriteDefinition({name, "microns", displayName, kMandatory, minimum, maximum, minimum});
    };
    if (!isPostScript) {
        return define("PageMediaSizeMediaSizeWidth", "Custom width", smallest.cx, largest.cx) +
               define("PageMediaSizeMediaSizeHeight", "Custom height", smallest.cy, largest.cy);
    }
    return define("PageMediaSizePSWidth", "Custom width", smallest.cx, largest.cx) +
           define("PageMediaSizePSHeight", "Custom height", smallest.cy, largest.cy) +
           define("PageMediaSizePSWidthOffset", "Custom width offset", 0, largest.cx) +
           define("PageMediaSizePSHeightOffset", "Custom height offset", 0, largest.cy) +
           WriteDefinition({"PageMediaSizePSOrientation", "none", "Custom paper feed direction", kMandatory, 0, 3, 1});
}

bool IsNear(LONG side, std::int64_t wanted) {
    return wanted >= std::int64_t{side} - kSizeTolerance && wanted <= std::int64_t{side} + kSizeTolerance;
}

// The option that the ticket selects; null when there is none.
const SchemaOption* FindOption(const SchemaSettings& ticket, std::string_view feature) {
    const SchemaSetting* setting = ticket.FindKeyword(SchemaSetting::Kind::Feature, feature);
    return setting && !setting->options.empty() ? &setting->options.front() : nullptr;
}

// Empty for no option, and for one without a keyword's name.
std::string GetKeyword(const SchemaOption* option) {
    return option && option->name.IsKeyword() ? option->name.local : std::string();
}

}  // namespace

CoreDriver::CoreDriver(std::shared_ptr<const ProductDescription> product, const CXString& printer, const CXString& port)
    : product_(std::move(product)), printer_(printer), port_(port) {}

WideString CoreDriver::GetOwnNamespace() const {
    return W("http://schemas.morvane.example/coredriver/") + *ToWide(std::to_string(product_->controllerFamily));
}

LONG CoreDriver::QueryNumber(WORD capability) const {
    return static_cast<LONG>(DeviceCapabilitiesW(printer_, port_, capability, nullptr, nullptr));
}

std::vector<std::pair<LONG, LONG>> CoreDriver::QueryResolutions() const {
    std::vector<std::pair<LONG, LONG>> resolutions;
    const LONG count = QueryNumber(DC_ENUMRESOLUTIONS);
    if (count <= 0) return resolutions;
    // Another process may add resolutions between the two calls; the answer is taken for the first count alone.
    std::vector<LONG> numbers(static_cast<std::size_t>(count) * 2);
    if (DeviceCapabilitiesW(printer_, port_, DC_ENUMRESOLUTIONS, reinterpret_cast<LPWSTR>(numbers.data()), nullptr) !=
        count)
        return resolutions;
    for (std::size_t at = 0; at < numbers.size(); at += 2) resolutions.emplace_back(numbers[at], numbers[at + 1]);
    return resolutions;
}

// ---- documents

std::string CoreDriver::WriteTicket(const DEVMODEW& devmode) const {
    std::string content = ParameterInit("psk:JobCopiesAllDocuments", std::max<SHORT>(devmode.dmCopies, 1));
    for (const ChoiceFeature& feature : kChoiceFeatures) {
        if (QueryNumber(feature.capability) <= 0) continue;
        const SHORT value = GetField(devmode, feature);
        for (const Choice& choice : feature.choices)
            if (choice.value == value && choice.displayName)
                content += Feature(Keyword(feature.keyword), Option(Keyword(choice.keyword), "", ""));
    }
    content += WriteResolution(devmode);
    content += WriteMediaSize(devmode);
    return Document("psf:PrintTicket", content);
}

std::string CoreDriver::WriteResolution(const DEVMODEW& devmode) const {
    LONG x = devmode.dmPrintQuality;
    LONG y = (devmode.dmFields & DM_YRESOLUTION) != 0 && devmode.dmYResolution > 0 ? devmode.dmYResolution : x;
    // A quality that is no number of dots: the product's own resolution.
    if (x <= 0) {
        for (const ProductResolution& resolution : product_->resolutions) {
            if (!resolution.isDefault) continue;
            x = resolution.crossFeed;
            y = resolution.feed;
        }
    }
    if (x <= 0) return std::string();
    return Feature("psk:PageResolution", Option("", "", ScoredResolution(x, y)));
}

std::string CoreDriver::WriteMediaSize(const DEVMODEW& devmode) const {
    if ((devmode.dmFields & DM_PAPERSIZE) != 0) {
        const ProductPaper* paper = product_->FindPaper(static_cast<WORD>(devmode.dmPaperSize));
        if (paper && paper->width > 0)
            return Feature("psk:PageMediaSize", Option(paper->keyword.empty() ? "" : Keyword(paper->keyword), "",
                                                       ScoredMediaSize(paper->width, paper->length)));
    }
    if (devmode.dmPaperWidth <= 0 || devmode.dmPaperLength <= 0) return std::string();
    return Feature("psk:PageMediaSize", Option("", "",
                                               ScoredMediaSize(devmode.dmPaperWidth * kMicrometresPerTenth,
                                                               devmode.dmPaperLength * kMicrometresPerTenth)));
}

std::string CoreDriver::WriteCapabilities() const {
    std::string content;
    for (const ChoiceFeature& feature : kChoiceFeatures) {
        if (QueryNumber(feature.capability) <= 0) continue;
        std::string options;
        for (const Choice& choice : feature.choices)
            if (choice.displayName) options += OfferedOption(Keyword(choice.keyword), choice.displayName, "");
        content += PickOneFeature(feature.keyword, feature.displayName, options);
    }
    content += WriteResolutionChoices();
    content += WriteMediaSizeChoices();
    content += WriteCopiesDefinition(std::max<LONG>(QueryNumber(DC_COPIES), 1));
    const auto sides = [&](WORD capability) {
        const auto packed = static_cast<DWORD>(QueryNumber(capability));
        return SIZEL{static_cast<LONG>(packed & 0xFFFF) * kMicrometresPerTenth,
                     static_cast<LONG>(packed >> 16) * kMicrometresPerTenth};
    };
    content += WriteCustomSizeDefinitions(IsPostScript(*product_), sides(DC_MINEXTENT), sides(DC_MAXEXTENT));
    return Document("psf:PrintCapabilities", content);
}

std::string CoreDriver::WriteResolutionChoices() const {
    std::string options;
    for (const auto& [x, y] : QueryResolutions())
        options +=
            OfferedOption("", std::to_string(x) + " x " + std::to_string(y) + " dots per inch", ScoredResolution(x, y));
    return PickOneFeature("PageResolution", "Resolution", options);
}

// Sizes that the Print Schema names once each; other sizes have no name that the core driver could give them.
std::string CoreDriver::WriteMediaSizeChoices() const {
    std::string options;
    std::set<std::string> written;
    for (const ProductPaper& paper : product_->papers) {
        if (paper.keyword.empty() || paper.width <= 0 || !written.insert(paper.keyword).second) continue;
        options += OfferedOption(Keyword(paper.keyword), paper.name, ScoredMediaSize(paper.width, paper.length));
    }
    return PickOneFeature("PageMediaSize", "Paper size", options);
}

// ---- tickets

void CoreDriver::ReadTicket(IXMLDOMDocument2* document, DEVMODEW& devmode) const {
    const SchemaSettings ticket(document);
    for (const ChoiceFeature& feature : kChoiceFeatures) {
        if (QueryNumber(feature.capability) <= 0) continue;
        const std::string keyword = GetKeyword(FindOption(ticket, feature.keyword));
        for (const Choice& choice : feature.choices)
            if (keyword == choice.keyword) SetField(devmode, feature, choice.value);
    }
    const std::string intent = GetKeyword(FindOption(ticket, "PageICMRenderingIntent"));
    for (const Choice& choice : kRenderingIntents) {
        if (intent != choice.keyword || QueryNumber(DC_COLORDEVICE) <= 0) continue;
        devmode.dmICMIntent = static_cast<DWORD>(choice.value);
        devmode.dmFields |= DM_ICMINTENT;
    }
    const SchemaSetting* parameter = ticket.FindKeyword(SchemaSetting::Kind::Parameter, "JobCopiesAllDocuments");
    if (const std::int64_t copies = parameter ? parameter->GetNumber().value_or(0) : 0;
        copies >= 1 && copies <= kLargestField) {
        devmode.dmCopies = static_cast<SHORT>(copies);
        devmode.dmFields |= DM_COPIES;
    }
    if (const SchemaOption* option = FindOption(ticket, "PageResolution")) {
        const std::int64_t x = option->FindNumber("ResolutionX").value_or(0);
        const std::int64_t y = option->FindNumber("ResolutionY").value_or(x);
        if (x > 0 && x <= kLargestField && y > 0 && y <= kLargestField) {
            devmode.dmPrintQuality = static_cast<SHORT>(x);
            devmode.dmYResolution = static_cast<SHORT>(y);
            devmode.dmFields |= DM_PRINTQUALITY | DM_YRESOLUTION;
        }
    }
    ReadMediaSize(ticket, devmode);
}

// By the size when the ticket gives it, else by the keyword.
void CoreDriver::ReadMediaSize(const SchemaSettings& ticket, DEVMODEW& devmode) const {
    const SchemaOption* option = FindOption(ticket, "PageMediaSize");
    if (!option) return;
    const std::string keyword = GetKeyword(option);
    const std::int64_t width = option->FindNumber("MediaSizeWidth").value_or(0);
    const std::int64_t length = option->FindNumber("MediaSizeHeight").value_or(0);

    const ProductPaper* found = nullptr;
    for (const ProductPaper& paper : product_->papers) {
        const bool named = !keyword.empty() && paper.keyword == keyword;
        if (paper.width <= 0 ||
            (width > 0 && !named && !(IsNear(paper.width, width) && IsNear(paper.length, length))) ||
            (width <= 0 && !named))
            continue;
        if (!found || named) found = &paper;
        if (named) break;
    }
    if (found && found->number != 0) {
        devmode.dmPaperSize = static_cast<SHORT>(found->number);
        devmode.dmPaperWidth = static_cast<SHORT>(found->width / kMicrometresPerTenth);
        devmode.dmPaperLength = static_cast<SHORT>(found->length / kMicrometresPerTenth);
        SetDevmodeText(devmode, GetDevmodeField("dmFormName"), CXString::FromUtf8(found->name).AsWideString());
        devmode.dmFields |= DM_PAPERSIZE | DM_FORMNAME;
        return;
    }
    const std::int64_t tenthsWide = width / kMicrometresPerTenth;
    const std::int64_t tenthsLong = length / kMicrometresPerTenth;
    if (tenthsWide <= 0 || tenthsLong <= 0 || tenthsWide > kLargestField || tenthsLong > kLargestField) return;
    devmode.dmPaperSize = DMPAPER_USER;
    devmode.dmPaperWidth = static_cast<SHORT>(tenthsWide);
    devmode.dmPaperLength = static_cast<SHORT>(tenthsLong);
    devmode.dmFields |= DM_PAPERSIZE | DM_PAPERWIDTH | DM_PAPERLENGTH;
}
