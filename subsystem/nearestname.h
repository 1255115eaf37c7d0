// The name that was meant by one that is not there.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

// The candidate nearest to the text by letters added, left out, changed or swapped; nothing when none is near enough to
// be meant.
std::optional<std::string> FindNearest(std::string_view text, std::span<const std::string> candidates);

// "; is 'press8434' meant?" of the nearest name; empty when none is near enough.
std::string SuggestName(std::string_view wanted, std::span<const std::string> names);
