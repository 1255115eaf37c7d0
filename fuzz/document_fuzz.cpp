// An XML document from outside as the core driver's ticket, as the application's, as capabilities, and as a file to
// check.
#include <subsystem/devmodemaker.h>
#include <subsystem/schemacheck/schemacheck.h>
#include <subsystem/xmlfile.h>

#include "fuzzhost.h"

namespace {

using Document = PrintSession::Document;

std::string Reread(IXMLDOMDocument2* document) {
    std::string text = FormatDocument(document);
    std::string again;
    try {
        again = FormatDocument(ReadDocumentBytes(text, "the written document").Get());
    } catch (const HostError&) {
        Demand(false, "what was written can be read");
    }
    Demand(again == text, "what was written reads back as it was");
    return text;
}

DevmodeBuffer MakeFreshDevmode(const FuzzPrinter& printer) {
    return MakeDevmode(*printer.product, printer.name.AsWideString(), {});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FuzzPrinter& printer = GetFuzzPrinter("press8434");
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto read = [&] { return ReadDocumentBytes(bytes, "the input"); };
    AllowRefusal([&] { CheckSchemaDocument(bytes); });
    AllowRefusal([&] {
        Reread(read().Get());
        AllowRefusal([&] {
            DevmodeBuffer devmode = MakeFreshDevmode(printer);
            printer.session.ApplyTicket(read().Get(), devmode);
        });
        AllowRefusal([&] {
            const Document ticket = read();
            printer.session.CallExpand(ticket.Get());
            printer.session.CallValidate(ticket.Get());
            const std::string validated = Reread(ticket.Get());
            printer.session.CallValidate(ticket.Get());
            Demand(Reread(ticket.Get()) == validated, "validating again changes nothing");
        });
        AllowRefusal([&] {
            DevmodeBuffer devmode = MakeFreshDevmode(printer);
            Reread(printer.session.MakeTicket(devmode, read()).Get());
        });
        AllowRefusal([&] { Reread(printer.session.MakeCapabilities(read().Get()).Get()); });
        AllowRefusal([&] { Reread(printer.session.MakeCapabilities(nullptr, read()).Get()); });
    });
    return 0;
}
