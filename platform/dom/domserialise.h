// Writing: a node or a document as XML text.
#pragma once

#include "domtree.h"

#include <string>

namespace dom {

// The node as get_xml shows it. Where a name's namespace is not declared by what is written, a declaration is written
// with it, so that the text reads back with the same names. A document starts with the XML declaration, without an
// encoding, if it was read with one.
std::string SerialiseNode(xmlNode* node);

// The document as UTF-8 bytes, with an XML declaration that says so.
std::string SerialiseDocument(xmlDoc* document);

}  // namespace dom
