// Names that people use for driver settings, for their values and for the keywords of the Print Schema.
#pragma once

#include <products/reader/productdescription.h>

#include <optional>
#include <string>
#include <string_view>

// The name of the data model's feature; its number where it has none.
std::string NameFeature(DWORD feature);
// Whether the feature holds a secret of the user's, which is not shown.
bool IsProtectedFeature(DWORD feature);
// The feature of that name, whatever the case of its letters.
std::optional<DWORD> FindFeatureByName(std::string_view name);

// The name of an option's value: as the product calls it, else as the driver family does, else the number.
std::string NameValue(DWORD value, const ProductDescription& product);

// The name that people use for a keyword; null when the Print Schema does not publish the keyword.
const char* FindKeywordName(std::string_view keyword);

// The nearest published keyword.
std::optional<std::string> FindNearestKeyword(std::string_view text);
