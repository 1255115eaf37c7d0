// A list of printers from outside, and the names of the files that are made for them.
#include <subsystem/printerfilename.h>
#include <subsystem/printerlistfile.h>

#include <set>

#include "fuzzhost.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    AllowRefusal([&] {
        std::set<std::string> files;
        std::size_t line = 0;
        for (const PrinterListEntry& entry : ReadPrinterList({reinterpret_cast<const char*>(data), size}, true)) {
            Demand(entry.line > line, "entries come in the order of their lines");
            line = entry.line;
            if (!entry.fault.empty()) continue;
            const std::string file = MakePrinterFileName(entry.name, ".xml");
            Demand(files.insert(file).second, "each printer has a file of its own");
            Demand(file.size() <= 255 && file.find_first_of("/\\:") == std::string::npos, "a file name is portable");
        }
    });
    return 0;
}
