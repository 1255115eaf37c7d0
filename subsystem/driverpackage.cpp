// MakeDriverPackage: the products' files in one folder, and the text of the INF.
#include "driverpackage.h"

#include <products/reader/productdescription.h>
#include <spooler/printerinstall.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>

#include "hosterror.h"
#include "hosttext.h"
#include "productfiles.h"
#include "providerlibrary.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestInfLine = 4000;  // characters; what installs drivers reads 4096

struct PackedProduct {
    std::string name, model;
    std::vector<std::string> files;  // all that the core driver's two files are not: the product's own first
};

// As an INF's value: a text of its own, with nothing that counts as more than itself.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char unit : text) quoted.append(unit == '"' || unit == '%' ? 2 : 1, unit);
    return quoted + '"';
}

// A file's name in a list of them.
std::string Listed(const std::string& name) {
    const bool isPlain = std::all_of(name.begin(), name.end(), [](unsigned char unit) {
        return unit < 0x80 && (std::isalnum(unit) || unit == '.' || unit == '-' || unit == '_');
    });
    return isPlain ? name : Quoted(name);
}

// Whole numbers between the separators, none larger than that; none when the text is anything else.
std::vector<unsigned> ReadNumbers(std::string_view text, char separator, unsigned largest) {
    std::vector<unsigned> numbers;
    const char *at = text.data(), *const end = at + text.size();
    for (;;) {
        unsigned number = 0;
        const auto [next, error] = std::from_chars(at, end, number);
        if (error != std::errc() || number > largest) return {};
        numbers.push_back(number);
        if (next == end) return numbers;
        if (*next != separator) return {};
        at = next + 1;
    }
}

std::string TwoDigits(unsigned number) { return (number < 10 ? "0" : "") + std::to_string(number); }

// "MM/DD/YYYY,1.2.3.4"
std::string MakeDriverVersion(const PackageSettings& settings) {
    std::vector<unsigned> version = ReadNumbers(settings.version, '.', 65535);
    if (version.empty() || version.size() > 4)
        throw InputError("'" + settings.version + "' is no driver version; it has up to four numbers, as 1.2.3.4");
    version.resize(4);
    const std::vector<unsigned> date = ReadNumbers(settings.date, '-', 9999);
    constexpr std::array<unsigned, 12> kDays = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (settings.date.size() != 10 || date.size() != 3 || date[0] < 1980 || date[1] < 1 || date[1] > 12 ||
        date[2] < 1 || date[2] > kDays[date[1] - 1])
        throw InputError("'" + settings.date + "' is no date of a driver; give it as 2026-01-31");
    std::string text = TwoDigits(date[1]) + '/' + TwoDigits(date[2]) + '/' + std::to_string(date[0]);
    char before = ',';
    for (const unsigned number : version) {
        text.append(1, before).append(std::to_string(number));
        before = '.';
    }
    return text;
}

class InfWriter {
public:
    void Section(const std::string& name) { text_.append("\r\n[").append(name).append("]\r\n"); }
    void Line(const std::string& line) {
        if (line.size() > kLongestInfLine)
            throw InputError("a line of the INF would be too long: '" + line.substr(0, 60) + "...'; name fewer files");
        text_.append(line).append("\r\n");
    }
    std::string Get() { return std::move(text_); }

private:
    std::string text_;
};

void WriteHead(InfWriter& inf, const std::string& driverVersion) {
    inf.Line(std::string("; ") + kInfFile + ", made from the products' files by mvpthost product pack.");
    inf.Line("; Every file that it names lies beside it. The core driver's files, " + std::string(kCoreDriverFile) +
             " and " + kCoreConfigFile + ",");
    inf.Line(
        "; are laid there by the driver's owner, who also gives the models their hardware ids and signs the catalog.");
    inf.Section("Version");
    inf.Line("Signature   = \"$Windows NT$\"");
    inf.Line("Class       = Printer");
    inf.Line("ClassGuid   = {4D36E979-E325-11CE-BFC1-08002BE10318}");
    inf.Line("Provider    = %Manufacturer%");
    inf.Line("CatalogFile = mvptpc.cat");
    inf.Line("DriverVer   = " + driverVersion);
}

