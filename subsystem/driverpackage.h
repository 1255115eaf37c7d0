// The folder from which Windows installs a driver: mvptpc.inf, the products' files, and the libraries that belong to
// them.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "productcopy.h"

inline constexpr const char* kInfFile = "mvptpc.inf";

struct PackageSettings {
    std::string version;       // of the driver: one to four numbers up to 65535 with dots between
    std::string date;          // YYYY-MM-DD
    std::string manufacturer;  // as programs that install printers show it
};

struct DriverPackage {
    FlatFiles files;                  // mvptpc.inf among them
    std::set<std::string> libraries;  // that have to lie in the same folder; the core driver's own are not among them
};

// A section of the INF for each product, under its name; the products' files, named as CopyProduct names them; and for
// each a NAME.ini, by which the core driver finds the plug-in. Throws ProductError for a product that cannot be read,
// InputError for a setting that is none, for two products of one name or model, and for files that would have one name.
DriverPackage MakeDriverPackage(const std::vector<std::filesystem::path>& products, const PackageSettings& settings);
