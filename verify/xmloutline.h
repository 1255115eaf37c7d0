// XmlOutline: where the elements and attributes of a well-formed document lie in its text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct XmlAttributePlace {
    std::size_t begin;  // of the name
    std::size_t valueBegin, valueEnd;
    std::size_t end;  // behind the quote
};

struct XmlElementPlace {
    std::size_t begin;       // of its first tag
    std::size_t nameEnd;     // of the tag's name
    std::size_t tagEnd;      // behind its first tag
    std::size_t contentEnd;  // of what is between its tags; tagEnd where it has one tag alone
    std::size_t end;         // behind its last tag
    std::vector<XmlAttributePlace> attributes;
};

// In document order. Of text that ends too early: the elements that have begun, whose tag is whole.
std::vector<XmlElementPlace> OutlineXml(std::string_view text);

// The text up to the place, with what is open there closed: an attribute's value, a tag, the elements. Where a tag has
// begun and is in no value, it is left out.
std::string CloseXml(std::string_view text, std::size_t place);
