// DeviceCapabilitiesW, answered as the core driver does.
#include "capabilityanswers.h"
#include "printerstore.h"
#include "questioncount.h"
#include "spoolererror.h"

#include <namefield.h>
#include <printsubsystem/driverextra.h>

#include <array>
#include <cstring>

namespace {

constexpr int kLandscapeRotation = 90;  // degrees
constexpr std::size_t kBinNameLength = 24, kNameLength = 64;

// Writes what "convert" makes of each item to the output, unless that is null; the number of items.
template <class List, class Convert>
int MakeArray(const List& list, WCHAR* output, Convert convert) {
    auto* place = reinterpret_cast<BYTE*>(output);
    for (auto item = list.begin(); output && item != list.end(); ++item) {
        const auto element = convert(*item);
        std::memcpy(place, &element, sizeof element);
        place += sizeof element;
    }
    return static_cast<int>(list.size());
}

// A name in a field of fixed length: cut to the length less one, the rest NULs.
template <std::size_t length>
std::array<WCHAR, length> MakeName(const WideString& name) {
    std::array<WCHAR, length> field;
    SetNameField(field, name);
    return field;
}

// A printer's capabilities: each from its cache, else from the product.
class PrinterCapabilities {
public:
    PrinterCapabilities(const StoredPrinterBrief& printer, StoreState state)
        : printer_(printer), state_(state), caches_(printer.port, state) {}

    // A number, or the number of items of an array, which goes to the output unless that is null.
    int Get(WORD capability, WCHAR* output) {
        const auto makeArray = [&](const auto& list, auto convert) { return MakeArray(*list, output, convert); };
        switch (capability) {
            case DC_PAPERS:
                return makeArray(GetPapersOf(), [](const PaperAnswer& paper) { return paper.number; });
            case DC_PAPERSIZE:
                return makeArray(GetPapersOf(), [](const PaperAnswer& paper) {
                    return POINT{paper.width, paper.length};
                });
            case DC_PAPERNAMES:
                return makeArray(GetPapersOf(),
                                 [](const PaperAnswer& paper) { return MakeName<kNameLength>(paper.name); });
            case DC_BINS:
                return makeArray(GetBinsOf(), [](const NumberedName& bin) { return static_cast<WORD>(bin.number); });
            case DC_BINNAMES:
                return makeArray(GetBinsOf(),
                                 [](const NumberedName& bin) { return MakeName<kBinNameLength>(bin.name); });
            case DC_MEDIATYPES:
                return makeArray(GetMediaOf(), [](const NumberedName& media) { return media.number; });
            case DC_MEDIATYPENAMES:
                return makeArray(GetMediaOf(),
                                 [](const NumberedName& media) { return MakeName<kNameLength>(media.name); });
            case DC_MEDIAREADY:
                return makeArray(FromCacheOr(caches_.GetPapersReady(), GetPapersReady), MakeName<kNameLength>);
            case DC_FILEDEPENDENCIES:
                return makeArray(FromCacheOr(caches_.GetDependentFiles(), GetDependentFiles), MakeName<kNameLength>);
            case DC_ENUMRESOLUTIONS:
                return makeArray(FromCacheOr(caches_.GetResolutions(), GetResolutions),
                                 [](const ResolutionAnswer& resolution) { return resolution; });
            case DC_NUP:
                return MakeArray(GetProduct().pagesPerSheet, output, [](DWORD pages) { return pages; });
            default:
                return GetNumber(capability);
        }
    }

private:
    int GetNumber(WORD capability) {
        switch (capability) {
            case DC_MINEXTENT:
                return GetLimit(&LimitAnswers::minimumExtent);
            case DC_MAXEXTENT:
                return GetLimit(&LimitAnswers::maximumExtent);
            case DC_COPIES:
                return GetLimit(&LimitAnswers::maximumCopies);
            case DC_PRINTERMEM:
                return GetLimit(&LimitAnswers::memory);
            case DC_PRINTRATEPPM:
                return GetLimit(&LimitAnswers::pagesPerMinute);
            case DC_COLLATE:
                return GetLimit(&LimitAnswers::collates);
            case DC_COLORDEVICE:
                return GetLimit(&LimitAnswers::printsColor);
            case DC_DUPLEX:
                return GetLimit(&LimitAnswers::printsDuplex);
            case DC_STAPLE:
                return StaplesOf();
            case DC_ORIENTATION:
                return kLandscapeRotation;
            case DC_FIELDS:
                return static_cast<int>(GetFields());
            case DC_SIZE:
                return static_cast<int>(sizeof(DEVMODEW));
            case DC_EXTRA:
                return kDriverExtraBytes;
            case DC_VERSION:
                return DM_SPECVERSION;
            case DC_DRIVER:
                return GetProduct().driverVersion;
            default:
                throw SpoolerError{ERROR_NOT_SUPPORTED};
        }
    }

    AnswerList<PaperAnswer> GetPapersOf() { return FromCacheOr(caches_.GetPapers(), GetPapers); }
    AnswerList<NumberedName> GetBinsOf() { return FromCacheOr(caches_.GetBins(), GetBins); }
    AnswerList<NumberedName> GetMediaOf() { return FromCacheOr(caches_.GetMediaTypes(), GetMediaTypes); }

    template <class Value>
    int GetLimit(std::optional<Value> LimitAnswers::*limit) {
        const auto cached = caches_.GetLimits().*limit;
        return static_cast<int>(Known(cached ? cached : GetLimits(GetProduct()).*limit));
    }

    bool StaplesOf() {
        const auto cached = caches_.GetStaples();
        return cached ? *cached : GetProduct().limits.staples;
    }

    // The members of a DEVMODE that the driver looks at.
    DWORD GetFields() {
        DWORD fields = DM_FORMNAME;
        for (const ProductDevmodeField& field : GetProduct().devmode) fields |= field.fieldBit;
        if (GetProduct().FindPaper(DMPAPER_USER)) fields |= DM_PAPERLENGTH | DM_PAPERWIDTH;
        return fields;
    }

    template <class Item>
    AnswerList<Item> FromCacheOr(AnswerList<Item> cached, std::vector<Item> (*fromProduct)(const ProductDescription&)) {
        return cached ? cached : std::make_shared<const std::vector<Item>>(fromProduct(GetProduct()));
    }

    template <class Value>
    static Value Known(std::optional<Value> value) {
        Require(value.has_value(), ERROR_NOT_SUPPORTED);
        return std::move(*value);
    }

    const ProductDescription& GetProduct() {
        if (!product_) {
            const auto driver = ReadDriver(printer_.driver, state_);
            Require(driver.has_value(), ERROR_UNKNOWN_PRINTER_DRIVER);
            product_ = LoadProduct(GetFilePath(driver->dataFile));
        }
        return *product_;
    }

    const StoredPrinterBrief& printer_;
    StoreState state_;
    CapabilityCaches caches_;
    std::shared_ptr<const ProductDescription> product_;
};

}  // namespace

// The port and the DEVMODE make no difference to this driver's answers, and neither is looked at.
int WINAPI DeviceCapabilitiesW(LPCWSTR device, LPCWSTR, WORD capability, LPWSTR output, const DEVMODEW*) {
    CountQuestion(SpoolerQuestion::Capabilities);
    int result = -1;
    AnswerGuarded([&] {
        Require(device != nullptr, ERROR_INVALID_PRINTER_NAME);
        const StoreState state = GetStoreState();
        const auto printer = ReadPrinterBrief(device, state);
        Require(printer.has_value(), ERROR_INVALID_PRINTER_NAME);
        result = PrinterCapabilities(*printer, state).Get(capability, output);
    });
    return result;
}
