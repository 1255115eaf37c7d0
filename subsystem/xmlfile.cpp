// Print Schema documents in files; the check for document type declarations is the host's own, for whichever DOM reads
// them.
#include "xmlfile.h"

#include <textcodec.h>

#include "hosterror.h"
#include "hostfiles.h"
#include "hostplatform.h"

#include <string>

namespace {

constexpr std::size_t kDeclarationBytes = 1024;  // in which an XML declaration is looked for

// UTF-16 is known by the first character, too.
MarkedText RecogniseForm(std::string_view bytes) {
    if (bytes.starts_with(std::string_view("<\0", 2))) return {ByteForm::LittleUtf16, bytes};
    if (bytes.starts_with(std::string_view("\0<", 2))) return {ByteForm::BigUtf16, bytes};
    return TakeMark(bytes);
}

// The text's ASCII characters, each other 16-bit unit as one '?', when the bytes look like UTF-16; else the bytes.
std::string AsciiView(std::string_view bytes) {
    const auto [form, content] = RecogniseForm(bytes);
    if (form == ByteForm::Unmarked || form == ByteForm::MarkedUtf8) return std::string(content);
    std::string text;
    text.reserve(content.size() / 2);
    for (const WCHAR unit : WideFromUtf16(content, form)) text.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    return text;
}

// Empty when there is no XML declaration or none that names an encoding.
std::string GetDeclaredEncoding(std::string_view text) {
    text = text.substr(0, text.find("?>"));
    const std::size_t name = text.find("encoding");
    if (!text.starts_with("<?xml") || name == std::string_view::npos) return std::string();
    const std::size_t quote = text.find_first_of("'\"", name);
    if (quote == std::string_view::npos) return std::string();
    return std::string(text.substr(quote + 1, text.find(text[quote], quote + 1) - quote - 1));
}

}  // namespace

std::string FindEncodingFault(std::string_view bytes) {
    const std::string declared = GetDeclaredEncoding(AsciiView(bytes.substr(0, kDeclarationBytes)));
    const auto fault = [&](const char* actual) {
        return "the XML declaration says " + declared + " and the bytes are " + actual +
               "; store the document in the encoding that it names";
    };
    const std::string encoding = LowerSchemaWord(declared);
    const bool saysTwoBytes = encoding == "iso-10646-ucs-2" || encoding == "ucs-2" || encoding == "utf-16";
    switch (declared.empty() ? ByteForm::Unmarked : RecogniseForm(bytes).form) {
        case ByteForm::LittleUtf16:
            return saysTwoBytes || encoding == "utf-16le" ? std::string() : fault("little-endian UTF-16");
        case ByteForm::BigUtf16:
            return saysTwoBytes || encoding == "utf-16be" ? std::string() : fault("big-endian UTF-16");
        case ByteForm::MarkedUtf8:
            return encoding == "utf-8" || encoding == "utf8" ? std::string() : fault("marked as UTF-8");
        case ByteForm::Unmarked:
            return saysTwoBytes || encoding.starts_with("utf-16") ? fault("not UTF-16") : std::string();
    }
    return std::string();
}

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
    if (const std::string fault = FindEncodingFault(bytes); !fault.empty()) throw InputError(name + ": " + fault);
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
    return ReadDocumentBytes(ReadWholeFile(file), NameInput(file), makeDocument);
}

void WriteDocumentFile(const std::filesystem::path& file, IXMLDOMDocument2* document) {
    std::string utf8;
    if (const HRESULT result = SerialiseDomDocument(document, &utf8); FAILED(result)) {
        throw OperationError("writing the XML document", result);
    }
    WriteWholeFile(file, utf8);
}
