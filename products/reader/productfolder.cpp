// The files of products: those of a folder, and those that one is made of.
#include <products/reader/productdescription.h>

#include <pathtext.h>

#include <algorithm>
#include <fstream>
#include <set>

namespace {

// A string table has the same ending as a product: its first key is a number.
bool IsStringTable(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    char unit = '\0';
    while (stream >> unit && unit == '#')
        while (stream.get(unit) && unit != '\n') {
        }
    return stream && unit >= '0' && unit <= '9';
}

}  // namespace

std::vector<std::string> ListDependentFiles(const ProductDescription& product) {
    std::vector<std::string> names = product.libraries;
    for (const auto& [kind, path] : product.paths) names.push_back(PathToUtf8(path.filename()));
    for (const std::filesystem::path& path : product.stringFiles) names.push_back(PathToUtf8(path.filename()));
    names.push_back(product.workflowLibrary);
    std::set<std::string> seen;
    std::erase_if(names, [&](const std::string& name) { return !seen.insert(name).second; });
    return names;
}

std::vector<std::filesystem::path> FindProductFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        std::filesystem::path file = entry->path();
        const bool isFolder = std::filesystem::is_directory(file, ignored);
        if (isFolder) {
            file /= file.filename();
            file += ".toml";
        }
        const bool isProduct = file.extension() == ".toml" && std::filesystem::is_regular_file(file, ignored) &&
                               (isFolder || !IsStringTable(file));
        if (isProduct) files.push_back(std::move(file));
    }
    const auto byName = [](const std::filesystem::path& one, const std::filesystem::path& other) {
        return one.stem() != other.stem() ? one.stem() < other.stem() : one < other;
    };
    std::sort(files.begin(), files.end(), byName);
    return files;
}
