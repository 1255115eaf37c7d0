// Names of Print Schema documents.
#pragma once

#include <widetext.h>
#include <windows.h>

inline constexpr const WCHAR* kFrameworkNamespace =
    W("http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework");
inline constexpr const WCHAR* kKeywordsNamespace =
    W("http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords");
inline constexpr const WCHAR* kXmlSchemaInstanceNamespace = W("http://www.w3.org/2001/XMLSchema-instance");
inline constexpr const WCHAR* kXmlSchemaNamespace = W("http://www.w3.org/2001/XMLSchema");
// The driver family's own features and parameters.
inline constexpr const WCHAR* kPrivateKeywordsNamespace =
    W("http://schemas.morvane.example/enterprise/print/driver/native/printSchemaPrivateKeywords/2006/11");
