// The margin file of a product.
#include "marginfile.h"

#include <facts/units.h>
#include <mvutil/dimension.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace {

// Longer than any paper, and what is made of such lengths still fits a LONG of micrometres.
constexpr float kMaximumPoints = 3'000'000.0f;

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

}  // namespace

LONG MicrometresOfPoints(double points) {
    return Dimension(points, Dimension::Points).GetValue(Dimension::Micrometres).GetLongValue(facts::kToNearest);
}

bool MarginTableEntry::IsFor(LONG pageWidth, LONG pageHeight) const {
    const auto isSame = [](LONG one, LONG other) {
        return Dimension::IsEquivalent(Dimension(one, Dimension::Micrometres), Dimension(other, Dimension::Micrometres),
                                       Dimension::Millimetres, 0, facts::kToNearest);
    };
    return isSame(width, pageWidth) && isSame(height, pageHeight);
}

std::optional<MarginTableEntry> ReadMarginLine(WideStringView line) {
    const auto numbers = ReadLine(line);
    return numbers ? std::make_optional(MakeEntry(*numbers)) : std::nullopt;
}

std::vector<MarginTableEntry> ReadMarginTable(const CXString& path) {
    std::vector<WCHAR> section(kMarginSectionCharacters);
    const DWORD length =
        GetPrivateProfileSectionW(kMarginSection.data(), section.data(), kMarginSectionCharacters, path);
    std::vector<MarginTableEntry> entries;
    WideStringView rest(section.data(), std::min(length, kMarginSectionCharacters));
    while (!rest.empty()) {
        const WideStringView line = rest.substr(0, rest.find(W('\0')));
        const bool isLast = line.size() == rest.size();
        // A section that is too long ends in the middle of a line, perhaps of a number.
        if (line.empty() || (isLast && length == kMarginSectionCharacters - 2)) break;
        if (const auto entry = ReadMarginLine(line)) entries.push_back(*entry);
        rest.remove_prefix(isLast ? line.size() : line.size() + 1);
    }
    return entries;
}
