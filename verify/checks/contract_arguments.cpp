// Null and odd arguments: refused with a failure that leaves everything as it was.
#include <bstr.h>
#include <objbase.h>
#include <subsystem/hresultnames.h>
#include <subsystem/xmlfile.h>

#include <functional>

#include <verify/binding.h>
#include <verify/check.h>
#include <verify/testbench.h>

namespace {

// A call that has to fail.
struct OddCall {
    const char* what;
    std::function<HRESULT()> call;
};

void RequireFailures(TestBench& bench, const std::vector<OddCall>& calls) {
    for (const OddCall& odd : calls) {
        bench.Step(odd.what);
        const HRESULT result = odd.call();
        bench.Require(FAILED(result), std::string(odd.what) + " answers " + DescribeHresult(result));
    }
}

void RefusesNullOutArguments(TestBench& bench) {
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    const auto provider = bench.MakeProvider();
    INT* versions = nullptr;
    INT count = 0;
    OEMPTOPTS options = OEMPT_DEFAULT;
    BSTR* namespaces = nullptr;
    RequireFailures(bench, {{"GetSupportedVersions without an array",
                             [&] { return provider->GetSupportedVersions(nullptr, nullptr, &count); }},
                            {"GetSupportedVersions without a count",
                             [&] { return provider->GetSupportedVersions(nullptr, &versions, nullptr); }},
                            {"BindPrinter without a printer",
                             [&] { return provider->BindPrinter(nullptr, 1, &options, &count, &namespaces); }},
                            {"BindPrinter without options",
                             [&] { return provider->BindPrinter(printer.Get(), 1, nullptr, &count, &namespaces); }},
                            {"BindPrinter without a count",
                             [&] { return provider->BindPrinter(printer.Get(), 1, &options, nullptr, &namespaces); }},
                            {"BindPrinter without an array",
                             [&] { return provider->BindPrinter(printer.Get(), 1, &options, &count, nullptr); }},
                            {"QueryDeviceDefaultNamespace without a text",
                             [&] { return provider->QueryDeviceDefaultNamespace(nullptr); }},
                            {"PublishPrintTicketHelperInterface without a helper",
                             [&] { return provider->PublishPrintTicketHelperInterface(nullptr); }}});
    bench.Require(!versions && !namespaces, "a refused call hands out an array");
    bench.RequireResult("BindPrinter after refused ones", BindProvider(*provider.Get(), printer.Get()).result, S_OK);
}

void RefusesMissingInput(TestBench& bench) {
    const auto session = bench.OpenSession();
    IPrintOemPrintTicketProvider* const provider = session->GetProvider();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const auto ticket = bench.MakeCoreTicket(*session, devmode);
    const std::string text = FormatDocument(ticket.Get()), bytes(devmode.GetBytesView());
    const ULONG whole = devmode.GetBytes();
    RequireFailures(
        bench,
        {{"ConvertDevModeToPrintTicket without a ticket",
          [&] { return provider->ConvertDevModeToPrintTicket(whole, devmode.Get(), 0, nullptr, nullptr); }},
         {"ConvertDevModeToPrintTicket without a DEVMODE",
          [&] { return provider->ConvertDevModeToPrintTicket(whole, nullptr, 0, nullptr, ticket.Get()); }},
         {"ConvertDevModeToPrintTicket with no bytes",
          [&] { return provider->ConvertDevModeToPrintTicket(0, devmode.Get(), 0, nullptr, ticket.Get()); }},
         {"ConvertDevModeToPrintTicket of a DEVMODE that claims one byte more",
          [&] { return provider->ConvertDevModeToPrintTicket(whole - 1, devmode.Get(), 0, nullptr, ticket.Get()); }},
         {"ConvertPrintTicketToDevMode without a ticket",
          [&] { return provider->ConvertPrintTicketToDevMode(nullptr, whole, devmode.Get(), 0, nullptr); }},
         {"ConvertPrintTicketToDevMode without a DEVMODE",
          [&] { return provider->ConvertPrintTicketToDevMode(ticket.Get(), whole, nullptr, 0, nullptr); }},
         {"ConvertPrintTicketToDevMode with no bytes",
          [&] { return provider->ConvertPrintTicketToDevMode(ticket.Get(), 0, devmode.Get(), 0, nullptr); }},
         {"ConvertPrintTicketToDevMode onto a DEVMODE that claims one byte more",
          [&] { return provider->ConvertPrintTicketToDevMode(ticket.Get(), whole - 1, devmode.Get(), 0, nullptr); }},
         {"CompletePrintCapabilities without capabilities",
          [&] { return provider->CompletePrintCapabilities(ticket.Get(), nullptr); }},
         {"ExpandIntentOptions without a ticket", [&] { return provider->ExpandIntentOptions(nullptr); }},
         {"ValidatePrintTicket without a ticket", [&] { return provider->ValidatePrintTicket(nullptr); }}});
    bench.Require(FormatDocument(ticket.Get()) == text, "a refused call changes the ticket");
    bench.Require(devmode.GetBytesView() == bytes, "a refused call changes the DEVMODE");
}

// What is in the private argument beside the DEVMODE is the core driver's, in whatever shape.
void TakesAnyPrivateArgument(TestBench& bench) {
    const auto session = bench.OpenSession();
    IPrintOemPrintTicketProvider* const provider = session->GetProvider();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    std::vector<BYTE> own(devmode.GetExtraBytes());
    const struct {
        const char* what;
        ULONG bytes;
        PVOID memory;
    } privates[] = {{"no private part", 0, nullptr},
                    {"a private part of no bytes", 0, own.data()},
                    {"a private part of its own", static_cast<ULONG>(own.size()), own.data()},
                    {"a private part that is the DEVMODE's", devmode.GetExtraBytes(),
                     reinterpret_cast<BYTE*>(devmode.Get()) + devmode.GetPublicBytes()}};
    for (const auto& part : privates) {
        const auto ticket = bench.MakeCoreTicket(*session, devmode);
        bench.Step(std::string("the conversions with ") + part.what);
        bench.RequireResult("ConvertDevModeToPrintTicket",
                            provider->ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), part.bytes,
                                                                  part.memory, ticket.Get()),
                            S_OK);
        bench.RequireResult("ConvertPrintTicketToDevMode",
                            provider->ConvertPrintTicketToDevMode(ticket.Get(), devmode.GetBytes(), devmode.Get(),
                                                                  part.bytes, part.memory),
                            S_OK);
    }
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Contract, "null-out-arguments", "each out argument missing in turn, which the provider then survives",
      RefusesNullOutArguments}},
    {{CheckGroup::Contract, "missing-input",
      "documents and DEVMODEs that are missing or claim too much are refused and nothing is changed",
      RefusesMissingInput}},
    {{CheckGroup::Contract, "private-argument",
      "the private part of a DEVMODE handed in, as none, as a copy, as its own", TakesAnyPrivateArgument}},
};

}  // namespace
