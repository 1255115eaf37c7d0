// ProductDescription: one product as its description file states it, and the function that loads it.
#pragma once

#include <products/pagesizes.h>
#include <products/reader/featurecatalogue.h>

#include <array>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// A file that cannot be read or is no product description. what() is "FILE:LINE: KEY: expected ..., got ...", UTF-8.
class MVPROD_API ProductError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    ProductError(const ProductError&) = default;
    ProductError& operator=(const ProductError&) = default;
    ~ProductError() override;
};

struct ProductPaper {
    std::string keyword;   // Print Schema name; empty for a size of the product's own
    std::string name;      // display name, at most 63 UTF-16 units
    std::string formName;  // of the form that stands for it, at most 31 UTF-16 units; empty when none does
    WORD number = 0;       // DEVMODE paper number; 256 for the custom size
    DWORD value = 0;       // data-model value
    facts::PageSizeType type = facts::PageSizeType::Common;
    DWORD displayUnits = 0;  // facts::value::kUnitsMillimetres or kUnitsInches
    LONG width = 0;          // micrometres; 0 for the custom size
    LONG length = 0;         // micrometres; 0 for the custom size
    std::size_t line = 0;    // of the product file
};

struct ProductTray {
    WORD number = 0;  // DEVMODE bin number
    DWORD value = 0;
    std::string name;  // at most 23 UTF-16 units
    // What it holds, as data-model values.
    DWORD heldSize = facts::value::kNotSet;
    DWORD heldMediaType = facts::value::kNotSet;
    LONG heldWidth = 0;   // micrometres, of the custom size; else 0
    LONG heldLength = 0;  // micrometres, of the custom size; else 0
};

struct ProductMediaType {
    DWORD number = 0;  // DEVMODE media type number
    DWORD value = 0;
    std::string name;  // at most 63 UTF-16 units
};

struct ProductResolution {
    LONG crossFeed = 0;      // dots per inch
    LONG feed = 0;           // dots per inch
    bool isDefault = false;  // true of exactly one
    std::string name;        // at most 31 UTF-16 units
};

struct ProductFeature {
    DWORD id = 0;
    std::vector<DWORD> path;  // from the root to the feature, itself included
    facts::FeatureKind kind = facts::FeatureKind::Boolean;
    std::vector<DWORD> values;      // options: what the product offers
    LONG minimum = 0, maximum = 0;  // integers; dimensions in micrometres; the longest text of a string
    LONG defaultNumber = 0;         // booleans 0 or 1, integers, dimensions, options
    std::string defaultText;        // strings
};

struct ProductSetting {
    enum class Kind { Boolean, Integer, Option, String };
    Kind kind = Kind::Boolean;
    LONG number = 0;  // booleans 0 or 1, integers, options
    std::string text;
};

// What follows from the features and lists.
struct ProductLimits {
    LONG maximumCopies = 1;
    bool collates = false;
    bool printsDuplex = false;
    bool printsColor = false;
    bool staples = false;
    LONG memory = 0;                           // KiB; 0 when the product does not say
    LONG pagesPerMinute = 0;                   // 0 when the product does not say
    LONG minimumWidth = 0, minimumLength = 0;  // tenths of a millimetre
    LONG maximumWidth = 0, maximumLength = 0;  // tenths of a millimetre
};

// A field of the DEVMODE that the product sets by default.
struct ProductDevmodeField {
    std::string name;  // the member's name, "dmCopies"
    LONG value = 0;
    DWORD fieldBit = 0;  // its bit in dmFields
};

struct ProductDescription {
    std::filesystem::path file;
    std::string modelName;
    DWORD controllerFamily = 0;
    WORD driverVersion = 0;                                  // dmDriverVersion
    int workflowLibraryIndex = 0;                            // 1 to 3
    std::string workflowLibrary;                             // its file name
    std::vector<std::string> libraries;                      // file names, the workflow library not among them
    std::vector<std::string> applicationsWithoutCustomSize;  // lower-case file names of programs
    std::map<DWORD, ULONGLONG> capabilities;                 // driver capability words by number
    std::map<int, std::string> info;                         // information items by number
    std::map<int, std::filesystem::path> paths;              // files by kind, full paths; 15 is the margin file
    std::vector<std::filesystem::path> stringFiles;          // full paths, in their order
    std::map<DWORD, ProductSetting> settings;                // device settings by number
    std::vector<ProductFeature> features;                    // ascending by id
    std::vector<ProductPaper> papers;
    std::vector<ProductTray> trays;
    std::vector<ProductMediaType> mediaTypes;
    std::vector<ProductResolution> resolutions;
    std::vector<DWORD> unlistedMediaTypes;  // values that may be set and are not shown: tickets have no names for them
    std::vector<DWORD> pagesPerSheet;
    std::vector<ProductDevmodeField> devmode;
    std::map<DWORD, std::string> strings;  // product texts by number; a later file's text wins
    ProductLimits limits;

    // Null when the product does not list it.
    const ProductFeature* FindFeature(DWORD id) const noexcept {
        for (const ProductFeature& feature : features)
            if (feature.id == id) return &feature;
        return nullptr;
    }
    const ProductPaper* FindPaper(WORD number) const noexcept {
        for (const ProductPaper& paper : papers)
            if (paper.number == number) return &paper;
        return nullptr;
    }
};

// Library files by workflow index - 1.
inline constexpr std::array<const char*, 3> kWorkflowLibraries = {"mvwftuC0.dll", "mvwfwuC0.dll", "mvwfuvC0.dll"};

// The product of that file. Parsed once per process and state (path, size, time of change) of the files it is made of;
// safe for many threads. Throws ProductError.
MVPROD_API std::shared_ptr<const ProductDescription> LoadProduct(const std::filesystem::path& file);
// What is wrong with a product file, each as ProductError would say it: one fault of each entry, whose others show when
// it is mended. Empty when LoadProduct takes the file.
MVPROD_API std::vector<std::string> FindProductFaults(const std::filesystem::path& file);
// The names of the files that are installed with the driver beside the product's own file: libraries, its data files,
// which lie beside it, the workflow library. None twice.
MVPROD_API std::vector<std::string> ListDependentFiles(const ProductDescription& product);
// Whether it is a file's name that leads into no folder, of 1 to 63 UTF-16 units.
MVPROD_API bool IsFileName(std::string_view name) noexcept;
// How often this process has read a product file, for tests and benchmarks.
MVPROD_API std::size_t GetProductReadCount() noexcept;
// The product files of a folder, by name: its own, NAME.toml (string tables are none), and NAME/NAME.toml below it.
// None when there is no such folder.
MVPROD_API std::vector<std::filesystem::path> FindProductFiles(const std::filesystem::path& folder);
