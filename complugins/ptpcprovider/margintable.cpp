// Choosing a page's margins.
#include <ptpcprovider/margintable.h>

#include <facts/units.h>
#include <mvutil/devicesettings.h>
#include <mvutil/dimension.h>
#include <workflow/productdata.h>

namespace {

// B5 paper, in points.
constexpr double kB5Width = 499;
constexpr double kB5Length = 709;
constexpr WORD kB5EnvelopeNumber = DMPAPER_ENV_B5;

LONGLONG SumOf(const PageMargins& margins) {
    return LONGLONG{margins.left} + margins.top + margins.right + margins.bottom;
}

PageMargins ReadMarginSettings(HANDLE printer) {
    DeviceSettingsManager settings{Printer(printer)};
    const auto read = [&](DWORD feature) {
        LONG length = 0;
        settings.GetIntegerValueFromAttributeBytes(feature, length);
        return Dimension(length, Dimension::DeviceSettings)
            .GetValue(Dimension::Micrometres)
            .GetIntValue(facts::kToNearest);
    };
    return {read(422), read(424), read(423), read(425)};
}

}  // namespace

PageMargins GetPageMargins(ProductData& product, HANDLE printer, WORD paperNumber, LONG width, LONG height) {
    const bool isB5 =
        MarginTableEntry{width, height, {}}.IsFor(MicrometresOfPoints(kB5Width), MicrometresOfPoints(kB5Length));
    const bool wantsLargest = paperNumber == kB5EnvelopeNumber;
    const std::vector<MarginTableEntry> entries = ReadMarginTable(product.GetPath(ProductData::kPathMarginFile));
    const PageMargins* best = nullptr;
    for (const MarginTableEntry& entry : entries) {
        if (!entry.IsFor(width, height)) continue;
        if (!isB5) return entry.margins;
        const LONGLONG sum = SumOf(entry.margins);
        if (!best || (wantsLargest ? sum > SumOf(*best) : sum < SumOf(*best))) best = &entry.margins;
    }
    return best ? *best : ReadMarginSettings(printer);
}
