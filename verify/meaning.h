// What Print Schema documents say, whatever their prefixes, order, white space and comments.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// A document as a text that two documents share when they say the same: names are expanded, siblings sorted, texts
// trimmed. Throws InputError when it cannot be read.
std::string DescribeMeaning(std::string_view document);
// The same of each element below the root.
std::vector<std::string> ListMeanings(std::string_view document);
// The names of all features, options, scored properties and parameters, with their places: what must be in a
// PrintCapabilities whatever ticket it is for.
std::string DescribeOffers(std::string_view capabilities);
// The namespaces that the root declares.
std::vector<std::string> ListRootNamespaces(std::string_view document);
// For a report: the first line of one text that the other has not, else nothing.
std::string FindDifference(const std::string& before, const std::string& after);
