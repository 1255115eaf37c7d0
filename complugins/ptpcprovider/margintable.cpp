// Reading the margin file, and choosing a page's margins.
#include <ptpcprovider/margintable.h>

#include <facts/units.h>
#include <mvutil/devicesettings.h>
#include <mvutil/dimension.h>
#include <workflow/productdata.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>

namespace {

constexpr const WCHAR* kSection = W("PostScript");
constexpr DWORD kSectionCharacters = 4096;

// Longer than any paper, and what is made of such lengths still fits a LONG of micrometres.
constexpr float kMaximumPoints = 3'000'000.0f;

// B5 paper, in points.
constexpr double kB5Width = 499;
constexpr double kB5Length = 709;
constexpr WORD kB5EnvelopeNumber = DMPAPER_ENV_B5;

// Reads numbers of a line one after the other, whatever the locale: decimals alone, no hexadecimals, nan or infinity.
class NumberScanner {
public:
    explicit NumberScanner(WideStringView line) {
        for (const WCHAR character : line) text_ += character < 0x80 ? static_cast<char>(character) : '?';
        next_ = text_.data();
    }
    NumberScanner(const NumberScanner&) = delete;
    NumberScanner& operator=(const NumberScanner&) = delete;

    std::optional<float> ReadNumber() {
        while (next_ != End() && (*next_ == ' ' || (*next_ >= '\t' && *next_ <= '\r'))) ++next_;
        const bool isSigned = next_ != End() && (*next_ == '-' || *next_ == '+');
        const char* const digits = next_ + (isSigned ? 1 : 0);
        if (digits == End() || (*digits != '.' && (*digits < '0' || *digits > '9'))) return std::nullopt;
        float number = 0;
        const auto [end, error] = std::from_chars(digits, End(), number);
        if (error != std::errc() || number > kMaximumPoints) return std::nullopt;
        number = isSigned && *next_ == '-' ? -number : number;
        next_ = end;
        return number;
    }
    bool ReadCharacter(char wanted) {
        if (next_ == End() || *next_ != wanted) return false;
        ++next_;
        return true;
    }

private:
    const char* End() const { return text_.data() + text_.size(); }

    std::string text_;
    const char* next_;
};

// Page width and height, then left, bottom, right and top of the printable area.
std::optional<std::array<float, 6>> ReadLine(WideStringView line) {
    constexpr char kBehind[] = {'x', '=', '\0', '\0', '\0', '\0'};
    NumberScanner scanner(line);
    std::array<float, 6> numbers;
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        const std::optional<float> number = scanner.ReadNumber();
        if (!number) return std::nullopt;
        numbers[index] = *number;
        if (kBehind[index] != '\0' && !scanner.ReadCharacter(kBehind[index])) return std::nullopt;
    }
    return numbers;
}

LONG MicrometresOfPoints(double points) {
    return Dimension(points, Dimension::Points).GetValue(Dimension::Micrometres).GetLongValue(facts::kToNearest);
}

// The next whole point. The sum is one of single precision, as its terms are.
LONG Enlarge(float points) {
    const float sum = points + 1.0f;
    return MicrometresOfPoints(std::trunc(sum));
}

MarginTableEntry MakeEntry(const std::array<float, 6>& numbers) {
    const auto [width, height, left, bottom, right, top] = numbers;
    return {MicrometresOfPoints(width), MicrometresOfPoints(height),
            PageMargins{Enlarge(left), Enlarge(height - top), Enlarge(width - right), Enlarge(bottom)}};
}

bool IsPage(LONG width, LONG height, const Dimension& wantedWidth, const Dimension& wantedHeight) {
    const auto isSame = [](LONG micrometres, const Dimension& wanted) {
        return Dimension::IsEquivalent(Dimension(micrometres, Dimension::Micrometres), wanted, Dimension::Millimetres,
                                       0, facts::kToNearest);
    };
    return isSame(width, wantedWidth) && isSame(height, wantedHeight);
}

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

std::vector<MarginTableEntry> ReadMarginTable(const CXString& path) {
    std::vector<WCHAR> section(kSectionCharacters);
    const DWORD length = GetPrivateProfileSectionW(kSection, section.data(), kSectionCharacters, path);
    std::vector<MarginTableEntry> entries;
    WideStringView rest(section.data(), std::min(length, kSectionCharacters));
    while (!rest.empty()) {
        const WideStringView line = rest.substr(0, rest.find(W('\0')));
        const bool isLast = line.size() == rest.size();
        // A section that is too long ends in the middle of a line, perhaps of a number.
        if (line.empty() || (isLast && length == kSectionCharacters - 2)) break;
        if (const auto numbers = ReadLine(line)) entries.push_back(MakeEntry(*numbers));
        rest.remove_prefix(isLast ? line.size() : line.size() + 1);
    }
    return entries;
}

PageMargins GetPageMargins(ProductData& product, HANDLE printer, WORD paperNumber, LONG width, LONG height) {
    const Dimension pageWidth(width, Dimension::Micrometres);
    const Dimension pageHeight(height, Dimension::Micrometres);
    const bool isB5 = IsPage(MicrometresOfPoints(kB5Width), MicrometresOfPoints(kB5Length), pageWidth, pageHeight);
    const bool wantsLargest = paperNumber == kB5EnvelopeNumber;
    const std::vector<MarginTableEntry> entries = ReadMarginTable(product.GetPath(ProductData::kPathMarginFile));
    const PageMargins* best = nullptr;
    for (const MarginTableEntry& entry : entries) {
        if (!IsPage(entry.width, entry.height, pageWidth, pageHeight)) continue;
        if (!isB5) return entry.margins;
        const LONGLONG sum = SumOf(entry.margins);
        if (!best || (wantsLargest ? sum > SumOf(*best) : sum < SumOf(*best))) best = &entry.margins;
    }
    return best ? *best : ReadMarginSettings(printer);
}
