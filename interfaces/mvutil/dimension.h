// Dimension and Number: lengths with their unit, and rounding.
#pragma once

#include <mvutil/mvutilapi.h>

class MVUTIL_API Number {
public:
    explicit Number(double value) noexcept : value_(value) {}
    double GetDoubleValue() const noexcept { return value_; }
    // The largest whole number not above value + rounding; facts/units.h has roundings. Clamped to LONG.
    LONG GetLongValue(double rounding) const noexcept;
    int GetIntValue(double rounding) const noexcept { return GetLongValue(rounding); }

private:
    double value_;
};

class MVUTIL_API Dimension {
public:
    // Unit codes, as the driver family numbers them.
    enum Unit : int {
        Inches = 0,
        Millimetres = 5,
        TenthsOfMillimetre = 6,
        Micrometres = 8,
        Points = 9,
        DeviceSettings = 11 /* hundredths of a millimetre */
    };

    // Throws std::invalid_argument on an unknown unit.
    Dimension(double value, int unit);
    Number GetValue(int unit) const;
    // Whether the two, each as whole units with that rounding, differ by no more than the tolerance.
    static bool IsEquivalent(const Dimension& a, const Dimension& b, int unit, LONG tolerance, double rounding);

private:
    double micrometres_;
};
