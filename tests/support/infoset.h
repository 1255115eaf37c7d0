// DumpInfoset: what an XML document says, as text that two documents share when they say the same.
#pragma once

#include <msxml2.h>

#include <string>
#include <string_view>

enum InfosetOptions { kWholeInfoset, kIgnoreDeclarations };

// One line a node, indented by depth: elements and attributes by {namespace}name, attributes sorted, namespace
// declarations sorted behind them unless they are to be ignored, texts exact (neighbouring text and CDATA joined),
// comments, processing instructions. Prefixes of names do not show. Works on any maker's document, and throws
// std::runtime_error where that answers with a failure.
std::string DumpInfoset(IXMLDOMNode* node, InfosetOptions options = kWholeInfoset);

// UTF-16 as UTF-8; throws std::filesystem::filesystem_error at a lone surrogate.
std::string Utf8Text(std::basic_string_view<WCHAR> text);
