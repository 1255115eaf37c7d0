// Print Schema documents in files; the check for document type declarations is the host's own, for whichever DOM reads
// them.
#include "xmlfile.h"

#include "hosterror.h"
#include "hostfiles.h"
#include "hostplatform.h"

#include <string>

namespace {

// The text's ASCII characters, each other 16-bit unit as one '?', when the bytes look like UTF-16; else the bytes.
std::string AsciiView(std::string_view bytes) {
    const auto startsWith = [bytes](std::string_view start) { return bytes.starts_with(start); };
    const bool isLittle = startsWith("\xFF\xFE") || startsWith(std::string_view("<\0", 2));
    const bool isBig = startsWith("\xFE\xFF") || startsWith(std::string_view("\0<", 2));
    if (!isLittle && !isBig) return std::string(bytes.substr(startsWith("\xEF\xBB\xBF") ? 3 : 0));
    const std::size_t start = static_cast<unsigned char>(bytes[0]) >= 0xFE ? 2 : 0;
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = start; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[isLittle ? i : i + 1]);
        const auto high = static_cast<unsigned char>(bytes[isLittle ? i + 1 : i]);
        text.push_back(high == 0 && low < 0x80 ? static_cast<char>(low) : '?');
    }
    return text;
}

}  // namespace

bool HoldsDocumentType(std::string_view bytes) {
    const std::string text = AsciiView(bytes);
    const std::string_view view = text;
    // Only white space, comments and processing instructions can come before it.
    for (std::size_t position = 0;;) {
        position = view.find_first_not_of(" \t\r\n", position);
        if (position == std::string_view::npos) return false;
        const std::string_view rest = view.substr(position);
        if (rest.starts_with("<!DOCTYPE")) return true;
        const std::string_view end = rest.starts_with("<!--") ? "-->" : rest.starts_with("<?") ? "?>" : "";
        if (end.empty()) return false;
        const std::size_t found = view.find(end, position + (end == "-->" ? 4 : 2));
        if (found == std::string_view::npos) return false;
        position = found + end.size();
    }
}

ComPtr<IXMLDOMDocument2> ReadDocumentBytes(std::string_view bytes, const std::string& name,
                                           const DocumentMaker& makeDocument) {
    if (HoldsDocumentType(bytes)) {
        throw InputError(name + ": a document type declaration (<!DOCTYPE) is not accepted; take it out.");
    }
    ComPtr<IXMLDOMDocument2> document;
    if (const HRESULT result = makeDocument(document.Put()); FAILED(result)) {
        throw OperationError("making an XML document", result);
    }
    std::string error;
    if (FAILED(LoadDomDocument(document.Get(), bytes.data(), bytes.size(), &error)))
        throw InputError(name + ": " + error);
    return document;
}

ComPtr<IXMLDOMDocument2> ReadDocumentFile(const std::filesystem::path& file, const DocumentMaker& makeDocument) {
    return ReadDocumentBytes(ReadWholeFile(file), PathToUtf8(file), makeDocument);
}

void WriteDocumentFile(const std::filesystem::path& file, IXMLDOMDocument2* document) {
    std::string utf8;
    if (const HRESULT result = SerialiseDomDocument(document, &utf8); FAILED(result)) {
        throw OperationError("writing the XML document", result);
    }
    WriteWholeFile(file, utf8);
}
