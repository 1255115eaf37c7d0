// The shared fixture of tests that need a printer.
#include <support/printerfixture.h>

#include <spooler/printerinstall.h>
#include <store.h>

#include <mvutil/morvaneutilities.h>
#include <mvutil/printer.h>
#include <winspool.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

std::filesystem::path ProgramFolder() {
    CXString folder = MorvaneUtilities::getPathFromFileName(MorvaneUtilities::getModulePath(nullptr));
    folder.Replace(W("\\"), W("/"));
    return std::filesystem::path(folder.AsWideString());
}

std::filesystem::path ProductFile(const std::string& product) {
    return ProgramFolder() / "products" / (product + ".toml");
}

ChangedProduct::ChangedProduct(const std::string& product, const Changes& changes)
    : file_(folder_ / ProductFile(product).filename()) {
    std::filesystem::copy(ProgramFolder() / "products", folder_.GetPath(), std::filesystem::copy_options::recursive);
    std::ifstream original(ProductFile(product));
    std::string text{std::istreambuf_iterator<char>(original), {}};
    for (const auto& [from, to] : changes) {
        const std::size_t at = text.find(from);
        if (at == std::string::npos) throw std::runtime_error("the product does not say " + from);
        text.replace(at, from.size(), to);
    }
    WriteTestFile(file_, text);
}

TestStore::TestStore() { OpenStore(":memory:"); }
TestStore::~TestStore() { CloseStore(); }

TestPrinter::TestPrinter(const std::string& product, const WCHAR* name) : TestPrinter(name, ProductFile(product)) {}

TestPrinter::TestPrinter(const WCHAR* name, const std::filesystem::path& productFile) : name_(name) {
    InstallPrinter(name_.AsWideString(), productFile, {});
    if (!OpenPrinterW(const_cast<WCHAR*>(name_.GetString()), &handle_, nullptr))
        throw std::runtime_error("the test printer does not open");
}

TestPrinter::~TestPrinter() { ClosePrinter(handle_); }

CXString TestPrinter::GetCacheKey() const {
    return MorvaneUtilities::ConvertPortNameToRegistryKey(Printer(handle_).GetPrinterPort());
}
