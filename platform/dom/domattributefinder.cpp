// The search for an attribute, with and without a table.
#include "domattributefinder.h"

#include "domname.h"

namespace dom {
namespace {

constexpr int kFewAttributes = 32;
constexpr int kFewSearches = 4;  // that a change may come after, before making a table pays

}  // namespace

xmlAttr* AttributeFinder::Find(std::uint64_t changes, const xmlNode* element, std::string_view wholeName) {
    xmlAttr* attribute = element->properties;
    for (int i = 0; attribute && i < kFewAttributes; attribute = attribute->next, ++i) {
        if (HasWholeName(AsNode(attribute), wholeName)) return attribute;
    }
    if (!attribute) return nullptr;

    if (changes_ != changes) {
        changes_ = changes;
        longSearches_ = 0;
        tables_.clear();
    }
    if (longSearches_ < kFewSearches) {
        ++longSearches_;
        while (attribute && !HasWholeName(AsNode(attribute), wholeName)) attribute = attribute->next;
        return attribute;
    }
    Table& table = tables_[element];
    if (table.empty()) {
        for (; attribute; attribute = attribute->next) table.emplace(WholeName(AsNode(attribute)), attribute);
    }
    const auto found = table.find(std::string(wholeName));
    return found == table.end() ? nullptr : found->second;
}

}  // namespace dom
