// CXString's printf-style formatting: reads the format, checks each argument against its conversion, and writes the
// text.
#include <mvutil/formatting.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>

namespace {

constexpr std::size_t kMaximumField = 4096;  // the largest width and precision

// One conversion of a format: %[flags][width][.precision]conversion.
struct Conversion {
    bool left = false;
    bool zero = false;
    WCHAR plus = 0;  // what a number that is not negative begins with, or 0
    std::size_t width = 0;
    std::optional<std::size_t> precision;
    WCHAR letter = 0;
};

std::size_t ReadNumber(const WCHAR*& at) {
    std::size_t number = 0;
    for (; *at >= W('0') && *at <= W('9'); ++at) {
        number = number * 10 + static_cast<std::size_t>(*at - W('0'));
        if (number > kMaximumField) throw std::invalid_argument("a width or precision of the format is too large");
    }
    return number;
}

bool ReadFlag(WCHAR unit, Conversion& conversion) {
    switch (unit) {
        case W('-'):
            conversion.left = true;
            return true;
        case W('0'):
            conversion.zero = true;
            return true;
        case W('+'):
            conversion.plus = W('+');
            return true;
        case W(' '):
            if (!conversion.plus) conversion.plus = W(' ');
            return true;
        default:
            return false;
    }
}

// Reads what stands behind a percent sign and moves behind it.
Conversion ReadConversion(const WCHAR*& at) {
    Conversion conversion;
    while (ReadFlag(*at, conversion)) ++at;
    conversion.width = ReadNumber(at);
    if (*at == W('.')) conversion.precision = ReadNumber(++at);
    while (*at == W('h') || *at == W('l') || *at == W('z')) ++at;
    if (at[0] == W('I') && at[1] == W('6') && at[2] == W('4')) at += 3;
    if (!*at) throw std::invalid_argument("the format ends within a conversion");
    conversion.letter = *at++;
    return conversion;
}

template <class Text>
void AppendField(WideString& out, const Conversion& conversion, const Text& text) {
    const std::size_t fill = conversion.width > text.size() ? conversion.width - text.size() : 0;
    if (!conversion.left) out.append(fill, W(' '));
    out.append(text.begin(), text.end());
    if (conversion.left) out.append(fill, W(' '));
}

// Appends a number given by its sign and digits, with zeros between them as the digits' count and the width ask for.
void AppendNumber(WideString& out, const Conversion& conversion, WCHAR sign, std::string_view digits,
                  std::size_t minimumDigits, bool zeroFill) {
    WideString body;
    if (sign) body += sign;
    const std::size_t used = body.size() + digits.size();
    std::size_t zeros = minimumDigits > digits.size() ? minimumDigits - digits.size() : 0;
    if (zeroFill && !conversion.left && conversion.width > used + zeros) zeros = conversion.width - used;
    body.append(zeros, W('0')).append(digits.begin(), digits.end());
    AppendField(out, conversion, body);
}

void RequireInteger(const FormatArgument& argument) {
    if (argument.kind != FormatArgument::Kind::Signed && argument.kind != FormatArgument::Kind::Unsigned) {
        throw std::invalid_argument("the format asks for an integer and the argument is none");
    }
}

// The argument's bits in its own width.
std::uint64_t BitsOf(const FormatArgument& argument) {
    const unsigned unused = argument.bytes < 8 ? 64 - 8 * static_cast<unsigned>(argument.bytes) : 0;
    return argument.integer << unused >> unused;
}

// What %d shows: unsigned arguments of 4 and 8 bytes are taken as their signed twins, smaller ones keep their value.
std::int64_t SignedOf(const FormatArgument& argument) {
    if (argument.kind == FormatArgument::Kind::Unsigned && argument.bytes < 4) {
        return static_cast<std::int64_t>(BitsOf(argument));
    }
    return argument.bytes == 4 ? static_cast<std::int32_t>(argument.integer)
                               : static_cast<std::int64_t>(argument.integer);
}

void AppendInteger(WideString& out, const Conversion& conversion, const FormatArgument& argument) {
    RequireInteger(argument);
    std::uint64_t magnitude = BitsOf(argument);
    WCHAR sign = 0;
    if (conversion.letter == W('d') || conversion.letter == W('i')) {
        const std::int64_t value = SignedOf(argument);
        magnitude = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
        sign = value < 0 ? W('-') : conversion.plus;
    }
    const bool hexadecimal = conversion.letter == W('x') || conversion.letter == W('X');
    char digits[24];
    char* end = std::to_chars(digits, digits + sizeof(digits), magnitude, hexadecimal ? 16 : 10).ptr;
    if (conversion.letter == W('X')) {
        for (char* digit = digits; digit != end; ++digit) {
            if (*digit >= 'a') *digit = static_cast<char>(*digit - 'a' + 'A');
        }
    }
    if (conversion.width == 0 && !conversion.precision) {  // nearly every number
        if (sign) out += sign;
        out.append(digits, end);
        return;
    }
    if (magnitude == 0 && conversion.precision == std::size_t{0}) end = digits;
    AppendNumber(out, conversion, sign, std::string_view(digits, static_cast<std::size_t>(end - digits)),
                 conversion.precision.value_or(1), conversion.zero && !conversion.precision);
}

void AppendReal(WideString& out, const Conversion& conversion, const FormatArgument& argument) {
    if (argument.kind != FormatArgument::Kind::Real) {
        throw std::invalid_argument("the format asks for a real number and the argument is none");
    }
    char digits[kMaximumField + 320];  // a double has at most 309 digits before its point
    const char* end = std::to_chars(digits, digits + sizeof(digits), std::fabs(argument.real), std::chars_format::fixed,
                                    static_cast<int>(conversion.precision.value_or(6)))
                          .ptr;
    AppendNumber(out, conversion, std::signbit(argument.real) ? W('-') : conversion.plus,
                 std::string_view(digits, static_cast<std::size_t>(end - digits)), 0,
                 conversion.zero && std::isfinite(argument.real));
}

void AppendText(WideString& out, const Conversion& conversion, const FormatArgument& argument) {
    if (argument.kind != FormatArgument::Kind::WideText) {
        throw std::invalid_argument("the format asks for a wide text and the argument is none");
    }
    // A text cut by the precision may be a fixed field without a terminator.
    const std::size_t limit = std::min(conversion.precision.value_or(WideString::npos), argument.characters);
    std::size_t length = 0;
    while (argument.text && length < limit && argument.text[length]) ++length;
    AppendField(out, conversion, WideStringView(argument.text, length));
}

void AppendPointer(WideString& out, Conversion conversion, const FormatArgument& argument) {
    if (argument.kind != FormatArgument::Kind::Pointer) {
        throw std::invalid_argument("the format asks for a pointer and the argument is none");
    }
    conversion.letter = W('X');
    conversion.precision = 2 * sizeof(void*);
    AppendInteger(out, conversion, FormatArgument(reinterpret_cast<std::uintptr_t>(argument.pointer)));
}

void AppendArgument(WideString& out, const Conversion& conversion, const FormatArgument& argument) {
    switch (conversion.letter) {
        case W('d'):
        case W('i'):
        case W('u'):
        case W('x'):
        case W('X'):
            return AppendInteger(out, conversion, argument);
        case W('f'):
            return AppendReal(out, conversion, argument);
        case W('s'):
            return AppendText(out, conversion, argument);
        case W('p'):
            return AppendPointer(out, conversion, argument);
        case W('c'):
            RequireInteger(argument);
            return AppendField(out, conversion, WideString(1, static_cast<WCHAR>(BitsOf(argument))));
        default:
            throw std::invalid_argument("the format holds a conversion that is not known");
    }
}

}  // namespace

void CXString::FormatList(const WCHAR* format, const FormatArgument* arguments, std::size_t count) {
    constexpr std::size_t kRoomForEach = 12;
    const WCHAR* at = format ? format : W("");
    WideString result;
    result.reserve(std::char_traits<WCHAR>::length(at) + count * kRoomForEach);
    std::size_t next = 0;
    while (*at) {
        const WCHAR* plain = at;
        while (*at && *at != W('%')) ++at;
        result.append(plain, at);
        if (!*at) break;
        if (*++at == W('%')) {
            result += *at++;
            continue;
        }
        const Conversion conversion = ReadConversion(at);
        if (next == count) throw std::invalid_argument("the format asks for more arguments than there are");
        AppendArgument(result, conversion, arguments[next++]);
    }
    text_ = std::move(result);
}
