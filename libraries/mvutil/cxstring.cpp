// CXString: the driver family's wide string, its searches and edits, and its way to and from UTF-8.
#include <mvutil/cxstring.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

WideStringView ViewOf(const WCHAR* text) noexcept { return text ? WideStringView(text) : WideStringView(); }

int ToIndex(std::size_t position) noexcept { return position > INT_MAX ? -1 : static_cast<int>(position); }

// The lower-case twin of an ASCII or Latin-1 capital, else the unit itself. 0xD7 is the multiplication sign.
WCHAR LowerOf(WCHAR unit) noexcept {
    const bool capital = (unit >= W('A') && unit <= W('Z')) || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
    return capital ? static_cast<WCHAR>(unit + 0x20) : unit;
}

bool IsHighSurrogate(WCHAR unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(WCHAR unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendUtf8(std::string& text, char32_t point) {
    const auto tail = [point](int shift) { return static_cast<char>(0x80 | (point >> shift & 0x3F)); };
    if (point < 0x80) {
        text += static_cast<char>(point);
    } else if (point < 0x800) {
        text += {static_cast<char>(0xC0 | point >> 6), tail(0)};
    } else if (point < 0x10000) {
        text += {static_cast<char>(0xE0 | point >> 12), tail(6), tail(0)};
    } else {
        text += {static_cast<char>(0xF0 | point >> 18), tail(12), tail(6), tail(0)};
    }
}

// Reads the character at the position and moves behind it. A malformed sequence is read as far as it could have begun a
// character, so that nothing well-formed behind it is swallowed.
char32_t ReadUtf8(std::string_view text, std::size_t& at) noexcept {
    const auto lead = static_cast<BYTE>(text[at++]);
    if (lead < 0x80) return lead;
    int more = 0;
    char32_t point = 0;
    BYTE low = 0x80;  // what the second byte may be: no overlong forms, no surrogates, nothing above U+10FFFF
    BYTE high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        more = 1;
        point = lead & 0x1Fu;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        more = 2;
        point = lead & 0x0Fu;
        if (lead == 0xE0) low = 0xA0;
        if (lead == 0xED) high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        more = 3;
        point = lead & 0x07u;
        if (lead == 0xF0) low = 0x90;
        if (lead == 0xF4) high = 0x8F;
    } else {
        return kReplacement;
    }
    for (; more > 0; --more, ++at) {
        if (at == text.size()) return kReplacement;
        const auto byte = static_cast<BYTE>(text[at]);
        if (byte < low || byte > high) return kReplacement;
        point = point << 6 | (byte & 0x3Fu);
        low = 0x80;
        high = 0xBF;
    }
    return point;
}

}  // namespace

CXString::CXString(const WCHAR* text) : text_(ViewOf(text)) {}

CXString::CXString(const WCHAR* text, std::size_t length) {
    if (text) text_.assign(text, length);
}

CXString::CXString(const char* text) {
    const std::string_view bytes = text ? std::string_view(text) : std::string_view();
    text_.reserve(bytes.size());
    for (const char byte : bytes) text_ += static_cast<WCHAR>(static_cast<BYTE>(byte));
}

CXString::CXString(WideString text) : text_(std::move(text)) {}

// All that the text has room for: it may have been longer.
void CXString::Wipe() noexcept {
    text_.resize(text_.capacity());
    SecureZeroMemory(text_.data(), text_.size() * sizeof(WCHAR));
}

CXString& CXString::operator+=(const CXString& other) {
    text_ += other.text_;
    return *this;
}

CXString& CXString::operator+=(const WCHAR* other) {
    text_ += ViewOf(other);
    return *this;
}

CXString& CXString::operator+=(WCHAR character) {
    text_ += character;
    return *this;
}

int CXString::Find(const CXString& part, int start) const noexcept {
    return start < 0 ? -1 : ToIndex(text_.find(part.text_, static_cast<std::size_t>(start)));
}

