// A .reg file from outside: its text, and a store that holds what it says.
#include <capabilitycaches.h>
#include <store.h>
#include <subsystem/installedprinter.h>
#include <subsystem/regfile.h>
#include <subsystem/registryexchange.h>

#include "fuzzhost.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    AllowRefusal([&] {
        const RegFile file = ParseRegFile({reinterpret_cast<const char*>(data), size});
        const std::string text = FormatRegFile(file);
        Demand(FormatRegFile(ParseRegFile(text)) == text, "a registry file that was written reads back as it was");

        OpenStore(":memory:");
        AllowRefusal([&] { ImportRegistry(file); });
        const std::string stored = FormatRegFile(ExportRegistry());
        OpenStore(":memory:");
        ImportRegistry(ParseRegFile(stored));
        Demand(FormatRegFile(ExportRegistry()) == stored, "a store that was exported is imported as it was");
        AllowRefusal([] { ListPrinters(); });
        CloseStore();
    });
    return 0;
}
