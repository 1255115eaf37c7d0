// Namespaces of Print Schema documents, as wide text.
#pragma once

#include <facts/printschemanamespaces.h>
#include <widetext.h>

inline constexpr const auto& kFrameworkNamespace = kWide<facts::kFrameworkNamespace>.text;
inline constexpr const auto& kKeywordsNamespace = kWide<facts::kKeywordsNamespace>.text;
inline constexpr const auto& kXmlSchemaInstanceNamespace = kWide<facts::kXmlSchemaInstanceNamespace>.text;
inline constexpr const auto& kXmlSchemaNamespace = kWide<facts::kXmlSchemaNamespace>.text;
inline constexpr const auto& kPrivateKeywordsNamespace = kWide<facts::kPrivateKeywordsNamespace>.text;
