// The parser of product files.
#include "productparser.h"

#include <facts/values.h>
#include <pathtext.h>

#include "productlists.h"
#include "tomlfile.h"
#include "tomlsection.h"

#include <algorithm>

namespace {

// Of a text feature, in characters.
constexpr std::int64_t kLongestText = 0x100000;
constexpr std::int64_t kUsualText = 255;

class ProductParser {
public:
    ProductParser(const std::filesystem::path& file, std::vector<std::string>* faults)
        : name_(PathToUtf8(file)), table_(ReadTomlFile(file)), root_(name_, table_, "", faults), faults_(faults) {
        product_.file = file;
    }

    ProductDescription Parse() {
        ReadIdentity();
        ReadNumberedTexts();
        ReadSettings();
        ReadStrings();
        ReadFeatures();
        ReadProductLists(root_, product_);
        root_.Try([&] {
            if (auto section = root_.GetSection("devmode")) ReadDevmodeDefaults(*section, product_);
        });
        root_.RefuseOtherKeys();
        product_.limits = DeriveLimits(product_);
        return std::move(product_);
    }

private:
    void ReadIdentity() {
        root_.Try([&] { product_.modelName = root_.GetText("model", 63); });
        root_.Try([&] {
            product_.controllerFamily = static_cast<DWORD>(root_.GetInteger(
                "controller_family", facts::value::kControllerFamily8430, facts::value::kControllerFamily8434));
        });
        root_.Try([&] { product_.driverVersion = static_cast<WORD>(root_.GetInteger("driver_version", 1, 0xFFFF)); });
        root_.Try([&] { ReadWorkflowLibrary(); });
        root_.Try([&] { ReadLibraries(); });
        root_.Try([&] { ReadApplications(); });
    }

    void ReadWorkflowLibrary() {
        product_.workflowLibrary = root_.GetText("workflow_library");
        const auto library = std::find(kWorkflowLibraries.begin(), kWorkflowLibraries.end(), product_.workflowLibrary);
        if (library == kWorkflowLibraries.end())
            root_.Fail("workflow_library", "mvwftuC0.dll, mvwfwuC0.dll or mvwfuvC0.dll");
        product_.workflowLibraryIndex = static_cast<int>(library - kWorkflowLibraries.begin()) + 1;
    }

    void ReadLibraries() {
        product_.libraries = root_.GetTexts("dependent_files");
        if (!std::all_of(product_.libraries.begin(), product_.libraries.end(), IsFileName))
            root_.Fail("dependent_files", "file names without folder, at most 63 characters each");
    }

    void ReadApplications() {
        product_.applicationsWithoutCustomSize = root_.GetTexts("applications_without_custom_size");
        for (const std::string& name : product_.applicationsWithoutCustomSize)
            if (std::any_of(name.begin(), name.end(), [](char c) { return c >= 'A' && c <= 'Z'; }))
                root_.Fail("applications_without_custom_size", "file names of programs in lower case");
    }

    // A table whose keys are numbers; reading goes on behind an entry that is wrong.
    template <class ReadEntry>
    void ReadNumbered(const char* name, DWORD highest, ReadEntry readEntry) {
        root_.Try([&] {
            auto section = root_.GetSection(name);
            if (!section) return;
            for (const auto& [number, key] : section->GetNumbers(highest))
                section->Try([&, number = number, &key = key] { readEntry(*section, number, key); });
        });
    }

    void ReadNumberedTexts() {
        ReadNumbered("capabilities", 0xFFFF, [&](TomlSection& section, DWORD number, const std::string& key) {
            product_.capabilities[number] =
                static_cast<ULONGLONG>(section.GetInteger(key, 0, std::numeric_limits<std::int64_t>::max()));
        });
        ReadNumbered("info", 0xFFFF, [&](TomlSection& section, DWORD number, const std::string& key) {
            product_.info[static_cast<int>(number)] = section.GetText(key);
        });
        ReadNumbered("paths", 0xFFFF, [&](TomlSection& section, DWORD number, const std::string& key) {
            product_.paths[static_cast<int>(number)] = GetFileBeside(section, key, section.GetText(key));
        });
    }

    std::filesystem::path GetFileBeside(const TomlSection& section, std::string_view key, const std::string& name) {
        if (!IsFileName(name)) section.Fail(key, "a file beside this one, by a name of at most 63 characters");
        std::error_code error;
        std::filesystem::path full = product_.file.parent_path() / PathFromUtf8(name);
        if (!std::filesystem::is_regular_file(full, error))
            section.Fail(key, "a file beside this one, where '" + name + "' is missing");
        return full;
    }

    void ReadSettings() {
        ReadNumbered("settings", 0xFFFF, [&](TomlSection& section, DWORD number, const std::string& key) {
            product_.settings[number] = ReadSetting(section, key);
        });
    }

    static ProductSetting ReadSetting(TomlSection& section, const std::string& key) {
        const toml::node& node = *section.Find(key);
        if (node.is_boolean()) return {ProductSetting::Kind::Boolean, section.GetBoolean(key, false) ? 1 : 0, ""};
        if (node.is_integer())
            return {ProductSetting::Kind::Integer,
                    static_cast<LONG>(section.GetInteger(key, std::numeric_limits<LONG>::min())), ""};
        if (node.is_string()) return {ProductSetting::Kind::String, 0, *section.GetTextIfGiven(key)};
        auto option = node.is_table() ? section.GetSection(key) : std::nullopt;
        if (!option) section.Fail(key, "true, false, a whole number, a text or { option = NUMBER }");
        ProductSetting setting{ProductSetting::Kind::Option, static_cast<LONG>(option->GetInteger("option", 1)), ""};
        option->RefuseOtherKeys();
        return setting;
    }

