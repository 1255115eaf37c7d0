// CopyProduct: new names for the files that a product file names, there and here.
#include "productcopy.h"

#include <products/reader/productdescription.h>

#include <algorithm>

#include "hosterror.h"
#include "hostfiles.h"
#include "hostplatform.h"
#include "productkeys.h"

namespace {

namespace fs = std::filesystem;

class ProductCopier {
public:
    ProductCopier(const fs::path& product, const std::string& name)
        : product_(LoadProduct(product)), name_(name), text_(ReadWholeFile(product)) {}

    FlatFiles Copy() {
        CopyStringFiles();
        for (const auto& [kind, path] : product_->paths) CopyPath(std::to_string(kind), path);
        files_[name_ + ".toml"] = std::move(text_);
        return std::move(files_);
    }

private:
    void CopyStringFiles() {
        std::string list;
        bool isNew = false;
        for (const fs::path& path : product_->stringFiles) {
            const std::string name = Take(path);
            isNew = isNew || name != PathToUtf8(path.filename());
            if (!list.empty()) list += ", ";
            list.append(1, '"').append(name).append(1, '"');
        }
        if (isNew) text_ = ReplaceProductValue(text_, "", "string_files", "[" + list + "]");
    }

    void CopyPath(const std::string& kind, const fs::path& path) {
        const std::string name = Take(path);
        if (name != PathToUtf8(path.filename())) text_ = ReplaceProductValue(text_, "paths", kind, '"' + name + '"');
    }

    // What follows the old product's name or stands without one follows the new one.
    std::string NameCopy(const fs::path& path) const {
        const std::string name = PathToUtf8(path.filename());
        const std::string old = PathToUtf8(product_->file.stem()) + '-';
        return name_ + '-' + (name.starts_with(old) ? name.substr(old.size()) : name);
    }

    // The copy's name, with its bytes among the files.
    std::string Take(const fs::path& path) {
        std::string name = NameCopy(path);
        if (!IsFileName(name)) throw InputError("the file's name '" + name + "' is too long; take a shorter one");
        const auto [source, isNew] = sources_.emplace(name, path);
        if (!isNew && source->second != path)
            throw InputError("two files of the product would be called '" + name + "'; rename one of them");
        if (isNew) files_[name] = ReadWholeFile(path);
        return name;
    }

    std::shared_ptr<const ProductDescription> product_;
    std::string name_, text_;
    FlatFiles files_;
    std::map<std::string, fs::path> sources_;
};

}  // namespace

void RequireProductName(const std::string& name) {
    const auto isLetter = [](unsigned char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
    };
    if (name.empty() || name.size() > 63 || !std::all_of(name.begin(), name.end(), isLetter))
        throw InputError("'" + name + "' is no name for a product; it has 1 to 63 letters, digits, - and _");
}

FlatFiles CopyProduct(const std::filesystem::path& product, const std::string& name) {
    return ProductCopier(product, name).Copy();
}
