// The lists of a product file, its DEVMODE defaults, and what follows from them.
#include "productlists.h"

#include <facts/features.h>
#include <facts/mediatypes.h>
#include <facts/papernumbers.h>
#include <facts/units.h>
#include <facts/values.h>

#include <algorithm>
#include <cmath>

namespace {

namespace feature = facts::feature;
namespace value = facts::value;
using facts::PageSizeType;

constexpr DWORD kLastProductValue = 0xFFFF;  // above: values that a model gives to forms and to the user's sizes

std::string Span(DWORD first, DWORD last) { return "from " + std::to_string(first) + " to " + std::to_string(last); }

// Numbers and values that a list has used.
class UsedNumbers {
public:
    void Use(const TomlSection& section, std::string_view key, DWORD number, const std::string& whatIsWanted) {
        if (!used_.insert(number).second) section.Fail(key, whatIsWanted);
    }

private:
    std::set<DWORD> used_;
};

template <class List, class Member>
bool Offers(const List& list, Member member, LONG wanted) {
    return std::any_of(list.begin(), list.end(),
                       [&](const auto& item) { return static_cast<LONG>(item.*member) == wanted; });
}

LONG ReadSide(TomlSection& section, std::string_view key) {
    return static_cast<LONG>(section.GetInteger(key, facts::kShortestSide, facts::kLongestSide));
}

// A number of the products' range, which no form and no size of the user's can have.
WORD ReadPaperNumber(TomlSection& section) {
    return static_cast<WORD>(section.GetInteger("number", facts::kFirstProductPaper, facts::kLastProductPaper));
}

// Whether the system gives the number to a paper of that size.
bool IsSystemPaperOf(const PageSizeRow& size, std::int64_t number) {
    const PageSizeRow* paper =
        number > facts::kLastSystemPaper ? nullptr : FindPageSizeByPaperNumber(static_cast<WORD>(number));
    return paper && paper->width == size.width && paper->length == size.length;
}

constexpr std::size_t kLongestFormName = CCHFORMNAME - 1;

// A size of the Print Schema's list: { size = KEYWORD, number, name, form, units }; only the keyword is needed where it
// has a paper number of its own.
ProductPaper ReadKeywordPaper(TomlSection& section) {
    const std::string keyword = section.GetText("size");
    const PageSizeRow* row = FindPageSizeByName(keyword);
    if (!row || row->IsRoll() || row->GetType() == PageSizeType::PostScriptCustom)
        section.Fail("size", "a page size of the Print Schema with width and length, or CustomMediaSize");
    ProductPaper paper;
    paper.keyword = keyword;
    paper.name = section.GetTextIfGiven("name", 63).value_or(std::string(row->displayName));
    paper.type = row->GetType();
    paper.width = row->width;
    paper.length = row->length;
    paper.displayUnits = row->GetDisplayUnits();
    paper.value = row->IsCustom() ? value::kPageSizeCustom : row->value;
    if (row->IsCustom())
        paper.number = DMPAPER_USER;
    else if (row->paperNumber != 0 && !section.Has("number"))
        paper.number = row->paperNumber;
    else if (const auto number = section.GetIntegerIfGiven("number", 1).value_or(0); IsSystemPaperOf(*row, number))
        paper.number = static_cast<WORD>(number);
    else
        paper.number = ReadPaperNumber(section);
    if (section.Has("form") && !row->IsCustom()) paper.formName = section.GetText("form", kLongestFormName);
    return paper;
}

// A size of the product's own: { name, number, value, width, length, units, type, form }, micrometres. Of these only a
// user form is known by a form's name as well.
ProductPaper ReadOwnPaper(TomlSection& section) {
    ProductPaper paper;
    paper.name = section.GetText("name", 63);
    paper.number = ReadPaperNumber(section);
    paper.value = static_cast<DWORD>(section.GetInteger("value", value::kFirstPageSize, value::kLastPageSize));
    if (FindPageSizeByValue(paper.value)) section.Fail("value", "a value that no Print Schema size has");
    constexpr auto kFirst = static_cast<DWORD>(PageSizeType::DriverCustom);
    constexpr auto kLast = static_cast<DWORD>(PageSizeType::PostScriptCustom);
    paper.type = static_cast<PageSizeType>(section.GetIntegerIfGiven("type", kFirst, kLast).value_or(kFirst));
    if (paper.type == PageSizeType::MappedForm)
        section.Fail("type", "another type " + Span(kFirst, kLast) + ": this one is for forms of a keyword's size");
    paper.width = ReadSide(section, "width");
    paper.length = ReadSide(section, "length");
    paper.displayUnits = value::kUnitsMillimetres;
    if (section.Has("form") && paper.type == PageSizeType::UserForm)
        paper.formName = section.GetText("form", kLongestFormName);
    return paper;
}

// The tables of an array; reading goes on behind one that is wrong. Returns their number.
template <class ReadEntry>
std::size_t ReadEntries(TomlSection& root, const char* key, ReadEntry readEntry) {
    std::vector<TomlSection> sections;
    root.Try([&] { sections = root.GetSections(key); });
    for (TomlSection& section : sections) section.Try([&] { readEntry(section); });
    return sections.size();
}

void ReadPapers(TomlSection& root, ProductDescription& product) {
    UsedNumbers numbers, values;
    const std::size_t entries = ReadEntries(root, "papers", [&](TomlSection& section) {
        ProductPaper paper = section.Has("size") ? ReadKeywordPaper(section) : ReadOwnPaper(section);
        if (const auto units = section.GetTextIfGiven("units")) {
            if (*units != "in" && *units != "mm") section.Fail("units", "\"mm\" or \"in\"");
            paper.displayUnits = *units == "in" ? value::kUnitsInches : value::kUnitsMillimetres;
        }
        section.RefuseOtherKeys();
        const char* const numberKey = section.Has("number") ? "number" : "size";
        if (paper.number == DMPAPER_TABLOID)
            section.Fail(numberKey, "a paper number other than 3, which drivers read as 17 (number = 17 selects it)");
        values.Use(section, paper.keyword.empty() ? "value" : "size", paper.value, "each page size once");
        numbers.Use(section, numberKey, paper.number, "a paper number that no other paper of the product has");
        paper.line = section.GetLine();
        product.papers.push_back(std::move(paper));
    });
    if (entries == 0) root.Try([&] { root.Fail("papers", "at least one paper"); });
}

// What a tray holds: { size = KEYWORD or the name of a paper of the product's own, media = VALUE }; the custom size
// with its width and length, micrometres.
void ReadTrayContents(TomlSection& section, const ProductDescription& product, ProductTray& tray) {
    if (tray.value == value::kNotSet) section.Fail("size", "nothing: the automatic choice is no tray");
    const std::string size = section.GetText("size");
    const auto paper = std::find_if(product.papers.begin(), product.papers.end(), [&](const ProductPaper& candidate) {
        return size == (candidate.keyword.empty() ? candidate.name : candidate.keyword);
    });
    if (paper == product.papers.end()) section.Fail("size", "a paper that the product lists");
    tray.heldSize = paper->value;
    if (paper->type == PageSizeType::Custom) {
        tray.heldWidth = ReadSide(section, "width");
        tray.heldLength = ReadSide(section, "length");
    }
    if (section.Has("media")) {
        tray.heldMediaType = static_cast<DWORD>(section.GetInteger("media", value::kNotSet));
        if (!Offers(product.mediaTypes, &ProductMediaType::value, static_cast<LONG>(tray.heldMediaType)))
            section.Fail("media", "a media type that the product lists");
    }
    section.RefuseOtherKeys();
}

void ReadTrays(TomlSection& root, ProductDescription& product) {
    UsedNumbers numbers, values;
    ReadEntries(root, "trays", [&](TomlSection& section) {
        ProductTray tray;
        tray.number = static_cast<WORD>(section.GetInteger("number", 1, facts::kLargestField));
        tray.value = static_cast<DWORD>(section.GetInteger("value", value::kNotSet, value::kLastTray));
        if (tray.value != value::kNotSet && tray.value < value::kFirstTray)
            section.Fail("value", "a tray: " + std::to_string(value::kNotSet) + " or a whole number " +
                                      Span(value::kFirstTray, value::kLastTray));
        tray.name = section.GetText("name", 23);
        if (auto contents = section.GetSection("holds")) ReadTrayContents(*contents, product, tray);
        section.RefuseOtherKeys();
        numbers.Use(section, "number", tray.number, "a number that no other tray has");
        values.Use(section, "value", tray.value, "each tray once");
        product.trays.push_back(std::move(tray));
    });
}

bool IsMediaType(DWORD number) noexcept {
    const bool isReserved = number >= value::kFirstReservedMediaType && number <= value::kLastReservedMediaType;
    return number == value::kNotSet || number >= value::kFirstOwnValue ||
           (number >= value::kFirstMediaType && number <= value::kLastNamedMediaType && !isReserved);
}

void ReadMediaTypes(TomlSection& root, ProductDescription& product) {
    UsedNumbers values;
    ReadEntries(root, "media_types", [&](TomlSection& section) {
        ProductMediaType media;
        media.value = static_cast<DWORD>(section.GetInteger("value", value::kNotSet, kLastProductValue));
        if (!IsMediaType(media.value))
            section.Fail("value", "a media type: " + std::to_string(value::kNotSet) + ", one " +
                                      Span(value::kFirstMediaType, value::kFirstReservedMediaType - 1) + ", " +
                                      Span(value::kLastReservedMediaType + 1, value::kLastNamedMediaType) + ", or " +
                                      Span(value::kFirstOwnValue, kLastProductValue));
        media.number = facts::NumberOfMediaType(media.value);
        media.name = section.GetText("name", 63);
        section.RefuseOtherKeys();
        values.Use(section, "value", media.value, "each media type once");
        product.mediaTypes.push_back(std::move(media));
    });
}

void ReadResolutions(TomlSection& root, ProductDescription& product) {
    constexpr std::int64_t kFinest = facts::kLargestField;
    std::set<std::pair<LONG, LONG>> used;
    int defaults = 0;
    const std::size_t entries = ReadEntries(root, "resolutions", [&](TomlSection& section) {
        ProductResolution resolution;
        resolution.crossFeed = static_cast<LONG>(section.GetInteger("x", 1, kFinest));
        resolution.feed = static_cast<LONG>(section.GetInteger("y", 1, kFinest));
        resolution.isDefault = section.GetBoolean("default", false);
        resolution.name = section.GetText("name", 31);
        section.RefuseOtherKeys();
        if (!used.insert({resolution.crossFeed, resolution.feed}).second) section.Fail("x", "each resolution once");
        if (resolution.isDefault && ++defaults > 1) section.Fail("default", "one default resolution");
        product.resolutions.push_back(std::move(resolution));
    });
    if (defaults == 0 && product.resolutions.size() == entries)
        root.Try([&] { root.Fail("resolutions", "one resolution with default = true"); });
}

// A field that a product may give a default, and what that may be.
struct ProductFieldRange {
    const char* name;
    DWORD bit;
    LONG lowest, highest;
};

constexpr LONG kShortest = -facts::kLargestField - 1, kLongest = facts::kLargestField;
constexpr LONG kWidest = std::numeric_limits<LONG>::max();
constexpr ProductFieldRange kFieldRanges[] = {
    {"dmOrientation", DM_ORIENTATION, DMORIENT_PORTRAIT, DMORIENT_LANDSCAPE},
    {"dmPaperSize", DM_PAPERSIZE, 1, kLongest},
    {"dmScale", DM_SCALE, 1, 1000},
    {"dmCopies", DM_COPIES, 1, kLongest},
    {"dmDefaultSource", DM_DEFAULTSOURCE, 1, kLongest},
    {"dmPrintQuality", DM_PRINTQUALITY, kShortest, kLongest},
    {"dmYResolution", DM_YRESOLUTION, 1, kLongest},
    {"dmColor", DM_COLOR, DMCOLOR_MONOCHROME, DMCOLOR_COLOR},
    {"dmDuplex", DM_DUPLEX, DMDUP_SIMPLEX, DMDUP_HORIZONTAL},
    {"dmTTOption", DM_TTOPTION, 1, 4},
    {"dmCollate", DM_COLLATE, DMCOLLATE_FALSE, DMCOLLATE_TRUE},
    {"dmNup", DM_NUP, 1, kWidest},
    {"dmICMMethod", DM_ICMMETHOD, DMICMMETHOD_NONE, kWidest},
    {"dmICMIntent", DM_ICMINTENT, DMICM_SATURATE, kWidest},
    {"dmMediaType", DM_MEDIATYPE, 1, kWidest},
    {"dmDitherType", DM_DITHERTYPE, 1, kWidest},
};

void RequireOffered(const TomlSection& section, const ProductDescription& product, const ProductDevmodeField& field) {
    bool offered = true;
    if (field.name == "dmPaperSize") offered = product.FindPaper(static_cast<WORD>(field.value)) != nullptr;
    if (field.name == "dmDefaultSource") offered = Offers(product.trays, &ProductTray::number, field.value);
    if (field.name == "dmMediaType") offered = Offers(product.mediaTypes, &ProductMediaType::number, field.value);
    if (field.name == "dmYResolution") offered = Offers(product.resolutions, &ProductResolution::feed, field.value);
    if (field.name == "dmPrintQuality" && field.value > 0)
        offered = Offers(product.resolutions, &ProductResolution::crossFeed, field.value);
    if (!offered) section.Fail(field.name, "one that the product lists");
}

// Micrometres to the tenths of a millimetre that a DEVMODE holds.
LONG ToTenths(LONG micrometres, double rounding) noexcept {
    return static_cast<LONG>(std::min(std::floor(micrometres / double{facts::kMicrometresPerTenth} + rounding),
                                      double{facts::kLargestField}));
}

bool OffersValue(const ProductDescription& product, DWORD feature, DWORD first, DWORD last) {
    const ProductFeature* found = product.FindFeature(feature);
    return found && std::any_of(found->values.begin(), found->values.end(),
                                [&](DWORD value) { return value >= first && value <= last; });
}

LONG DefaultOf(const ProductDescription& product, DWORD feature) {
    const ProductFeature* found = product.FindFeature(feature);
    return found ? found->defaultNumber : 0;
}

// The range of a custom page's side, else that of the papers'.
void DeriveExtent(const ProductDescription& product, DWORD feature, LONG ProductPaper::*side, LONG& least, LONG& most) {
    LONG lower = 0, upper = 0;
    if (const ProductFeature* range = product.FindFeature(feature)) {
        lower = range->minimum;
        upper = range->maximum;
    } else {
        for (const ProductPaper& paper : product.papers) {
            if (paper.type == PageSizeType::Custom) continue;
            lower = lower == 0 ? paper.*side : std::min(lower, paper.*side);
            upper = std::max(upper, paper.*side);
        }
    }
    least = ToTenths(lower, facts::kUpwards);
    most = ToTenths(upper, 0);
}

}  // namespace

