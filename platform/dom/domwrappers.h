// Makers of the COM objects of this DOM; each result has one reference, which the caller owns.
#pragma once

#include "domnode.h"

#include <vector>

namespace dom {

IXMLDOMNode* NewElementObject(const std::shared_ptr<DomTree>& tree, xmlNode* node);
IXMLDOMNode* NewAttributeObject(const std::shared_ptr<DomTree>& tree, xmlNode* node);
// Of a text, CDATA section, comment or processing instruction.
IXMLDOMNode* NewContentObject(const std::shared_ptr<DomTree>& tree, xmlNode* node);
IXMLDOMNode* NewDocumentObject(const std::shared_ptr<DomTree>& tree, xmlNode* node);

// The attributes of an element, and its children as they are at the time of each call; both keep the node alive.
IXMLDOMNamedNodeMap* NewAttributeMap(const NodeCore& element);
IXMLDOMNodeList* NewChildList(const NodeCore& parent);
// A fixed list, which keeps its nodes alive.
IXMLDOMNodeList* NewSnapshotList(std::vector<ComPtr<IXMLDOMNode>> nodes);
IXMLDOMParseError* NewParseError(const ParseFailure& failure);

}  // namespace dom
