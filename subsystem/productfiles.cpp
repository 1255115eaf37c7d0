// The product descriptions that the host finds beside itself.
#include "productfiles.h"

#include <products/reader/productdescription.h>

#include "hosterror.h"
#include "hostplatform.h"

// Beside the program, or in the folder of the driver's files beside the program's own.
std::vector<std::filesystem::path> FindOwnProductFiles() {
    const std::filesystem::path folder = GetProgramFolder();
    std::vector<std::filesystem::path> files = FindProductFiles(folder / "products");
    return files.empty() ? FindProductFiles(folder.parent_path() / "driver" / "products") : files;
}

std::filesystem::path FindProductFile(const std::string& nameOrPath) {
    std::string names;
    for (const std::filesystem::path& file : FindOwnProductFiles()) {
        const std::string name = PathToUtf8(file.stem());
        if (name == nameOrPath) return file;
        names += (names.empty() ? "" : ", ") + name;
    }
    const std::filesystem::path path = PathFromUtf8(nameOrPath);
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) return std::filesystem::absolute(path, error);
    throw InputError("there is no product '" + nameOrPath + "'; give the path of a product file or one of " +
                     (names.empty() ? "the products beside the program (there are none)" : names));
}
