// The driver's own settings in a private block: each one by its path of feature ids.
#pragma once

#include <mvutil/attributebytes.h>
#include <products/reader/productdescription.h>

#include <string>
#include <vector>

struct DriverSetting {
    std::string path;  // feature ids from the root, joined by "/"
    DWORD feature;     // the last of them
    AttributeBytesValue value;
};

// The settings of a list, nested ones in the place of the list that holds them; a list stands for itself only when it
// is empty.
std::vector<DriverSetting> ListDriverSettings(const AttributeBytesRawList& list);

// The document properties of a private block of privateblock::kBytes bytes, whatever its checksum says; none when the
// block holds none that can be read.
std::vector<DriverSetting> ReadDriverSettings(const BYTE* block);

// The value for people; secrets as stars. Whether the user or the driver chose it is left out.
std::string DescribeDriverValue(const DriverSetting& setting, const ProductDescription& product);
