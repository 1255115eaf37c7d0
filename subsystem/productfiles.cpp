// The product descriptions that the host finds beside itself.
#include "productfiles.h"

#include <products/reader/productdescription.h>

#include "hosterror.h"
#include "hostplatform.h"
#include "nearestname.h"

std::string NameProduct(const std::filesystem::path& file) { return PathToUtf8(file.stem()); }

// Beside the program, or in the folder of the driver's files beside the program's own.
std::vector<std::filesystem::path> FindOwnProductFiles() {
    const std::filesystem::path folder = GetProgramFolder();
    std::vector<std::filesystem::path> files = FindProductFiles(folder / "products");
    return files.empty() ? FindProductFiles(folder.parent_path() / "driver" / "products") : files;
}

std::filesystem::path FindProductFile(const std::string& nameOrPath) {
    std::string list;
    std::vector<std::string> names;
    for (const std::filesystem::path& file : FindOwnProductFiles()) {
        names.push_back(NameProduct(file));
        if (names.back() == nameOrPath) return file;
        list += (list.empty() ? "" : ", ") + names.back();
    }
    const std::filesystem::path path = PathFromUtf8(nameOrPath);
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) return std::filesystem::absolute(path, error);
    throw NotFoundError("there is no product '" + nameOrPath + "'; give the path of a product file or one of " +
                        (list.empty() ? "the products beside the program (there are none)" : list) +
                        SuggestName(nameOrPath, names));
}
