// Shrink: a shorter list that still fails.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

// Drops items, one after the other, as long as fails(list) holds without them. Where it never does, the list stays.
template <class Item, class Fails>
std::vector<Item> Shrink(std::vector<Item> items, Fails fails) {
    for (std::size_t at = 0; at < items.size();) {
        std::vector<Item> fewer = items;
        fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(at));
        if (fails(fewer)) {
            items = std::move(fewer);
        } else {
            ++at;
        }
    }
    return items;
}

// "A, then B" of the items' own words.
template <class Item>
std::string DescribeEdits(const std::vector<Item>& edits) {
    std::string text;
    for (const Item& edit : edits) text += (text.empty() ? "" : ", then ") + edit.what;
    return text.empty() ? "no change" : text;
}
