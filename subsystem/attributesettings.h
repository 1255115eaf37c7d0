// A product's settings as an attribute list: its defaults, and single settings given on the command line.
#pragma once

#include <mvutil/attributebytes.h>
#include <products/reader/productdescription.h>

#include <string>
#include <string_view>

// The defaults of the product's features, nested as its feature paths say. Dimensions are integers in micrometres.
AttributeBytesIndexedList MakeDefaultSettings(const ProductDescription& product);

// Two settings and values as they may be given, one by the feature's name and one by its path.
std::string GetAttributeExamples();

// Sets one feature. The path is feature ids from the root, joined by "/", or the feature's name; an option's value may
// be given by its name, too. The value's kind is the feature's where the product or the driver family knows it, else
// "true" and "false" are booleans, digits an option, all else a string. Throws InputError on a path or a value that
// cannot be.
void SetAttribute(AttributeBytesIndexedList& settings, const ProductDescription& product, std::string_view path,
                  std::string_view value);
