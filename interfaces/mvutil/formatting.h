// CXString's printf-style formatting: a typed argument list.
#pragma once

#include <mvutil/cxstring.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

// One argument of a format. Holds numbers by value and refers to texts, so it lives only during the call.
class MVUTIL_API FormatArgument {
public:
    enum class Kind { Signed, Unsigned, Real, WideText, Pointer };

    template <class T, std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>, int> = 0>
    FormatArgument(T value)
        : kind(std::is_signed_v<T> ? Kind::Signed : Kind::Unsigned),
          bytes(sizeof(T)),
          integer(static_cast<std::uint64_t>(static_cast<std::int64_t>(value))) {}
    FormatArgument(double value) : kind(Kind::Real), real(value) {}
    FormatArgument(const WCHAR* value) : kind(Kind::WideText), text(value) {}
    FormatArgument(WCHAR* value) : kind(Kind::WideText), text(value) {}
    FormatArgument(const CXString& value) : kind(Kind::WideText), text(value.GetString()) {}
    FormatArgument(const WideString& value) : kind(Kind::WideText), text(value.c_str()) {}
    FormatArgument(WideStringView value) : kind(Kind::WideText), text(value.data()), characters(value.size()) {}
    FormatArgument(const char* value) = delete;  // %s takes wide text alone
    FormatArgument(const void* value) : kind(Kind::Pointer), pointer(value) {}

    Kind kind;
    std::size_t bytes = 0;      // width of an integer
    std::uint64_t integer = 0;  // sign-extended when Signed
    double real = 0;
    const WCHAR* text = nullptr;
    std::size_t characters = WideString::npos;  // of the text, where no NUL ends it
    const void* pointer = nullptr;
};

// CXString::Format and its like understand %% and %c %d %i %u %x %X %p %f %s with the flags "-", "0", "+" and space,
// width and precision (each at most 4096). %s takes a wide text (a null one is empty) and reads no more of it than
// the precision allows; %u and %x show an integer in its own width; %p is upper-case hexadecimal. Size modifiers are
// read and not needed; surplus arguments are ignored. Throws std::invalid_argument when an argument is missing or of
// another kind, or the format itself is malformed; the text is then unchanged. The arguments may be this text.
template <class... Arguments>
void CXString::Format(const WCHAR* format, const Arguments&... arguments) {
    const FormatArgument list[] = {FormatArgument(arguments)..., FormatArgument(0)};
    FormatList(format, list, sizeof...(arguments));
}
