// What a document breaks of the XML Schema of Print Schema documents.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A sentence each, without line numbers; nothing where the build has no validator. Throws OperationError when the
// schema itself cannot be read.
std::optional<std::vector<std::string>> FindSchemaBreaks(std::string_view document);
