// Text between UTF-8 and UTF-16, on both hosts.
#include <textcodec.h>

#include <utf8cpp/utf8.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::size_t kHalfBytes = 3;

bool IsHigh(char32_t unit) noexcept { return (unit & 0xFC00) == 0xD800; }
bool IsLow(char32_t unit) noexcept { return (unit & 0xFC00) == 0xDC00; }

// Copies the ASCII characters that the text begins with, which are nearly always all of it.
template <class Out, class View>
Out CopyAscii(View& text) {
    Out out(text.size(), typename Out::value_type());
    std::size_t length = 0;
    for (; length < text.size() && text[length] >= 0 && text[length] < 0x80; ++length)
        out[length] = static_cast<typename Out::value_type>(text[length]);
    out.resize(length);
    text.remove_prefix(length);
    return out;
}

// The half of a character that the first three bytes would be if UTF-8 had any; 0 for other bytes.
char32_t ReadHalf(std::string_view text) noexcept {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    if (text.size() < kHalfBytes || byte(0) != 0xED || byte(1) < 0xA0 || byte(1) > 0xBF || (byte(2) & 0xC0) != 0x80)
        return 0;
    return 0xD000u | (byte(1) & 0x3Fu) << 6 | (byte(2) & 0x3Fu);
}

// How many bytes at the start of a text that begins badly could begin a character: those that further ones complete.
std::size_t BegunLength(std::string_view text) noexcept {
    for (std::size_t length = std::min<std::size_t>(text.size(), 3); length > 1; --length) {
        char bytes[] = {'\x80', '\x80', '\x80', '\x80'};
        text.copy(bytes, length);
        for (std::size_t whole = length + 1; whole <= std::size(bytes); ++whole)
            if (utf8::is_valid(bytes, bytes + whole)) return length;
    }
    return 1;
}

}  // namespace

std::string Utf8FromWide(WideStringView text, BadText bad) {
    std::string out = CopyAscii<std::string>(text);
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t code = text[at];
        if (IsHigh(code) && at + 1 < text.size() && IsLow(text[at + 1])) {
            code = 0x10000 + ((code & 0x3FF) << 10) + (text[++at] & 0x3FF);
        } else if (IsHigh(code) || IsLow(code)) {
            if (bad == BadText::Refuse) throw std::range_error("a text is not UTF-16");
            if (bad == BadText::Replace) code = kReplacement;
        }
        utf8::unchecked::append(code, std::back_inserter(out));
    }
    return out;
}

WideString WideFromUtf8(std::string_view text, BadText bad) {
    WideString out = CopyAscii<WideString>(text);
    while (!text.empty()) {
        const auto good = static_cast<std::size_t>(utf8::find_invalid(text.begin(), text.end()) - text.begin());
        utf8::unchecked::utf8to16(text.begin(), text.begin() + good, std::back_inserter(out));
        text.remove_prefix(good);
        if (text.empty()) break;
        if (bad == BadText::Refuse) throw std::range_error("a text is not UTF-8");
        const char32_t half = bad == BadText::Keep ? ReadHalf(text) : 0;
        out += static_cast<WideString::value_type>(half ? half : kReplacement);
        text.remove_prefix(half ? kHalfBytes : BegunLength(text));
    }
    return out;
}

bool IsUtf8(std::string_view text) noexcept { return utf8::is_valid(text.begin(), text.end()); }

MarkedText TakeMark(std::string_view bytes) noexcept {
    if (bytes.starts_with("\xFF\xFE")) return {ByteForm::LittleUtf16, bytes.substr(2)};
    if (bytes.starts_with("\xFE\xFF")) return {ByteForm::BigUtf16, bytes.substr(2)};
    if (bytes.starts_with("\xEF\xBB\xBF")) return {ByteForm::MarkedUtf8, bytes.substr(3)};
    return {ByteForm::Unmarked, bytes};
}

WideString WideFromUtf16(std::string_view bytes, ByteForm order) {
    const std::size_t low = order == ByteForm::BigUtf16 ? 1 : 0;
    WideString text(bytes.size() / 2, W('\0'));
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(bytes[2 * at + index]); };
        text[at] = static_cast<WideString::value_type>(byte(low) | byte(1 - low) << 8);
    }
    return text;
}

namespace {

template <class Text>
Text LowerAscii(Text text) {
    for (auto& unit : text)
        if (unit >= 'A' && unit <= 'Z') unit = static_cast<typename Text::value_type>(unit - 'A' + 'a');
    return text;
}

}  // namespace

std::string LowerSchemaWord(std::string_view word) { return LowerAscii(std::string(word)); }
WideString LowerSchemaWord(WideStringView word) { return LowerAscii(WideString(word)); }
