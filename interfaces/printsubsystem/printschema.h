// Names of Print Schema documents.
#pragma once

#include <widetext.h>
#include <windows.h>

inline constexpr WCHAR kFrameworkNamespace[] =
    W("http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework");
inline constexpr WCHAR kKeywordsNamespace[] =
    W("http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords");
inline constexpr WCHAR kXmlSchemaInstanceNamespace[] = W("http://www.w3.org/2001/XMLSchema-instance");
inline constexpr WCHAR kXmlSchemaNamespace[] = W("http://www.w3.org/2001/XMLSchema");
// The driver family's own features and parameters.
inline constexpr WCHAR kPrivateKeywordsNamespace[] =
    W("http://schemas.morvane.example/enterprise/print/driver/native/printSchemaPrivateKeywords/2006/11");
