// Namespaces of Print Schema documents: the published ones, and the driver family's.
#pragma once

namespace facts {

inline constexpr char kFrameworkNamespace[] =
    "http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework";
inline constexpr char kKeywordsNamespace[] =
    "http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords";
inline constexpr char kXmlSchemaInstanceNamespace[] = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr char kXmlSchemaNamespace[] = "http://www.w3.org/2001/XMLSchema";
// The driver family's own features and parameters.
inline constexpr char kPrivateKeywordsNamespace[] =
    "http://schemas.morvane.example/enterprise/print/driver/native/printSchemaPrivateKeywords/2006/11";

}  // namespace facts
