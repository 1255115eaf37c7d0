// The attributes of an element: finding, setting and taking off, declarations among them.
#pragma once

#include "domnode.h"

#include <string>
#include <string_view>

namespace dom {

xmlAttr* FindAttribute(DomTree& tree, const xmlNode* element, std::string_view wholeName);

// Puts a detached attribute on the element, in place of the one of the same name, which is given out (null: none was
// there). E_INVALIDARG for what is no attribute, E_FAIL for one that has an element already, be it this one, and for
// one that contradicts what a prefix means on this element.
HRESULT PutAttribute(const NodeCore& element, NodeCore* attribute, IXMLDOMNode** replaced);

// Sets the text of the attribute of that name, which is made if there is none. E_INVALIDARG for a name that is none,
// E_FAIL for an empty one, where its prefix is not bound or the text contradicts what a prefix means here.
HRESULT PutAttributeText(const NodeCore& element, const std::string& wholeName, const std::string& text);

// Takes the attribute off and gives it out, if that is wanted. S_FALSE and null for null.
HRESULT TakeOffAttribute(const NodeCore& element, xmlAttr* attribute, IXMLDOMNode** taken);

// A new attribute or declaration with no element. E_INVALIDARG when name and namespace do not go together, E_FAIL when
// the name is empty.
HRESULT NewAttributeNode(DomTree& tree, const std::string& wholeName, std::string_view uri, OwnedNode* attribute);

}  // namespace dom
