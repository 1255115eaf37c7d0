// CXString: the driver family's wide string. Who formats one includes mvutil/formatting.h.
#pragma once

#include <mvutil/mvutilapi.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

class CXString;
class FormatArgument;

// A text handed in by whoever holds it, in whatever form; null is the empty text. Lives only during the call.
class TextArgument : public WideStringView {
public:
    TextArgument(const WCHAR* text) noexcept : WideStringView(text ? WideStringView(text) : WideStringView()) {}
    TextArgument(WideStringView text) noexcept : WideStringView(text) {}
    TextArgument(const WideString& text) noexcept : WideStringView(text) {}
    inline TextArgument(const CXString& text) noexcept;
};

class MVUTIL_API CXString {
public:
    CXString() = default;
    CXString(const WCHAR* text);  // null gives the empty text
    CXString(const WCHAR* text, std::size_t length);
    explicit CXString(WideStringView text);
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

    CXString& operator+=(TextArgument other);
    CXString& operator+=(WCHAR character);

    // Replaces the text by the formatted one, as mvutil/formatting.h states.
    template <class... Arguments>
    void Format(const WCHAR* format, const Arguments&... arguments);
    void FormatList(const WCHAR* format, const FormatArgument* arguments, std::size_t count);

    int Find(TextArgument part, int start = 0) const noexcept;  // index, or -1; -1 for a start outside the text
    int Find(WCHAR character, int start = 0) const noexcept;    // index, or -1
    int Compare(TextArgument other) const noexcept;             // by UTF-16 unit; 0 when equal
    int CompareNoCase(TextArgument other) const noexcept;       // by the registry's rule of case; 0 when equal
    CXString Left(int count) const;                             // counts beyond the text are cut to it
    CXString Mid(int first) const;
    CXString Mid(int first, int count) const;
    int Replace(TextArgument part, TextArgument by);  // number of places replaced; an empty part replaces none
    void MakeLower() noexcept;                        // by the registry's rule of case
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

TextArgument::TextArgument(const CXString& text) noexcept : WideStringView(text.AsWideString()) {}
