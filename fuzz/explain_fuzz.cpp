// A DEVMODE or a ticket in any of the forms in which they arrive, and why its settings became what they became.
#include <subsystem/explain/explain.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/inputs/ticketinput.h>

#include "fuzzhost.h"

namespace {

void DemandReasons(const Explanation& rows) {
    for (const SettingVerdict& row : rows)
        Demand(!row.setting.empty() && !row.reason.empty(), "every row names its setting and tells a reason");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const char* product : {"press8434", "script8432"}) {
        PrinterFacts printer(GetFuzzPrinter(product).session);
        AllowRefusal([&] {
            const DevmodeBuffer devmode = ReadDevmodeBytes(bytes, "input", product);
            DemandReasons(ConvertAndExplain(printer, devmode, nullptr).explanation);
        });
        AllowRefusal([&] {
            const PrintSession::Document ticket = ReadTicketBytes(bytes, "input");
            DevmodeBuffer devmode = printer.MakeDefaultDevmode();
            DemandReasons(ApplyAndExplain(printer, ticket.Get(), devmode));
        });
    }
    return 0;
}
