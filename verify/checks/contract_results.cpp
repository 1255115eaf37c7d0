// What the operations answer and leave on good input, and that the printer's handle stays open.
#include <subsystem/documentkind.h>
#include <subsystem/hosterror.h>
#include <subsystem/xmlfile.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winspool.h>

#include <verify/binding.h>
#include <verify/check.h>
#include <verify/testbench.h>

namespace {

void RequireDocument(TestBench& bench, IXMLDOMDocument2* document, WideStringView root, const std::string& after) {
    try {
        const std::string text = FormatDocument(document);
        bench.SetInput("xml", text);
        RequireRoot(ReadDocumentBytes(text, "the document").Get(), root, "the document");
    } catch (const HostError& error) {
        bench.Fail("after " + after + " " + error.what());
    }
}

void AnswersOnGoodInput(TestBench& bench) {
    const auto session = bench.OpenSession();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const auto ticket = bench.MakeCoreTicket(*session, devmode);
    const auto capabilities = bench.MakeCoreCapabilities(*session);
    bench.Step("ConvertDevModeToPrintTicket");
    bench.RequireResult("ConvertDevModeToPrintTicket", session->CallTicket(devmode, ticket.Get()), S_OK);
    RequireDocument(bench, ticket.Get(), kTicketRoot, "ConvertDevModeToPrintTicket");
    bench.Step("ExpandIntentOptions");
    bench.RequireResult("ExpandIntentOptions", session->CallExpand(ticket.Get()), S_OK);
    RequireDocument(bench, ticket.Get(), kTicketRoot, "ExpandIntentOptions");
    bench.Step("ValidatePrintTicket");
    const HRESULT validated = session->CallValidate(ticket.Get());
    // The core drivers do not take S_OK for success.
    if (validated != S_CONFLICT_RESOLVED) bench.RequireResult("ValidatePrintTicket", validated, S_NO_CONFLICT);
    RequireDocument(bench, ticket.Get(), kTicketRoot, "ValidatePrintTicket");
    bench.Step("ConvertPrintTicketToDevMode");
    bench.RequireResult("ConvertPrintTicketToDevMode", session->CallApply(ticket.Get(), devmode), S_OK);
    for (IXMLDOMDocument2* const with : {static_cast<IXMLDOMDocument2*>(nullptr), ticket.Get()}) {
        bench.Step(with ? "CompletePrintCapabilities for a ticket" : "CompletePrintCapabilities without a ticket");
        bench.RequireResult("CompletePrintCapabilities", session->CallCapabilities(with, capabilities.Get()), S_OK);
        RequireDocument(bench, capabilities.Get(), kCapabilitiesRoot, "CompletePrintCapabilities");
    }
}

void KeepsTheHandleOpen(TestBench& bench) {
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    const auto requireOpen = [&](const char* after) {
        DWORD needed = 0;
        GetPrinterW(printer.Get(), 2, nullptr, 0, &needed);
        bench.Require(needed != 0, std::string("the printer's handle is closed after ") + after +
                                       ": GetPrinterW answers error " + std::to_string(GetLastError()));
    };
    auto provider = bench.MakeProvider();
    bench.Step("BindPrinter");
    BindProvider(*provider.Get(), printer.Get());
    requireOpen("BindPrinter");
    const auto session = bench.OpenSession();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const auto ticket = bench.MakeCoreTicket(*session, devmode);
    bench.Step("the conversions");
    provider->ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), 0, nullptr, ticket.Get());
    provider->ConvertPrintTicketToDevMode(ticket.Get(), devmode.GetBytes(), devmode.Get(), 0, nullptr);
    provider->CompletePrintCapabilities(ticket.Get(), bench.MakeCoreCapabilities(*session).Get());
    requireOpen("the conversions");
    bench.Step("the last Release");
    provider.Reset();
    requireOpen("the provider's end");
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Contract, "results",
      "each operation on good input answers what the core driver takes for success, and leaves a whole document",
      AnswersOnGoodInput}},
    {{CheckGroup::Contract, "printer-handle",
      "the printer's handle is open after the bind, the conversions and the end", KeepsTheHandleOpen}},
};

}  // namespace
