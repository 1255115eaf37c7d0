// In which form a file arrives.
#include "inputform.h"

#include <algorithm>

#include <subsystem/hosttext.h>

namespace {

struct Signature {
    std::string_view start;
    const char* description;
};
// Files that people take for a DEVMODE or a ticket.
constexpr Signature kSignatures[] = {
    {"%PDF-", "a PDF file"},
    {"%!PS", "a PostScript file"},
    {"\x1B%-12345X", "a print job in a printer's language"},
    {"\x89PNG", "a picture (PNG)"},
    {"\xFF\xD8\xFF", "a picture (JPEG)"},
    {"GIF8", "a picture (GIF)"},
    {"MZ", "a program or library"},
    {"\x7F"
     "ELF",
     "a program or library"},
    {"SQLite format 3", "a database"},
    {"regf", "a registry hive; export the key as a .reg file"},
    {"REGEDIT4", "a .reg file of version 4; export it as version 5.00"},
};

constexpr std::string_view kSpace = " \t\r\n";

// Hex digits in any of the usual spellings: "4d006f", "4d 00 6f", "4d,00,6f", "0x4D, 0x00", "hex:4d,00,\".
bool IsHexText(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789abcdefABCDEFxXh:,\\ \t\r\n") == std::string_view::npos;
}

bool IsBase64Text(std::string_view text) {
    return !text.empty() && text.find_first_not_of(
                                "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="
                                " \t\r\n") == std::string_view::npos;
}

bool IsText(const std::string& text) {
    const auto isControl = [](unsigned char code) {
        return code < 0x20 && kSpace.find(static_cast<char>(code)) == std::string_view::npos;
    };
    return std::none_of(text.begin(), text.end(), isControl) && IsUtf8(text);
}

}  // namespace

std::string DecodeText(std::string_view bytes) {
    const auto [form, content] = TakeMark(bytes);
    if (form == ByteForm::LittleUtf16 || form == ByteForm::BigUtf16) return ToUtf8(WideFromUtf16(content, form));
    return std::string(content);
}

InputKind RecogniseInput(std::string_view bytes) {
    if (bytes.empty()) return {InputForm::Other, "an empty file"};
    for (const Signature& signature : kSignatures)
        if (bytes.starts_with(signature.start)) return {InputForm::Other, signature.description};
    if (bytes.starts_with("PK\x03\x04") || bytes.starts_with("PK\x05\x06")) return {InputForm::Package, "a ZIP file"};
    const std::string text = DecodeText(bytes);
    const std::size_t first = text.find_first_not_of(kSpace);
    if (first == std::string::npos) return {InputForm::Other, "a file of white space alone"};
    // UTF-16 without a mark is known by its first character.
    if (text[first] == '<' || bytes.starts_with(std::string_view("\0<", 2))) return {InputForm::Xml, "an XML document"};
    if (text.compare(first, 23, "Windows Registry Editor") == 0) return {InputForm::RegistryFile, "a .reg file"};
    if (IsHexText(text)) return {InputForm::Hex, "a text of hex digits"};
    if (IsBase64Text(text)) return {InputForm::Base64, "a text of Base64 digits"};
    if (IsText(text)) return {InputForm::Other, "a text file"};
    return {InputForm::Binary, "a file of binary data"};
}
