// AttributeFinder: finds an element's attributes by their whole names, quickly also where there are very many.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace dom {

// An element with more attributes than are looked through at once gets a table, once it was searched several times
// since the last change. A document can hold as many declarations as names to be resolved.
class AttributeFinder {
public:
    // The number of the tree's changes shows whether the tables still count.
    xmlAttr* Find(std::uint64_t changes, const xmlNode* element, std::string_view wholeName);

private:
    using Table = std::unordered_map<std::string, xmlAttr*>;

    std::uint64_t changes_ = 0;
    int longSearches_ = 0;
    std::unordered_map<const xmlNode*, Table> tables_;
};

}  // namespace dom