    // String files in their order, then the product's own [strings]; a later text replaces an earlier one.
    void ReadStrings() {
        std::vector<std::string> names;
        root_.Try([&] { names = root_.GetTexts("string_files"); });
        for (const std::string& name : names) {
            root_.Try([&] {
                const std::filesystem::path file = GetFileBeside(root_, "string_files", name);
                const std::string fileName = PathToUtf8(file);
                const toml::table table = ReadTomlFile(file);
                product_.stringFiles.push_back(file);
                AddStrings(TomlSection(fileName, table, "", faults_));
            });
        }
        root_.Try([&] {
            if (auto section = root_.GetSection("strings")) AddStrings(*section);
        });
    }

    void AddStrings(TomlSection section) {
        for (const auto& [number, key] : section.GetNumbers(99999))
            section.Try([&, number = number, &key = key] { product_.strings[number] = *section.GetTextIfGiven(key); });
    }

    void ReadFeatures() {
        ReadNumbered("features", 0xFFFF, [&](TomlSection& section, DWORD id, const std::string& key) {
            const CatalogueFeature* known = FindCatalogueFeature(id);
            if (!known) section.Fail(key, "a feature that exists");
            RequireOwnFeature(section, key, *known);
            auto description = section.GetSection(key);
            product_.features.push_back(ReadFeature(*description, *known));
            description->RefuseOtherKeys();
        });
    }

    void RequireOwnFeature(const TomlSection& section, const std::string& key, const CatalogueFeature& known) const {
        if (known.source == CatalogueFeature::Source::Lists)
            section.Fail(key, "papers, trays, media_types or resolutions, which " + known.GetName() + " follows from");
        if (known.source == CatalogueFeature::Source::User)
            section.Fail(key, "a feature of the product, and " + known.GetName() + " is one of the user's preferences");
        if (known.parent != 0 && !product_.FindFeature(known.parent) && !section.Has(std::to_string(known.parent)))
            section.Fail(key, "the list feature " + std::to_string(known.parent) + " (" +
                                  FindCatalogueFeature(known.parent)->GetName() + ") beside it");
    }

    static ProductFeature ReadFeature(TomlSection& section, const CatalogueFeature& known) {
        ProductFeature feature;
        feature.id = known.id;
        feature.kind = known.kind;
        feature.path = GetCataloguePath(known.id);
        switch (known.kind) {
            case facts::FeatureKind::Boolean:
                feature.defaultNumber = section.GetBoolean("default", false) ? 1 : 0;
                break;
            case facts::FeatureKind::Integer:
            case facts::FeatureKind::Dimension:
                ReadRange(section, known, feature);
                break;
            case facts::FeatureKind::String:
                feature.maximum =
                    static_cast<LONG>(section.GetIntegerIfGiven("longest", 0, kLongestText).value_or(kUsualText));
                feature.defaultText =
                    section.GetTextIfGiven("default", static_cast<std::size_t>(feature.maximum)).value_or("");
                break;
            case facts::FeatureKind::Option:
                ReadOptionValues(section, known, feature);
                break;
            case facts::FeatureKind::List:
            case facts::FeatureKind::Resolution:
                break;
        }
        return feature;
    }

    static void ReadRange(TomlSection& section, const CatalogueFeature& known, ProductFeature& feature) {
        const bool isBounded = known.values.last != 0;
        const std::int64_t lowest = isBounded ? known.values.first : std::int64_t{std::numeric_limits<LONG>::min()};
        const std::int64_t highest = isBounded ? known.values.last : TomlSection::kLargest;
        feature.minimum = static_cast<LONG>(section.GetInteger("minimum", lowest, highest));
        feature.maximum = static_cast<LONG>(section.GetInteger("maximum", feature.minimum, highest));
        feature.defaultNumber = static_cast<LONG>(section.GetInteger("default", feature.minimum, feature.maximum));
    }

    static void ReadOptionValues(TomlSection& section, const CatalogueFeature& known, ProductFeature& feature) {
        constexpr std::int64_t kAutomatic = facts::value::kNotSet;
        feature.values = section.GetIntegers("values", std::min<std::int64_t>(kAutomatic, known.values.first), 0xFFFF);
        const auto exists = [&](DWORD value) {
            return value == kAutomatic || (value >= known.values.first && value <= known.values.last);
        };
        if (feature.values.empty() || !std::all_of(feature.values.begin(), feature.values.end(), exists))
            section.Fail("values", "values from " + std::to_string(known.values.first) + " to " +
                                       std::to_string(known.values.last) + ", for " + known.GetName() + ", or " +
                                       std::to_string(kAutomatic));
        feature.defaultNumber = static_cast<LONG>(section.GetInteger("default", kAutomatic));
        if (std::find(feature.values.begin(), feature.values.end(), static_cast<DWORD>(feature.defaultNumber)) ==
            feature.values.end())
            section.Fail("default", "one of the values");
    }

    std::string name_;
    toml::table table_;
    TomlSection root_;
    std::vector<std::string>* faults_;
    ProductDescription product_;
};

}  // namespace

ProductDescription ParseProduct(const std::filesystem::path& file) { return ProductParser(file, nullptr).Parse(); }

bool IsFileName(std::string_view name) noexcept {
    return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\:") == std::string_view::npos &&
           CountUtf16Units(name) <= 63;
}

std::vector<std::string> FindProductFaults(const std::filesystem::path& file) {
    std::vector<std::string> faults;
    try {
        ProductParser(file, &faults).Parse();
    } catch (const ProductError& error) {
        faults.push_back(error.what());  // nothing of the file can be read
    }
    return faults;
}
