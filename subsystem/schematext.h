// The text of Print Schema elements under the usual prefixes psf, psk, xsi and xsd. All text is UTF-8; names are given
// with their prefix; content is made of the other functions' results.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace schematext {

enum class ValueType { String, Integer, QName };

// The text with its markup characters as references, for content and attributes.
std::string Escape(std::string_view text);

// A whole document with the four namespaces declared on its root, "psf:PrintTicket" or "psf:PrintCapabilities".
std::string Document(std::string_view root, std::string_view content);
std::string Feature(std::string_view name, std::string_view content);
// An empty name gives an option that its scored properties alone distinguish. Constrained is left out when empty.
std::string Option(std::string_view name, std::string_view constrained, std::string_view content);
std::string Property(std::string_view name, ValueType type, std::string_view value);
std::string ScoredProperty(std::string_view name, std::int64_t value);
std::string ParameterInit(std::string_view name, std::int64_t value);
std::string ParameterDef(std::string_view name, std::string_view properties);

}  // namespace schematext
