// Parsing: bytes become a tree, in which declarations and attributes stand in the order in which they were written.
#pragma once

#include "domtree.h"

#include <cstddef>
#include <memory>

namespace dom {

enum Encoding { kDetectEncoding, kEncodingIsUtf8 };  // the latter whatever the XML declaration says

// Null, with the failure filled in, when the bytes are not a well-formed, namespace-well-formed document or hold a
// document type declaration. All white space is kept. Nothing outside the bytes is ever read.
std::shared_ptr<DomTree> ParseDocument(const void* bytes, std::size_t length, Encoding encoding, ParseFailure* failure);

// Takes out the text nodes that hold nothing but white space, except where xml:space says to preserve it.
void StripWhiteSpace(DomTree& tree);

// The failure as one plain sentence.
std::string Describe(const ParseFailure& failure);

}  // namespace dom
