// Windows .reg files, version 5.00: their text, and the registry keys and values that they stand for.
#pragma once

#include <mvutil/cxstring.h>

#include <string>
#include <string_view>
#include <vector>

struct RegFileValue {
    WideString name;  // empty for the key's default value
    bool remove = false;
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

struct RegFileKey {
    HKEY hive = nullptr;
    WideString path;  // below the hive
    bool remove = false;
    std::vector<RegFileValue> values;
};

// Keys in the order of the file.
using RegFile = std::vector<RegFileKey>;

// The bytes of a file, UTF-16 with a byte order mark or UTF-8. Throws InputError that names the first bad line.
RegFile ParseRegFile(std::string_view bytes);
// The file as UTF-16LE with a byte order mark.
std::string FormatRegFile(const RegFile& file);
