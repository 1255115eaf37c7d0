// Dimension and Number: lengths with their unit, and rounding.
#include <mvutil/dimension.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>

namespace {

double MicrometresOf(int unit) {
    switch (unit) {
        case Dimension::Inches:
            return 25400.0;
        case Dimension::Millimetres:
            return 1000.0;
        case Dimension::TenthsOfMillimetre:
            return 100.0;
        case Dimension::Micrometres:
            return 1.0;
        case Dimension::Points:
            return 25400.0 / 72.0;
        case Dimension::DeviceSettings:
            return 10.0;
        default:
            throw std::invalid_argument("unknown unit of length");
    }
}

}  // namespace

LONG Number::GetLongValue(double rounding) const noexcept {
    using Limits = std::numeric_limits<LONG>;
    const double whole = std::floor(value_ + rounding);
    if (std::isnan(whole)) return 0;
    if (whole <= Limits::min()) return Limits::min();
    if (whole >= Limits::max()) return Limits::max();
    return static_cast<LONG>(whole);
}

Dimension::Dimension(double value, int unit) : micrometres_(value * MicrometresOf(unit)) {}

Number Dimension::GetValue(int unit) const { return Number(micrometres_ / MicrometresOf(unit)); }

bool Dimension::IsEquivalent(const Dimension& a, const Dimension& b, int unit, LONG tolerance, double rounding) {
    const std::int64_t difference =
        std::int64_t{a.GetValue(unit).GetLongValue(rounding)} - b.GetValue(unit).GetLongValue(rounding);
    return std::abs(difference) <= tolerance;
}
