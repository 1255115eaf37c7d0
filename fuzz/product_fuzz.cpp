// A product's description file from outside: read, installed as a printer, and asked what that printer can do.
#include <capabilitycaches.h>
#include <printerinstall.h>
#include <store.h>
#include <subsystem/devmodemaker.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/productfiles.h>

#include "fuzzhost.h"

namespace {

// Beside copies of the files that the product names; removed at the process's end.
const std::filesystem::path& GetFolder() {
    static const std::filesystem::path& folder = *new std::filesystem::path([] {
        const std::filesystem::path made = MakeTemporaryFolder("mvpt-fuzz-");
        const std::filesystem::path product = FindProductFile("press8434").parent_path();
        std::filesystem::copy(product.parent_path(), made, std::filesystem::copy_options::recursive);
        return made / product.filename();
    }());
    static const int atEnd = std::atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(GetFolder().parent_path(), ignored);
    });
    static_cast<void>(atEnd);
    return folder;
}

void UseProduct(const std::filesystem::path& file) {
    const CXString name(W("Fuzzed"));
    OpenStore(":memory:");
    InstallPrinter(name.AsWideString(), file, {});
    RebuildCapabilityCaches(OpenInstalledPrinter(name).Get());
    const PrintSession session(name);
    DevmodeBuffer devmode = MakeDevmode(*LoadProduct(file), name.AsWideString(), {});
    FormatDocument(session.MakeCapabilities(session.MakeTicket(devmode).Get()).Get());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A name of its own each time: a file of the same size and second would be taken for one that was read.
    static std::size_t number = 0;
    const std::filesystem::path file = GetFolder() / (std::to_string(++number) + ".toml");
    WriteWholeFile(file, {reinterpret_cast<const char*>(data), size});
    try {
        AllowRefusal([&] { UseProduct(file); });
    } catch (const ProductError&) {
    }
    CloseStore();
    std::filesystem::remove(file);
    return 0;
}
