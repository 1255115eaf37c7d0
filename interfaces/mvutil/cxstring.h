// CXString: the driver family's wide string, and the typed argument list behind its printf-style formatting.
#pragma once

#include <mvutil/mvutilapi.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

using WideString = std::basic_string<WCHAR>;
using WideStringView = std::basic_string_view<WCHAR>;

class CXString;

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
    FormatArgument(const CXString& value);
    FormatArgument(const WideString& value) : kind(Kind::WideText), text(value.c_str()) {}
    FormatArgument(const char* value) = delete;  // %s takes wide text alone
    FormatArgument(const void* value) : kind(Kind::Pointer), pointer(value) {}

    Kind kind;
    std::size_t bytes = 0;      // width of an integer
    std::uint64_t integer = 0;  // sign-extended when Signed
    double real = 0;
    const WCHAR* text = nullptr;
    const void* pointer = nullptr;
};

class MVUTIL_API CXString {
public:
    CXString() = default;
    CXString(const WCHAR* text);  // null gives the empty text
    CXString(const WCHAR* text, std::size_t length);
    CXString(const char* text);  // 8-bit characters, each one becomes one UTF-16 unit
    CXString(WideString text);
    CXString(const CXString&) = default;
    CXString(CXString&&) noexcept = default;
    CXString& operator=(const CXString& other) {
        if (this != &other) *this = CXString(other);
        return *this;
    }
    CXString& operator=(CXString&& other) noexcept {
        text_.swap(other.text_);
        std::swap(secret_, other.secret_);
        return *this;
    }
    ~CXString() {
        if (secret_) Wipe();
    }

    // From now on the text, and every copy made of it, is overwritten before its memory is given back. Copies of a part
    // and texts that it was added to are not.
    void SetSecret() noexcept { secret_ = true; }
    bool IsSecret() const noexcept { return secret_; }

    // The text, NUL-terminated; valid until the next change.
    const WCHAR* GetString() const noexcept { return text_.c_str(); }
    operator const WCHAR*() const noexcept { return text_.c_str(); }
    std::size_t GetLength() const noexcept { return text_.size(); }  // in UTF-16 units
    bool IsEmpty() const noexcept { return text_.empty(); }
    const WideString& AsWideString() const noexcept { return text_; }

    CXString& operator+=(const CXString& other);
    CXString& operator+=(const WCHAR* other);
    CXString& operator+=(WCHAR character);

    // Replaces the text by the formatted one. Understands %% and %c %d %i %u %x %X %p %f %s with the flags "-", "0",
    // "+" and space, width and precision (each at most 4096). %s takes a wide text (a null one is empty) and reads no
    // more of it than the precision allows; %u and %x show an integer in its own width; %p is upper-case hexadecimal.
    // Size modifiers are read and not needed; surplus arguments are ignored. Throws std::invalid_argument when an
    // argument is missing or of another kind, or the format itself is malformed; the text is then unchanged. The
    // arguments may be this text.
    template <class... Arguments>
    void Format(const WCHAR* format, const Arguments&... arguments) {
        const FormatArgument list[] = {FormatArgument(arguments)..., FormatArgument(0)};
        FormatList(format, list, sizeof...(arguments));
    }
    void FormatList(const WCHAR* format, const FormatArgument* arguments, std::size_t count);

    int Find(const CXString& part, int start = 0) const noexcept;  // index, or -1; -1 for a start outside the text
    int Find(WCHAR character, int start = 0) const noexcept;       // index, or -1
    int Compare(const WCHAR* other) const noexcept;                // by UTF-16 unit; 0 when equal
    int CompareNoCase(const WCHAR* other) const noexcept;          // ASCII and Latin-1 letters fold; 0 when equal
    CXString Left(int count) const;                                // counts beyond the text are cut to it
    CXString Mid(int first) const;
    CXString Mid(int first, int count) const;
    int Replace(const CXString& part, const CXString& by);  // number of places replaced; an empty part replaces none
    void MakeLower();                                       // ASCII and Latin-1 letters
    void Empty() noexcept { text_.clear(); }
    int Delete(int first, int count = 1);             // removes the characters; the new length
    bool IsContainNumericCharsOnly() const noexcept;  // decimal digits only; false for the empty text

    std::string ToUtf8() const;                       // a lone surrogate becomes U+FFFD
    static CXString FromUtf8(std::string_view text);  // a malformed sequence becomes U+FFFD

private:
    void Wipe() noexcept;

    WideString text_;
    bool secret_ = false;
};

MVUTIL_API CXString operator+(const CXString& left, const CXString& right);
MVUTIL_API CXString operator+(const CXString& left, const WCHAR* right);
MVUTIL_API CXString operator+(const WCHAR* left, const CXString& right);
MVUTIL_API CXString operator+(const CXString& left, WCHAR right);
MVUTIL_API bool operator==(const CXString& left, const CXString& right) noexcept;
MVUTIL_API bool operator==(const CXString& left, const WCHAR* right) noexcept;    // a null right side is the empty text
MVUTIL_API bool operator<(const CXString& left, const CXString& right) noexcept;  // by UTF-16 unit

inline FormatArgument::FormatArgument(const CXString& value) : kind(Kind::WideText), text(value.GetString()) {}