void WriteProduct(InfWriter& inf, const PackedProduct& product) {
    inf.Section(product.name);
    inf.Line("CopyFiles      = " + product.name + ".Files");
    inf.Line(std::string("DriverFile     = ") + kCoreDriverFile);
    inf.Line(std::string("ConfigFile     = ") + kCoreConfigFile);
    inf.Line("DataFile       = " + product.files.front());
    std::string dependent;
    for (std::size_t index = 1; index < product.files.size(); ++index)
        dependent.append(index > 1 ? ", " : "").append(Listed(product.files[index]));
    inf.Line("DependentFiles = " + dependent);
    inf.Section(product.name + ".Files");
    inf.Line(kCoreDriverFile);
    inf.Line(kCoreConfigFile);
    for (const std::string& file : product.files) inf.Line(Listed(file));
}

std::string WriteInf(const std::vector<PackedProduct>& products, const PackageSettings& settings) {
    InfWriter inf;
    WriteHead(inf, MakeDriverVersion(settings));
    inf.Section("Manufacturer");
    inf.Line("%Manufacturer% = Models, NTamd64");
    inf.Section("Models.NTamd64");
    for (const PackedProduct& product : products) inf.Line(Quoted(product.model) + " = " + product.name);
    std::set<std::string> all = {kCoreDriverFile, kCoreConfigFile};
    for (const PackedProduct& product : products) {
        WriteProduct(inf, product);
        all.insert(product.files.begin(), product.files.end());
    }
    inf.Section("DestinationDirs");
    inf.Line("DefaultDestDir = 66000  ; the folder of printer drivers");
    inf.Section("SourceDisksNames.amd64");
    inf.Line("1 = %Manufacturer%");
    inf.Section("SourceDisksFiles");
    for (const std::string& file : all) inf.Line(Listed(file) + " = 1");
    inf.Section("Strings");
    inf.Line("Manufacturer = " + Quoted(settings.manufacturer));
    return inf.Get();
}

// What installs drivers reads characters beyond ASCII only in UTF-16.
std::string EncodeInf(const std::string& utf8) {
    if (std::all_of(utf8.begin(), utf8.end(), [](unsigned char unit) { return unit < 0x80; })) return utf8;
    std::string bytes = "\xFF\xFE";
    for (const auto unit : ToWide(utf8).value_or(WideString())) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8 & 0xFF);
    }
    return bytes;
}

class Packer {
public:
    void Add(const fs::path& file) {
        PackedProduct packed{.name = NameProduct(file), .model = {}, .files = {}};
        RequireProductName(packed.name);
        const auto product = LoadProduct(file);
        packed.model = product->modelName;
        if (!names_.insert(LowerSchemaWord(packed.name)).second)
            throw InputError("two products have the name '" + packed.name + "'; rename one of them");
        if (!models_.insert(LowerSchemaWord(packed.model)).second)
            throw InputError("two products have the model '" + packed.model + "', by which a driver is installed");
        FlatFiles own = CopyProduct(file, packed.name);
        own[packed.name + ".ini"] =
            std::string("; The plug-in from which the core driver gets the PrintTicket provider.\r\n[OEMFiles]\r\n") +
            "OEMConfigFile1 = " + kOwnPlugin + "\r\n";
        packed.files.push_back(packed.name + ".toml");
        for (auto& [name, bytes] : own) {
            if (name != packed.files.front()) packed.files.push_back(name);
            Reserve(name);
            package_.files[name] = std::move(bytes);
        }
        std::set<std::string> libraries(product->libraries.begin(), product->libraries.end());
        libraries.insert(product->workflowLibrary);
        packed.files.insert(packed.files.end(), libraries.begin(), libraries.end());
        package_.libraries.merge(libraries);
        products_.push_back(std::move(packed));
    }

    DriverPackage Get(const PackageSettings& settings) {
        for (const std::string& library : package_.libraries) Reserve(library);
        package_.files[kInfFile] = EncodeInf(WriteInf(products_, settings));
        return std::move(package_);
    }

private:
    // Names of one folder differ in more than the case of letters.
    void Reserve(const std::string& name) {
        if (!taken_.insert(LowerSchemaWord(name)).second)
            throw InputError("two files of the package would be called '" + name + "'; rename a product or a library");
    }

    std::set<std::string> names_, models_, taken_ = {kInfFile, kCoreDriverFile, kCoreConfigFile};
    std::vector<PackedProduct> products_;
    DriverPackage package_;
};

}  // namespace

DriverPackage MakeDriverPackage(const std::vector<std::filesystem::path>& products, const PackageSettings& settings) {
    Packer packer;
    for (const fs::path& product : products) packer.Add(product);
    return packer.Get(settings);
}
