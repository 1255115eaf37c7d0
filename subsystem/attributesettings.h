// A product's settings as an attribute list: its defaults, and single settings given on the command line.
#pragma once

#include <mvutil/attributebytes.h>
#include <products/reader/productdescription.h>

#include <string>
#include <string_view>
#include <vector>

// The defaults of the product's features, nested as its feature paths say. Dimensions are integers in micrometres.
AttributeBytesIndexedList MakeDefaultSettings(const ProductDescription& product);

// Two settings and values as they may be given, one by the feature's name and one by its path.
std::string GetAttributeExamples();

// What can stand where a setting is given, for a word that begins it: the names of features, each with "=", or, once
// the word holds one, "NAME=VALUE" with each value that has a name; without a product those of booleans alone.
std::vector<std::string> ListSettingTexts(std::string_view word, const ProductDescription* product);

// Sets one feature. The path is feature ids from the root, joined by "/", or the feature's name; an option's value may
// be given by its name, too. The value's kind is the feature's where the product or the driver family knows it, else
// "true" and "false" are booleans, digits an option, all else a string. Throws InputError on a path or a value that
// cannot be.
void SetAttribute(AttributeBytesIndexedList& settings, const ProductDescription& product, std::string_view path,
                  std::string_view value);
