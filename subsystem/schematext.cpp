// The text of Print Schema elements under the usual prefixes.
#include "schematext.h"

#include <facts/printschemanamespaces.h>
#include <printsubsystem/printschema.h>

#include "hosttext.h"

namespace schematext {

std::string Escape(std::string_view text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += character;
        }
    }
    return result;
}

namespace {

std::string Attribute(std::string_view name, std::string_view value) {
    return " " + std::string(name) + "=\"" + Escape(value) + "\"";
}

std::string Element(const std::string& name, std::string_view attributes, std::string_view content) {
    std::string text = "<" + name + std::string(attributes);
    if (content.empty()) return text + "/>";
    return text + ">" + std::string(content) + "</" + name + ">";
}

std::string Value(ValueType type, std::string_view value) {
    const char* name = type == ValueType::String    ? "xsd:string"
                       : type == ValueType::Integer ? "xsd:integer"
                                                    : "xsd:QName";
    return Element("psf:Value", Attribute("xsi:type", name), Escape(value));
}

}  // namespace

std::string Document(std::string_view root, std::string_view content) {
    const std::string attributes = Attribute("xmlns:psf", facts::kFrameworkNamespace) +
                                   Attribute("xmlns:psk", facts::kKeywordsNamespace) +
                                   Attribute("xmlns:xsi", facts::kXmlSchemaInstanceNamespace) +
                                   Attribute("xmlns:xsd", facts::kXmlSchemaNamespace) + Attribute("version", "1");
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + Element(std::string(root), attributes, content) + "\n";
}

std::string Feature(std::string_view name, std::string_view content) {
    return Element("psf:Feature", Attribute("name", name), content);
}

std::string Option(std::string_view name, std::string_view constrained, std::string_view content) {
    return Element("psf:Option",
                   (name.empty() ? std::string() : Attribute("name", name)) +
                       (constrained.empty() ? std::string() : Attribute("constrained", constrained)),
                   content);
}

std::string Property(std::string_view name, ValueType type, std::string_view value) {
    return Element("psf:Property", Attribute("name", name), Value(type, value));
}

std::string ScoredProperty(std::string_view name, std::int64_t value) {
    return Element("psf:ScoredProperty", Attribute("name", name), Value(ValueType::Integer, std::to_string(value)));
}

std::string ParameterInit(std::string_view name, std::int64_t value) {
    return Element("psf:ParameterInit", Attribute("name", name), Value(ValueType::Integer, std::to_string(value)));
}

std::string ParameterDef(std::string_view name, std::string_view properties) {
    return Element("psf:ParameterDef", Attribute("name", name), properties);
}

}  // namespace schematext
