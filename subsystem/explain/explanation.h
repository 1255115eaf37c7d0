// What became of each setting of a DEVMODE or a ticket, and why.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

enum class Verdict { Lost, Ignored, Overruled, Changed, Kept };

struct SettingVerdict {
    std::string setting;        // the name that people use
    std::string before, after;  // values for people; empty when there is none
    Verdict verdict;
    std::string reason;  // never empty
};
using Explanation = std::vector<SettingVerdict>;

const char* NameVerdict(Verdict verdict);

// The rows by verdict, in the order of the enumeration; rows of one verdict stay as they are.
void SortByVerdict(Explanation& rows);
// An array of objects with the keys setting, before, after, verdict and reason.
std::string FormatAsJson(const Explanation& rows);
// For a reader: a line for each kept setting, two for others, then how many there are of each verdict.
void PrintExplanation(const Explanation& rows, std::ostream& out);
// "lost: Scale: 50 -> 100: the reason", for each row that is lost or ignored.
std::vector<std::string> ListLosses(const Explanation& rows);
