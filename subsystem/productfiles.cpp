// The products that the host knows by name.
#include "productfiles.h"

#include <products/reader/productdescription.h>

#include <algorithm>
#include <map>

#include "hosterror.h"
#include "hostplatform.h"
#include "nearestname.h"

namespace {

namespace fs = std::filesystem;

// The first folder that has any: a build's, a driver's, where all lies in one folder, an installed kit's.
std::vector<fs::path> FindDriverProducts() {
    const fs::path folder = GetDriverFolder();
    for (const char* place : {"products", ".", MV_PRODUCTS_FROM_DRIVER})
        if (std::vector<fs::path> files = FindProductFiles((folder / place).lexically_normal()); !files.empty())
            return files;
    return {};
}

class ProductCollector {
public:
    void AddListed(const std::string& list) {
        for (const fs::path& folder : SplitPathList(list)) {
            std::error_code error;
            if (fs::is_directory(folder, error)) {
                Add(FindProductFiles(fs::absolute(folder, error).lexically_normal()));
            } else {
                products_.missing.push_back(folder);
            }
        }
    }
    void Add(const std::vector<fs::path>& files) {
        for (const fs::path& file : files)
            if (const auto [used, isNew] = byName_.emplace(NameProduct(file), file); !isNew)
                products_.hiding.push_back(used->second);
    }
    KnownProducts Get() {
        for (const auto& [name, file] : byName_) products_.files.push_back(file);
        return std::move(products_);
    }

private:
    std::map<std::string, fs::path> byName_;
    KnownProducts products_;
};

}  // namespace

std::string NameProduct(const std::filesystem::path& file) { return PathToUtf8(file.stem()); }

KnownProducts FindKnownProducts() {
    ProductCollector collector;
    if (const auto list = GetEnvironment(kProductsVariable)) collector.AddListed(*list);
    if (const auto settings = GetUserSettingsFolder())
        collector.Add(FindProductFiles(*settings / "mvptpc" / "products"));
    collector.Add(FindDriverProducts());
    return collector.Get();
}

std::filesystem::path FindProductFile(const std::string& nameOrPath) {
    std::string list;
    std::vector<std::string> names;
    for (const std::filesystem::path& file : FindKnownProducts().files) {
        names.push_back(NameProduct(file));
        if (names.back() == nameOrPath) return file;
        list.append(list.empty() ? "" : ", ").append(names.back());
    }
    const std::filesystem::path path = PathFromUtf8(nameOrPath);
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) return std::filesystem::absolute(path, error);
    throw NotFoundError("there is no product '" + nameOrPath + "'; give the path of a product file or one of " +
                        (list.empty() ? "the products beside the program (there are none)" : list) +
                        SuggestName(nameOrPath, names));
}
