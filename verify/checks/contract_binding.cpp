// Binding: what BindPrinter answers, once, twice and too early.
#include <bstr.h>
#include <subsystem/hosttext.h>
#include <subsystem/hresultnames.h>
#include <subsystem/xmlfile.h>

#include <algorithm>

#include <verify/binding.h>
#include <verify/check.h>
#include <verify/testbench.h>

namespace {

BindAnswer Bind(TestBench& bench, IPrintOemPrintTicketProvider& provider, HANDLE printer, INT version = 1) {
    bench.Step("BindPrinter with version " + std::to_string(version));
    return BindProvider(provider, printer, version);
}

void AnswersOptions(TestBench& bench) {
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    const BindAnswer answer = Bind(bench, *bench.MakeProvider().Get(), printer.Get());
    bench.RequireResult("BindPrinter", answer.result, S_OK);
    bench.Require(answer.options == OEMPT_DEFAULT || answer.options == OEMPT_NOSNAPSHOT,
                  "BindPrinter leaves the options at " + std::to_string(static_cast<INT>(answer.options)) +
                      "; 0 and 1 are published");
}

void AnswersNamespaces(TestBench& bench) {
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    const auto provider = bench.MakeProvider();
    const BindAnswer answer = Bind(bench, *provider.Get(), printer.Get());
    bench.RequireResult("BindPrinter", answer.result, S_OK);
    bench.Require(answer.count >= 0, "BindPrinter reports " + std::to_string(answer.count) + " namespaces");
    bench.Require(answer.hasArray || answer.count == 0,
                  "BindPrinter reports " + std::to_string(answer.count) + " namespaces and hands out no array");
    for (const WideString& uri : answer.namespaces)
        bench.Require(!uri.empty(), "a namespace of those that BindPrinter hands out is missing");

    Bstr uri;
    bench.Step("QueryDeviceDefaultNamespace of a bound provider");
    const HRESULT queried = provider->QueryDeviceDefaultNamespace(uri.Put());
    if (queried == E_NOTIMPL) return;
    bench.RequireResult("QueryDeviceDefaultNamespace", queried, S_OK);
    bench.Require(!uri.View().empty(), "QueryDeviceDefaultNamespace succeeds without a namespace");
    bench.Require(std::find(answer.namespaces.begin(), answer.namespaces.end(), uri.View()) != answer.namespaces.end(),
                  "the default namespace " + ToUtf8(uri.View()) + " is none of those that BindPrinter hands out");
}

void RefusesOtherVersions(TestBench& bench) {
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    for (const INT version : {0, -1, 999, INT32_MAX}) {
        const auto provider = bench.MakeProvider();
        const BindAnswer answer = Bind(bench, *provider.Get(), printer.Get(), version);
        bench.Require(FAILED(answer.result), "BindPrinter takes version " + std::to_string(version) +
                                                 ", which GetSupportedVersions does not list");
        bench.Require(!answer.hasArray, "a refused BindPrinter hands out an array of namespaces");
        bench.RequireResult("BindPrinter after a refused version", Bind(bench, *provider.Get(), printer.Get()).result,
                            S_OK);
    }
}

// Whether the provider converts: after whatever came before.
void RequireWorks(TestBench& bench, IPrintOemPrintTicketProvider& provider, const char* when) {
    const auto session = bench.OpenSession();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const auto expected = session->MakeTicket(devmode);
    const auto ticket = bench.MakeCoreTicket(*session, devmode);
    bench.Step(std::string("ConvertDevModeToPrintTicket ") + when);
    const HRESULT result =
        provider.ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), 0, nullptr, ticket.Get());
    bench.Require(result == S_OK,
                  std::string("ConvertDevModeToPrintTicket ") + when + " answers " + DescribeHresult(result));
    bench.Require(FormatDocument(ticket.Get()) == FormatDocument(expected.Get()),
                  std::string("the ticket ") + when + " is another than a fresh provider's");
}

void SurvivesASecondBind(TestBench& bench) {
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    const auto provider = bench.MakeProvider();
    bench.RequireResult("BindPrinter", Bind(bench, *provider.Get(), printer.Get()).result, S_OK);
    Bind(bench, *provider.Get(), printer.Get());  // refused or repeated
    RequireWorks(bench, *provider.Get(), "after a second bind");
}

void SurvivesCallsBeforeTheBind(TestBench& bench) {
    const auto session = bench.OpenSession();
    DevmodeBuffer devmode = bench.MakeDevmode(*session);
    const auto ticket = bench.MakeCoreTicket(*session, devmode);
    const auto capabilities = bench.MakeCoreCapabilities(*session);
    const UniquePrinter printer = OpenInstalledPrinter(bench.GetPrinterName());
    const auto provider = bench.MakeProvider();
    Bstr uri;
    bench.Step("QueryDeviceDefaultNamespace before the bind");
    provider->QueryDeviceDefaultNamespace(uri.Put());
    bench.Step("ConvertDevModeToPrintTicket before the bind");
    provider->ConvertDevModeToPrintTicket(devmode.GetBytes(), devmode.Get(), 0, nullptr, ticket.Get());
    bench.Step("ConvertPrintTicketToDevMode before the bind");
    provider->ConvertPrintTicketToDevMode(ticket.Get(), devmode.GetBytes(), devmode.Get(), 0, nullptr);
    bench.Step("CompletePrintCapabilities before the bind");
    provider->CompletePrintCapabilities(nullptr, capabilities.Get());
    bench.Step("ExpandIntentOptions before the bind");
    provider->ExpandIntentOptions(ticket.Get());
    bench.Step("ValidatePrintTicket before the bind");
    provider->ValidatePrintTicket(ticket.Get());
    bench.RequireResult("BindPrinter after conversions", Bind(bench, *provider.Get(), printer.Get()).result, S_OK);
    RequireWorks(bench, *provider.Get(), "bound after conversions");
}

const CheckRegistration registrations[] = {
    {{CheckGroup::Contract, "bind-options", "BindPrinter answers one of the published options", AnswersOptions}},
    {{CheckGroup::Contract, "bind-namespaces",
      "the namespaces of BindPrinter are there, as many as it says, the default one among them", AnswersNamespaces}},
    {{CheckGroup::Contract, "bind-versions",
      "BindPrinter refuses versions that are not listed, and then still binds with one that is", RefusesOtherVersions}},
    {{CheckGroup::Contract, "bind-twice", "a second BindPrinter leaves a provider that converts", SurvivesASecondBind}},
    {{CheckGroup::Contract, "calls-before-bind", "every operation before BindPrinter, which then still binds",
      SurvivesCallsBeforeTheBind}},
};

}  // namespace
