// Validation by libxml2.
#include "xmlschema.h"

#include <libxml/parser.h>
#include <libxml/xmlversion.h>
#ifdef LIBXML_SCHEMAS_ENABLED
#include <libxml/xmlschemas.h>
#endif

#include <cstring>
#include <memory>

#include <subsystem/hosterror.h>

#ifdef LIBXML_SCHEMAS_ENABLED

extern const char kPrintSchemaXsd[];  // printschema.xsd, made a source by the build

namespace {

template <auto Free>
struct FreeWith {
    template <class T>
    void operator()(T* object) const noexcept {
        Free(object);
    }
};
using XmlDocument = std::unique_ptr<xmlDoc, FreeWith<xmlFreeDoc>>;
using Schema = std::unique_ptr<xmlSchema, FreeWith<xmlSchemaFree>>;

void Collect(void* breaks, xmlErrorPtr error) {
    std::string sentence = error->message ? error->message : "";
    while (sentence.ends_with('\n') || sentence.ends_with('.')) sentence.pop_back();
    static_cast<std::vector<std::string>*>(breaks)->push_back(sentence);
}

Schema ReadSchema() {
    const std::unique_ptr<xmlSchemaParserCtxt, FreeWith<xmlSchemaFreeParserCtxt>> parser(
        xmlSchemaNewMemParserCtxt(kPrintSchemaXsd, static_cast<int>(std::strlen(kPrintSchemaXsd))));
    Schema schema(parser ? xmlSchemaParse(parser.get()) : nullptr);
    if (!schema) throw OperationError("the XML Schema of Print Schema documents cannot be read");
    return schema;
}

}  // namespace

std::optional<std::vector<std::string>> FindSchemaBreaks(std::string_view document) {
    static const Schema schema = ReadSchema();
    std::vector<std::string> breaks;
    const XmlDocument read(xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                                         XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    if (!read) return std::vector<std::string>{"it is no XML"};
    const std::unique_ptr<xmlSchemaValidCtxt, FreeWith<xmlSchemaFreeValidCtxt>> validator(
        xmlSchemaNewValidCtxt(schema.get()));
    xmlSchemaSetValidStructuredErrors(validator.get(), Collect, &breaks);
    if (xmlSchemaValidateDoc(validator.get(), read.get()) != 0 && breaks.empty())
        breaks.emplace_back("it is not valid");
    return breaks;
}

#else

std::optional<std::vector<std::string>> FindSchemaBreaks(std::string_view) { return std::nullopt; }

#endif
