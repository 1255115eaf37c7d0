// What the fuzz targets share.
#include "fuzzhost.h"

#include <capabilitycaches.h>
#include <printerinstall.h>
#include <store.h>
#include <subsystem/hosttext.h>
#include <subsystem/installedprinter.h>
#include <subsystem/productfiles.h>

#include <cstdio>
#include <cstdlib>
#include <map>

const FuzzPrinter& GetFuzzPrinter(const std::string& product) {
    // Never destroyed: the fuzzer ends the process as it likes.
    static auto& printers = *new std::map<std::string, std::unique_ptr<FuzzPrinter>>;
    if (const auto known = printers.find(product); known != printers.end()) return *known->second;
    if (printers.empty()) OpenStore(":memory:");
    const std::filesystem::path file = FindProductFile(product);
    const CXString name = CXString::FromUtf8(product);
    InstallPrinter(name.AsWideString(), file, {});
    RebuildCapabilityCaches(OpenInstalledPrinter(name).Get());
    std::unique_ptr<FuzzPrinter> made(new FuzzPrinter{LoadProduct(file), name, PrintSession(name)});
    return *printers.emplace(product, std::move(made)).first->second;
}

// The fuzzer watches the code of libraries for as long as it runs: those that a session loads and frees stay.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    for (const char* name : {"mvcoreC0.dll", kWorkflowLibraries[0], kWorkflowLibraries[1], kWorkflowLibraries[2]})
        Demand(LoadLibraryA(name) != nullptr, "the maker's libraries lie beside the program");
    return 0;
}

void AllowRefusal(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const HostError&) {
    } catch (const SpoolerFailure&) {
    }
}

void Demand(bool holds, const char* statement) {
    if (holds) return;
    std::fprintf(stderr, "this does not hold: %s\n", statement);
    std::abort();
}
