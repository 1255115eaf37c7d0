// The name that was meant by one that is not there.
#include "nearestname.h"

#include <textcodec.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kLongestName = 80;  // a text that is longer is no misspelling of a name

// Letters added, left out, changed, or two neighbours swapped.
std::size_t CountEdits(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before, last(b.size() + 1), row(b.size() + 1);
    for (std::size_t column = 0; column <= b.size(); ++column) last[column] = column;
    for (std::size_t line = 1; line <= a.size(); ++line) {
        row[0] = line;
        for (std::size_t column = 1; column <= b.size(); ++column) {
            const bool same = a[line - 1] == b[column - 1];
            row[column] = std::min({last[column] + 1, row[column - 1] + 1, last[column - 1] + (same ? 0 : 1)});
            if (line > 1 && column > 1 && a[line - 1] == b[column - 2] && a[line - 2] == b[column - 1])
                row[column] = std::min(row[column], before[column - 2] + 1);
        }
        before = std::exchange(last, row);
    }
    return last[b.size()];
}

}  // namespace

std::optional<std::string> FindNearest(std::string_view text, std::span<const std::string> candidates) {
    if (text.empty() || text.size() > kLongestName) return std::nullopt;
    const std::string wanted = LowerSchemaWord(text);
    // A third of the letters may be wrong, and no more than four of them.
    std::size_t fewest = std::min<std::size_t>(4, text.size() / 3) + 1;
    std::optional<std::string> nearest;
    for (const std::string& candidate : candidates) {
        if (candidate.size() > kLongestName) continue;
        const std::size_t edits = CountEdits(wanted, LowerSchemaWord(candidate));
        if (edits >= fewest) continue;
        fewest = edits;
        nearest = candidate;
    }
    return nearest;
}

std::string SuggestName(std::string_view wanted, std::span<const std::string> names) {
    const std::optional<std::string> nearest = FindNearest(wanted, names);
    return nearest ? "; is '" + *nearest + "' meant?" : std::string();
}
