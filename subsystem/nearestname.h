// The name that was meant by one that is not there.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// "; is 'press8434' meant?" of the name that takes the fewest letters changed, added or left out, not more than a third
// of them; empty when there is none so near. Small letters are as good as capitals.
std::string SuggestName(std::string_view wanted, const std::vector<std::string>& names);
