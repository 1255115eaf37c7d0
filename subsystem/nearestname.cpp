// The name that was meant by one that is not there.
#include "nearestname.h"

#include <textcodec.h>

#include <algorithm>
#include <numeric>

namespace {

constexpr std::size_t kLongestName = 256;  // that is compared

// Letters changed, added or left out on the way from one to the other.
std::size_t MeasureDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t line = 1; line <= from.size(); ++line) {
        std::size_t diagonal = row[0];
        row[0] = line;
        for (std::size_t column = 1; column <= to.size(); ++column) {
            const std::size_t changed = diagonal + (from[line - 1] == to[column - 1] ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({changed, row[column] + 1, row[column - 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string SuggestName(std::string_view wanted, const std::vector<std::string>& names) {
    if (wanted.size() > kLongestName) return std::string();
    const std::string lower = LowerSchemaWord(wanted);
    std::size_t nearest = (wanted.size() + 1) / 3 + 1;
    const std::string* meant = nullptr;
    for (const std::string& name : names) {
        if (name.size() >= wanted.size() + nearest || wanted.size() >= name.size() + nearest) continue;
        const std::size_t distance = MeasureDistance(lower, LowerSchemaWord(name));
        if (distance >= nearest) continue;
        nearest = distance;
        meant = &name;
    }
    return meant ? "; is '" + *meant + "' meant?" : std::string();
}
