// The products that the host knows by name: those that the user has added, then the driver's own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

inline constexpr const char* kProductsVariable = "MVPT_PRODUCTS";

struct KnownProducts {
    std::vector<std::filesystem::path> files;    // of products, by name; no name twice
    std::vector<std::filesystem::path> hiding;   // those of them that another product of the same name is not used for
    std::vector<std::filesystem::path> missing;  // folders that $MVPT_PRODUCTS names and that are none
};

// Product files of the folders that $MVPT_PRODUCTS lists, then of mvptpc/products in the folder of the user's settings
// (~/.config), then of the driver's own: "products" beside its libraries, else beside them, else where the kit was
// installed. The one found first has the name.
KnownProducts FindKnownProducts();
// What a user calls the product of that file.
std::string NameProduct(const std::filesystem::path& file);
// The product file that a user means by a name, such as "press8434", or by a path. Throws NotFoundError when there is
// none.
std::filesystem::path FindProductFile(const std::string& nameOrPath);