void ReadProductLists(TomlSection& root, ProductDescription& product) {
    ReadPapers(root, product);
    ReadMediaTypes(root, product);
    ReadTrays(root, product);  // which hold papers and media types
    ReadResolutions(root, product);
    root.Try([&] {
        product.unlistedMediaTypes =
            root.GetIntegers("unlisted_media_types", value::kLastNamedMediaType + 1, value::kLastMediaType);
    });
    root.Try([&] { product.pagesPerSheet = root.GetIntegers("pages_per_sheet", 1, 64); });
}

void ReadDevmodeDefaults(TomlSection& section, ProductDescription& product) {
    for (const ProductFieldRange& known : kFieldRanges) {
        section.Try([&] {
            const auto value = section.GetIntegerIfGiven(known.name, known.lowest, known.highest);
            if (!value) return;
            const ProductDevmodeField field{known.name, static_cast<LONG>(*value), known.bit};
            RequireOffered(section, product, field);
            product.devmode.push_back(field);
        });
    }
    section.RefuseOtherKeys();
}

ProductLimits DeriveLimits(const ProductDescription& product) {
    ProductLimits limits;
    if (const ProductFeature* copies = product.FindFeature(feature::kCopies))
        limits.maximumCopies = std::clamp<LONG>(copies->maximum, 1, facts::kLargestField);
    limits.collates = OffersValue(product, feature::kCollation, value::kCollated, value::kCollated);
    limits.printsDuplex = OffersValue(product, feature::kSides, value::kTwoSidedLongEdge, value::kTwoSidedShortEdge);
    limits.printsColor = OffersValue(product, feature::kColor, value::kColor, value::kColor);
    limits.staples = OffersValue(product, feature::kStapler, value::kStaplerInstalled, value::kStaplerInstalled);
    limits.memory = DefaultOf(product, feature::kMemory);
    limits.pagesPerMinute = DefaultOf(product, feature::kPagesPerMinute);
    DeriveExtent(product, feature::kCustomWidth, &ProductPaper::width, limits.minimumWidth, limits.maximumWidth);
    DeriveExtent(product, feature::kCustomLength, &ProductPaper::length, limits.minimumLength, limits.maximumLength);
    return limits;
}