int CXString::Find(WCHAR character, int start) const noexcept {
    return start < 0 ? -1 : ToIndex(text_.find(character, static_cast<std::size_t>(start)));
}

int CXString::Compare(const WCHAR* other) const noexcept { return WideStringView(text_).compare(ViewOf(other)); }

int CXString::CompareNoCase(const WCHAR* other) const noexcept {
    const WideStringView right = ViewOf(other);
    const std::size_t common = std::min(text_.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = LowerOf(text_[i]) - LowerOf(right[i]);
        if (difference != 0) return difference;
    }
    return text_.size() == right.size() ? 0 : text_.size() < right.size() ? -1 : 1;
}

CXString CXString::Left(int count) const { return Mid(0, count); }

CXString CXString::Mid(int first) const { return Mid(first, INT_MAX); }

CXString CXString::Mid(int first, int count) const {
    const std::size_t begin = std::min(static_cast<std::size_t>(std::max(first, 0)), text_.size());
    return CXString(text_.substr(begin, static_cast<std::size_t>(std::max(count, 0))));
}

int CXString::Replace(const CXString& part, const CXString& by) {
    if (part.IsEmpty()) return 0;
    WideString result;
    int places = 0;
    std::size_t from = 0;
    for (std::size_t at = text_.find(part.text_); at != WideString::npos; at = text_.find(part.text_, from)) {
        result.append(text_, from, at - from).append(by.text_);
        from = at + part.text_.size();
        ++places;
    }
    if (places == 0) return 0;
    result.append(text_, from, WideString::npos);
    text_ = std::move(result);
    return places;
}

void CXString::MakeLower() { std::transform(text_.begin(), text_.end(), text_.begin(), LowerOf); }

int CXString::Delete(int first, int count) {
    const auto begin = static_cast<std::size_t>(std::max(first, 0));
    if (begin < text_.size()) text_.erase(begin, static_cast<std::size_t>(std::max(count, 0)));
    return ToIndex(text_.size());
}

bool CXString::IsContainNumericCharsOnly() const noexcept {
    return !text_.empty() &&
           std::all_of(text_.begin(), text_.end(), [](WCHAR unit) { return unit >= W('0') && unit <= W('9'); });
}

std::string CXString::ToUtf8() const {
    std::string result;
    result.reserve(text_.size());
    for (std::size_t i = 0; i < text_.size(); ++i) {
        char32_t point = text_[i];
        if (IsHighSurrogate(text_[i]) && i + 1 < text_.size() && IsLowSurrogate(text_[i + 1])) {
            point = 0x10000 + ((point - 0xD800) << 10) + (text_[++i] - 0xDC00u);
        } else if (point >= 0xD800 && point <= 0xDFFF) {
            point = kReplacement;
        }
        AppendUtf8(result, point);
    }
    return result;
}

CXString CXString::FromUtf8(std::string_view text) {
    WideString result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t point = ReadUtf8(text, at);
        if (point < 0x10000) {
            result += static_cast<WCHAR>(point);
        } else {
            result += static_cast<WCHAR>(0xD800 + ((point - 0x10000) >> 10));
            result += static_cast<WCHAR>(0xDC00 + (point & 0x3FF));
        }
    }
    return CXString(std::move(result));
}

CXString operator+(const CXString& left, const CXString& right) { return CXString(left) += right; }
CXString operator+(const CXString& left, const WCHAR* right) { return CXString(left) += right; }
CXString operator+(const WCHAR* left, const CXString& right) { return CXString(left) += right; }
CXString operator+(const CXString& left, WCHAR right) { return CXString(left) += right; }
bool operator==(const CXString& left, const CXString& right) noexcept {
    return left.AsWideString() == right.AsWideString();
}
bool operator==(const CXString& left, const WCHAR* right) noexcept { return left.AsWideString() == ViewOf(right); }
bool operator<(const CXString& left, const CXString& right) noexcept {
    return left.AsWideString() < right.AsWideString();
}
