// Reads and writes the text of Windows .reg files.
#include "regfile.h"

#include <algorithm>

#include "hosterror.h"
#include "hosttext.h"

namespace {

constexpr WideStringView kHeaderLine = W("Windows Registry Editor Version 5.00");
constexpr WideStringView kBlanks = W(" \t");
constexpr std::size_t kMaximumKeyNameCharacters = 255;
constexpr int kMaximumKeyDepth = 512;
constexpr std::size_t kMaximumValueNameCharacters = 16383;
constexpr std::size_t kHexBytesPerLine = 25;
constexpr WideStringView kHexDigits = W("0123456789abcdef");

struct Hive {
    WideStringView name;
    WideStringView shortName;
    HKEY key;
};

// HKEY values are no constant expressions, so the table is made at run time.
const std::vector<Hive>& Hives() {
    static const std::vector<Hive> hives = {
        {W("HKEY_LOCAL_MACHINE"), W("HKLM"), HKEY_LOCAL_MACHINE},
        {W("HKEY_CURRENT_USER"), W("HKCU"), HKEY_CURRENT_USER},
    };
    return hives;
}

WideStringView Trim(WideStringView text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == WideStringView::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// What a line still says where a comment may follow.
WideStringView WithoutComment(WideStringView text) { return Trim(text.substr(0, text.find(W(';')))); }

// The lines of a file, cut at LF or CR LF. Each is decoded when it is asked for.
class LineReader {
public:
    explicit LineReader(std::string_view bytes) {
        const auto [form, content] = TakeMark(bytes);
        form_ = form;
        rest_ = content;
        if (IsUtf16() && content.size() % 2 != 0) Fail("the UTF-16 text ends within a character");
    }

    // False at the end of the file. The line stays until the next call.
    bool Next(WideStringView& line) {
        if (rest_.empty()) return false;
        ++number_;
        const std::size_t end = FindLineEnd();
        line_ = Decode(rest_.substr(0, end));
        rest_.remove_prefix(std::min(end + (IsUtf16() ? sizeof(WCHAR) : 1), rest_.size()));
        line = line_;
        if (line.ends_with(W('\r'))) line.remove_suffix(1);
        return true;
    }

    [[noreturn]] void Fail(const std::string& expected) const {
        throw InputError("line " + std::to_string(std::max<std::size_t>(number_, 1)) +
                         " of the registry file is bad: " + expected +
                         "; correct it and import again, nothing was changed");
    }

private:
    bool IsUtf16() const { return form_ == ByteForm::LittleUtf16 || form_ == ByteForm::BigUtf16; }

    std::size_t FindLineEnd() const {
        if (!IsUtf16()) return std::min(rest_.find('\n'), rest_.size());
        const std::string_view lineEnd =
            form_ == ByteForm::LittleUtf16 ? std::string_view("\n\0", 2) : std::string_view("\0\n", 2);
        std::size_t end = rest_.find(lineEnd);
        while (end != std::string_view::npos && end % 2 != 0) end = rest_.find(lineEnd, end + 1);
        return std::min(end, rest_.size());
    }

    WideString Decode(std::string_view bytes) const {
        if (IsUtf16()) return WideFromUtf16(bytes, form_);
        std::optional<WideString> line = ToWide(bytes);
        if (!line) Fail("it is neither UTF-8 nor UTF-16 text");
        return std::move(*line);
    }

    ByteForm form_ = ByteForm::Unmarked;
    std::string_view rest_;
    WideString line_;
    std::size_t number_ = 0;  // of the line last read, from 1
};

class Parser {
public:
    explicit Parser(std::string_view bytes) : lines_(bytes) {}

    RegFile Parse() {
        WideStringView line;
        if (!lines_.Next(line) || Trim(line) != kHeaderLine)
            lines_.Fail("a registry file begins with '" + ToUtf8(kHeaderLine) + "'");
        while (lines_.Next(line)) {
            const WideStringView text = Trim(line);
            if (text.empty() || text.starts_with(W(';'))) continue;
            if (text.starts_with(W('['))) {
                ParseKey(text);
            } else if (file_.empty()) {
                lines_.Fail("a key in brackets has to come before the first value");
            } else if (file_.back().remove) {
                lines_.Fail("a key that is deleted takes no values");
            } else {
                ParseValue(text);
            }
        }
        return std::move(file_);
    }

private:
    void ParseKey(WideStringView text) {
        const std::size_t keyEnd = text.rfind(W(']'));
        if (keyEnd == WideStringView::npos || !WithoutComment(text.substr(keyEnd + 1)).empty())
            lines_.Fail("a key ends with ']'");
        text = text.substr(1, keyEnd - 1);
        RegFileKey key;
        key.remove = text.starts_with(W('-'));
        if (key.remove) text.remove_prefix(1);
        const std::size_t hiveEnd = std::min(text.find(W('\\')), text.size());
        const WideStringView hive = text.substr(0, hiveEnd);
        for (const Hive& entry : Hives())
            if (EqualRegistryNames(hive, entry.name) || EqualRegistryNames(hive, entry.shortName)) key.hive = entry.key;
        if (!key.hive) lines_.Fail("a key begins with HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER");
        key.path = text.substr(std::min(hiveEnd + 1, text.size()));
        if (key.remove && key.path.empty()) lines_.Fail("a whole hive cannot be deleted");
        CheckPath(key.path);
        file_.push_back(std::move(key));
    }

    void CheckPath(WideStringView path) {
        if (std::count(path.begin(), path.end(), W('\\')) >= kMaximumKeyDepth)
            lines_.Fail("a key lies at most " + std::to_string(kMaximumKeyDepth) + " deep");
        while (!path.empty()) {
            const std::size_t end = std::min(path.find(W('\\')), path.size());
            if (end == 0 || end > kMaximumKeyNameCharacters || end + 1 == path.size())
                lines_.Fail("a key's name has 1 to " + std::to_string(kMaximumKeyNameCharacters) + " characters");
            if (path.substr(0, end).find(W('\0')) != WideStringView::npos) lines_.Fail("a name holds no NUL");
            path.remove_prefix(std::min(end + 1, path.size()));
        }
    }

    void ParseValue(WideStringView text) {
        RegFileValue value;
        if (text.starts_with(W('@'))) {
            text.remove_prefix(1);
        } else if (!text.starts_with(W('"'))) {
            lines_.Fail("expected a key, a value (\"name\"=..., @=...) or a comment");
        } else {
            value.name = TakeQuoted(text);
            if (value.name.size() > kMaximumValueNameCharacters) lines_.Fail("the value's name is too long");
        }
        text = Trim(text);
        if (!text.starts_with(W('='))) lines_.Fail("expected '=' behind the value's name");
        text = Trim(text.substr(1));
        if (WithoutComment(text) == W("-")) {
            value.remove = true;
        } else if (text.starts_with(W('"'))) {
            value.type = REG_SZ;
            WideString characters = TakeQuoted(text);
            if (!WithoutComment(text).empty()) lines_.Fail("expected nothing behind the closing quote");
            characters.push_back(W('\0'));
            for (const WCHAR character : characters) AppendLittleEndian(value.data, character, sizeof(WCHAR));
        } else if (EqualRegistryNames(text.substr(0, 6), W("dword:"))) {
            value.type = REG_DWORD;
            AppendLittleEndian(value.data, TakeHex(WithoutComment(text.substr(6)), 8), sizeof(DWORD));
        } else if (EqualRegistryNames(text.substr(0, 3), W("hex"))) {
            ParseHexValue(text.substr(3), value);
        } else {
            lines_.Fail("expected \"text\", dword:, hex:, hex(type): or - behind '='");
        }
        file_.back().values.push_back(std::move(value));
    }

    // ":01,02,..." or "(b):01,..."; a backslash at a line's end continues it on the next one.
    void ParseHexValue(WideStringView text, RegFileValue& value) {
        value.type = REG_BINARY;
        if (text.starts_with(W('('))) {
            const std::size_t end = text.find(W(')'));
            if (end == WideStringView::npos) lines_.Fail("expected ')' behind the type's number");
            value.type = TakeHex(text.substr(1, end - 1), 8);
            text.remove_prefix(end + 1);
        }
        if (!text.starts_with(W(':'))) lines_.Fail("expected ':' behind hex");
        text = WithoutComment(text.substr(1));
        bool more = false;  // a comma was read, so another byte has to come
        for (;;) {
            if (text == W("\\")) {
                if (!lines_.Next(text)) lines_.Fail("the file ends where a line is to be continued");
                text = WithoutComment(text);
                continue;
            }
            if (text.empty()) {
                if (more) lines_.Fail("expected a byte behind the last comma");
                return;
            }
            const std::size_t end = std::min(text.find(W(',')), text.size());
            value.data.push_back(static_cast<BYTE>(TakeHex(Trim(text.substr(0, end)), 2)));
            more = end < text.size();
            text = Trim(text.substr(std::min(end + 1, text.size())));
            if (!more && !text.empty()) lines_.Fail("expected a comma between bytes");
        }
    }

    // Takes a quoted text with \\ and \" off the front.
    WideString TakeQuoted(WideStringView& text) {
        WideString result;
        for (std::size_t at = 1; at < text.size(); ++at) {
            WCHAR character = text[at];
            if (character == W('"')) {
                text.remove_prefix(at + 1);
                return result;
            }
            if (character == W('\\')) {
                if (++at == text.size()) break;
                character = text[at];
                if (character != W('\\') && character != W('"')) lines_.Fail("a backslash in a text is written \\\\");
            }
            if (character == W('\0')) lines_.Fail("a text holds no NUL");
            result.push_back(character);
        }
        lines_.Fail("a closing quote is missing");
    }

    DWORD TakeHex(WideStringView digits, std::size_t maximumDigits) {
        DWORD value = 0;
        bool isHex = !digits.empty() && digits.size() <= maximumDigits;
        for (const WCHAR digit : digits) {
            const std::size_t place = kHexDigits.find(digit >= W('A') && digit <= W('F') ? digit + 32 : digit);
            isHex = isHex && place != WideStringView::npos;
            value = value << 4 | static_cast<DWORD>(place & 0xF);
        }
        if (!isHex) lines_.Fail("expected 1 to " + std::to_string(maximumDigits) + " hex digits");
        return value;
    }

    static void AppendLittleEndian(std::vector<BYTE>& data, DWORD value, std::size_t bytes) {
        for (; bytes > 0; --bytes, value >>= 8) data.push_back(static_cast<BYTE>(value));
    }

    LineReader lines_;
    RegFile file_;
};

WideString Quote(WideStringView text) {
    WideString result(1, W('"'));
    for (const WCHAR character : text) {
        if (character == W('"') || character == W('\\')) result.push_back(W('\\'));
        result.push_back(character);
    }
    return result + W('"');
}

// The text of a REG_SZ that can be written between quotes: terminated once, no line ends.
std::optional<WideString> PlainText(const RegFileValue& value) {
    if (value.type != REG_SZ || value.data.empty() || value.data.size() % sizeof(WCHAR) != 0) return std::nullopt;
    const std::string_view bytes(reinterpret_cast<const char*>(value.data.data()), value.data.size());
    WideString text = WideFromUtf16(bytes, ByteForm::LittleUtf16);
    if (text.back() != W('\0')) return std::nullopt;
    text.pop_back();
    for (const WCHAR character : text)
        if (character < W(' ')) return std::nullopt;
    return text;
}

WideString Hex(std::uint64_t value, int digits) { return *ToWide(ToLowerHex(value, digits)); }

void AppendHexBytes(WideString& text, const std::vector<BYTE>& data) {
    for (std::size_t at = 0; at < data.size(); ++at) {
        text += kHexDigits[data[at] >> 4];
        text += kHexDigits[data[at] & 0xF];
        if (at + 1 == data.size()) break;
        text += W(',');
        if ((at + 1) % kHexBytesPerLine == 0) text += W("\\\r\n  ");
    }
}

void AppendValue(WideString& text, const RegFileValue& value) {
    text += value.name.empty() ? WideString(W("@")) : Quote(value.name);
    text += W('=');
    if (value.remove) {
        text += W('-');
    } else if (const std::optional<WideString> plain = PlainText(value)) {
        text += Quote(*plain);
    } else if (value.type == REG_DWORD && value.data.size() == sizeof(DWORD)) {
        const std::vector<BYTE>& data = value.data;
        text += W("dword:");
        for (int byte = 3; byte >= 0; --byte) text += Hex(data[byte], 2);
    } else {
        text += W("hex");
        if (value.type != REG_BINARY) text += W('(') + Hex(value.type, 0) + W(')');
        text += W(':');
        AppendHexBytes(text, value.data);
    }
    text += W("\r\n");
}

}  // namespace

RegFile ParseRegFile(std::string_view bytes) { return Parser(bytes).Parse(); }

std::string FormatRegFile(const RegFile& file) {
    WideString text = W('\xFEFF') + WideString(kHeaderLine) + W("\r\n");
    for (const RegFileKey& key : file) {
        text += W("\r\n[");
        if (key.remove) text += W('-');
        for (const Hive& hive : Hives())
            if (hive.key == key.hive) text += hive.name;
        if (!key.path.empty()) text += W('\\') + key.path;
        text += W("]\r\n");
        for (const RegFileValue& value : key.values) AppendValue(text, value);
    }
    std::string bytes;
    bytes.reserve(text.size() * sizeof(WCHAR));
    for (const WCHAR character : text) {
        bytes.push_back(static_cast<char>(character & 0xFF));
        bytes.push_back(static_cast<char>(character >> 8));
    }
    return bytes;
}
