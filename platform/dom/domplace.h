// SiblingPlace: a list's remembered place among siblings, so that a walk over its indices is linear.
#pragma once

#include "domtree.h"

namespace dom {

// What it remembers counts for as long as nothing in the tree is linked or unlinked.
class SiblingPlace {
public:
    // Null where there is none of that index.
    xmlNode* At(const DomTree& tree, xmlNode* first, LONG index) {
        if (index < 0) return nullptr;
        Refresh(tree);
        if (!node_ || index < index_) {
            node_ = first;
            index_ = 0;
        }
        xmlNode* node = node_;
        LONG position = index_;
        for (; node && position < index; ++position) node = node->next;
        if (node) {
            node_ = node;
            index_ = position;
        }
        return node;
    }
    LONG Length(const DomTree& tree, const xmlNode* first) {
        Refresh(tree);
        if (length_ >= 0) return length_;
        length_ = 0;
        for (const xmlNode* node = first; node; node = node->next) ++length_;
        return length_;
    }

private:
    void Refresh(const DomTree& tree) {
        if (changes_ == tree.GetChanges()) return;
        changes_ = tree.GetChanges();
        node_ = nullptr;
        length_ = -1;
    }

    std::uint64_t changes_ = static_cast<std::uint64_t>(-1);
    xmlNode* node_ = nullptr;
    LONG index_ = 0;
    LONG length_ = -1;
};

}  // namespace dom
