// CXString: the driver family's wide string, its searches and edits, and its way to and from UTF-8.
#include <mvutil/cxstring.h>

#include <textcodec.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace {

int ToIndex(std::size_t position) noexcept { return position > INT_MAX ? -1 : static_cast<int>(position); }

}  // namespace

CXString::CXString(const WCHAR* text) : text_(TextArgument(text)) {}

CXString::CXString(const WCHAR* text, std::size_t length) {
    if (text) text_.assign(text, length);
}

CXString::CXString(const char* text) {
    const std::string_view bytes = text ? std::string_view(text) : std::string_view();
    text_.reserve(bytes.size());
    for (const char byte : bytes) text_ += static_cast<WCHAR>(static_cast<BYTE>(byte));
}

CXString::CXString(WideStringView text) : text_(text) {}

CXString::CXString(WideString text) : text_(std::move(text)) {}

// All that the text has room for: it may have been longer.
void CXString::Wipe() noexcept {
    text_.resize(text_.capacity());
    SecureZeroMemory(text_.data(), text_.size() * sizeof(WCHAR));
}

CXString& CXString::operator+=(TextArgument other) {
    text_ += other;
    return *this;
}

CXString& CXString::operator+=(WCHAR character) {
    text_ += character;
    return *this;
}

int CXString::Find(TextArgument part, int start) const noexcept {
    return start < 0 ? -1 : ToIndex(text_.find(part, static_cast<std::size_t>(start)));
}

int CXString::Find(WCHAR character, int start) const noexcept {
    return start < 0 ? -1 : ToIndex(text_.find(character, static_cast<std::size_t>(start)));
}

int CXString::Compare(TextArgument other) const noexcept { return text_.compare(other); }

int CXString::CompareNoCase(TextArgument other) const noexcept { return CompareRegistryNames(text_, other); }

CXString CXString::Left(int count) const { return Mid(0, count); }

CXString CXString::Mid(int first) const { return Mid(first, INT_MAX); }

CXString CXString::Mid(int first, int count) const {
    const std::size_t begin = std::min(static_cast<std::size_t>(std::max(first, 0)), text_.size());
    return CXString(text_.substr(begin, static_cast<std::size_t>(std::max(count, 0))));
}

int CXString::Replace(TextArgument part, TextArgument by) {
    if (part.empty()) return 0;
    WideString result;
    int places = 0;
    std::size_t from = 0;
    for (std::size_t at = text_.find(part); at != WideString::npos; at = text_.find(part, from)) {
        result.append(text_, from, at - from).append(by);
        from = at + part.size();
        ++places;
    }
    if (places == 0) return 0;
    result.append(text_, from, WideString::npos);
    text_ = std::move(result);
    return places;
}

void CXString::MakeLower() noexcept { LowerRegistryName(text_); }

int CXString::Delete(int first, int count) {
    const auto begin = static_cast<std::size_t>(std::max(first, 0));
    if (begin < text_.size()) text_.erase(begin, static_cast<std::size_t>(std::max(count, 0)));
    return ToIndex(text_.size());
}

bool CXString::IsContainNumericCharsOnly() const noexcept {
    return !text_.empty() &&
           std::all_of(text_.begin(), text_.end(), [](WCHAR unit) { return unit >= W('0') && unit <= W('9'); });
}

std::string CXString::ToUtf8() const { return Utf8FromWide(text_, BadText::Replace); }

CXString CXString::FromUtf8(std::string_view text) { return WideFromUtf8(text, BadText::Replace); }

CXString operator+(const CXString& left, const CXString& right) { return CXString(left) += right; }
CXString operator+(const CXString& left, const WCHAR* right) { return CXString(left) += right; }
CXString operator+(const WCHAR* left, const CXString& right) { return CXString(left) += right; }
CXString operator+(const CXString& left, WCHAR right) { return CXString(left) += right; }
bool operator==(const CXString& left, const CXString& right) noexcept {
    return left.AsWideString() == right.AsWideString();
}
bool operator==(const CXString& left, const WCHAR* right) noexcept {
    return left.AsWideString() == TextArgument(right);
}
bool operator<(const CXString& left, const CXString& right) noexcept {
    return left.AsWideString() < right.AsWideString();
}
