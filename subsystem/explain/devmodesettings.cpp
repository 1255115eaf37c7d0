// The settings in the public fields of a DEVMODE.
#include "devmodesettings.h"

#include <facts/devmodewords.h>
#include <subsystem/devmodefields.h>
#include <subsystem/settingnames.h>

#include <algorithm>

namespace {

constexpr DWORD kPaperFlags = DM_PAPERSIZE | DM_PAPERWIDTH | DM_PAPERLENGTH | DM_FORMNAME;
constexpr DWORD kResolutionFlags = DM_PRINTQUALITY | DM_YRESOLUTION;

// A setting that tickets carry has the keyword's name.
DevmodeSettingKind MakeCarried(const char* field, DWORD flags, const char* keyword) {
    return {FindKeywordName(keyword), field, flags, keyword};
}

const DevmodeSettingKind kKinds[] = {
    MakeCarried("dmPaperSize", kPaperFlags, "PageMediaSize"),
    MakeCarried("dmOrientation", DM_ORIENTATION, "PageOrientation"),
    MakeCarried("dmCopies", DM_COPIES, "JobCopiesAllDocuments"),
    MakeCarried("dmCollate", DM_COLLATE, "DocumentCollate"),
    MakeCarried("dmDuplex", DM_DUPLEX, "JobDuplexAllDocumentsContiguously"),
    MakeCarried("dmColor", DM_COLOR, "PageOutputColor"),
    MakeCarried("dmPrintQuality", kResolutionFlags, "PageResolution"),
    MakeCarried("dmICMMethod", DM_ICMMETHOD, "PageColorManagement"),
    MakeCarried("dmICMIntent", DM_ICMINTENT, "PageICMRenderingIntent"),
    {"Scale", "dmScale", DM_SCALE, nullptr},
    {"Paper source", "dmDefaultSource", DM_DEFAULTSOURCE, nullptr},
    {"Paper type of the DEVMODE", "dmMediaType", DM_MEDIATYPE, nullptr},
    {"TrueType fonts", "dmTTOption", DM_TTOPTION, nullptr},
    {"Pages per sheet", "dmNup", DM_NUP, nullptr},
    {"Dithering", "dmDitherType", DM_DITHERTYPE, nullptr},
};

std::span<const facts::DevmodeWord> FindWords(std::string_view field) {
    if (field == "dmOrientation") return facts::kOrientationWords;
    if (field == "dmCollate") return facts::kCollateWords;
    if (field == "dmDuplex") return facts::kDuplexWords;
    if (field == "dmColor") return facts::kColorWords;
    if (field == "dmPrintQuality") return facts::kQualityWords;
    if (field == "dmICMMethod") return facts::kColorMethodWords;
    if (field == "dmICMIntent") return facts::kColorIntentWords;
    if (field == "dmTTOption") return facts::kTrueTypeWords;
    if (field == "dmDitherType") return facts::kDitherWords;
    return {};
}

// The field's number in words where it has any.
std::string DescribeField(const DEVMODEW& devmode, std::string_view field) {
    const std::int64_t value = GetDevmodeNumber(devmode, GetDevmodeField(field));
    for (const facts::DevmodeWord& word : FindWords(field))
        if (word.value == value) return word.word;
    return std::to_string(value);
}

template <class Entries>
std::string NameByNumber(const Entries& entries, std::int64_t number) {
    for (const auto& entry : entries)
        if (entry.number == number) return entry.name;
    return std::to_string(number);
}

std::string DescribeResolution(const DEVMODEW& devmode) {
    if (devmode.dmPrintQuality <= 0) return DescribeField(devmode, "dmPrintQuality");
    const bool hasFeed = (devmode.dmFields & DM_YRESOLUTION) != 0 && devmode.dmYResolution > 0;
    return std::to_string(devmode.dmPrintQuality) + " x " +
           std::to_string(hasFeed ? devmode.dmYResolution : devmode.dmPrintQuality) + " dpi";
}

}  // namespace

std::span<const DevmodeSettingKind> GetDevmodeSettingKinds() { return kKinds; }

const DevmodeSettingKind* FindDevmodeSettingKind(std::string_view carrier) {
    for (const DevmodeSettingKind& kind : kKinds)
        if (kind.carrier && carrier == kind.carrier) return &kind;
    return nullptr;
}

std::string DescribeDevmodeSetting(const DEVMODEW& devmode, const DevmodeSettingKind& kind, const PrinterPapers& papers,
                                   const ProductDescription& product) {
    if ((devmode.dmFields & kind.flags) == 0) return std::string();
    const std::string_view field = kind.field;
    if (field == "dmPaperSize") return papers.Select(devmode).Describe();
    if (field == "dmPrintQuality") return DescribeResolution(devmode);
    if (field == "dmScale") return std::to_string(devmode.dmScale) + " %";
    if (field == "dmDefaultSource") return NameByNumber(product.trays, devmode.dmDefaultSource);
    if (field == "dmMediaType") return NameByNumber(product.mediaTypes, devmode.dmMediaType);
    return DescribeField(devmode, field);
}
