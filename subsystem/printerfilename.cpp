// The name of a printer's file among those of all printers.
#include "printerfilename.h"

#include <mvutil/crc32.h>
#include <textcodec.h>

#include <algorithm>

#include "hosttext.h"

namespace {

// Bytes; a system that counts in units of UTF-16 has room for more. The extension and what a writer appends to the name
// while the file is not whole must fit behind it.
constexpr std::size_t kLongestName = 200;

// Names that open a device on Windows, whatever follows behind a dot.
bool IsDeviceName(std::string_view name) {
    const std::string word = LowerSchemaWord(name.substr(0, name.find_first_of(". ")));
    for (const char* device : {"con", "prn", "aux", "nul", "conin$", "conout$"})
        if (word == device) return true;
    return word.size() > 3 && (word.starts_with("com") || word.starts_with("lpt"));
}

bool IsPortable(char character, bool isAtEdge) {
    const auto code = static_cast<unsigned char>(character);
    if (code < ' ' || code == 0x7F) return false;
    if (isAtEdge && (character == ' ' || character == '.')) return false;
    return std::string_view("<>:\"/\\|?*%~").find(character) == std::string_view::npos;
}

std::string Escape(char character) {
    std::string escaped = FormatHex(static_cast<unsigned char>(character), 2);
    escaped.replace(0, 2, "%");
    return escaped;
}

}  // namespace

std::string MakePrinterFileName(WideStringView printer, std::string_view extension) {
    const std::string text = Utf8FromWide(printer, BadText::Replace);
    std::string name;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isAtEdge = at == 0 || at + 1 == text.size();
        const bool isKept = IsPortable(text[at], isAtEdge) && !(at == 0 && IsDeviceName(text));
        name += isKept ? std::string(1, text[at]) : Escape(text[at]);
    }
    const bool isExact = WideFromUtf8(text, BadText::Replace) == printer;
    if (name.size() > kLongestName || !isExact) {
        std::size_t end = std::min(name.size(), kLongestName);
        while (end < name.size() && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
        name.resize(end);
        WideString folded(printer);
        LowerRegistryName(folded);
        name += "~" + ToLowerHex(Crc32::GetCrc(folded.data(), folded.size() * sizeof(folded[0]), 0), 8);
    }
    return name.append(extension);
}
