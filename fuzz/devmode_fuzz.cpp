// A DEVMODE from outside: what the host reports of it, its private block, and the ticket that the component makes of
// it.
#include <privateblock.h>
#include <subsystem/devmodereport.h>
#include <subsystem/xmlfile.h>
#include <xdevmode.h>

#include <sstream>

#include "fuzzhost.h"

namespace {

void Use(DevmodeBuffer devmode) {
    std::ostringstream told;
    told << FormatDevmodeAsJson(devmode);
    PrintDevmodeDescription(devmode, told);
    // The first letter of the device's name chooses: the two products' core drivers put the block's place elsewhere.
    const FuzzPrinter& printer = GetFuzzPrinter(devmode.GetBytesView().front() % 2 == 0 ? "press8434" : "script8432");
    const std::string before(devmode.GetBytesView());
    AllowRefusal([&] {
        const PrintSession::Document ticket = printer.session.MakeTicket(devmode);
        Demand(devmode.GetBytesView() == before, "making a ticket leaves the DEVMODE alone");
        const std::string text = FormatDocument(ticket.Get());
        printer.session.ApplyTicket(ReadDocumentBytes(text, "the ticket").Get(), devmode);
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    AllowRefusal([&] {
        DevmodeBuffer devmode(std::vector<BYTE>(data, data + size), "the input");
        Use(devmode);
        // What stands behind the checksum is met only when that holds.
        BYTE* const block = XDevmode::GetOemDevmodeFromDevmode(devmode.Get());
        if (!block) return;
        privateblock::WriteDword(block + privateblock::kChecksumOffset, privateblock::ComputeChecksum(block));
        Use(std::move(devmode));
    });
    return 0;
}
