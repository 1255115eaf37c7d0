// The documents of the checks of documents.
#include "documentset.h"

#include <subsystem/hresultnames.h>
#include <subsystem/xmlfile.h>

DocumentSet::DocumentSet(TestBench& bench)
    : bench_(bench),
      session_(bench.OpenSession()),
      coreTicket_(WriteCoreTicket({})),
      coreCapabilities_(FormatDocument(bench.MakeCoreCapabilities(*session_).Get())),
      settings_{{},
                {{{"dmOrientation", "2"}, {"dmCopies", "7"}}, {}},
                {{{"dmPaperSize", "9"}, {"dmDuplex", "2"}}, {}},
                {{{"dmPaperSize", "256"}, {"dmPaperWidth", "1000"}, {"dmPaperLength", "1500"}}, {}},
                {{{"dmICMMethod", "2"}, {"dmICMIntent", "1"}, {"dmColor", "1"}, {"dmCollate", "1"}}, {}}} {}

std::string DocumentSet::WriteCoreTicket(const DevmodeSettings& settings) {
    return FormatDocument(bench_.MakeCoreTicket(*session_, bench_.MakeDevmode(*session_, settings)).Get());
}

TestBench::Document DocumentSet::Read(const std::string& text) {
    bench_.SetInput("xml", text);
    return ReadDocumentBytes(text, "the document");
}

void DocumentSet::Require(const char* call, HRESULT result) {
    bench_.Require(SUCCEEDED(result), std::string(call) + " answers " + DescribeHresult(result));
}

std::string DocumentSet::MakeTicket(const std::string& coreTicket, const DevmodeSettings& settings) {
    const auto ticket = Read(coreTicket);
    DevmodeBuffer devmode = bench_.MakeDevmode(*session_, settings);
    bench_.Step("ConvertDevModeToPrintTicket");
    Require("ConvertDevModeToPrintTicket", session_->CallTicket(devmode, ticket.Get()));
    return FormatDocument(ticket.Get());
}

std::string DocumentSet::ApplyTicket(const std::string& text) {
    const auto ticket = Read(text);
    DevmodeBuffer devmode = bench_.MakeDevmode(*session_);
    bench_.Step("ConvertPrintTicketToDevMode");
    Require("ConvertPrintTicketToDevMode", session_->CallApply(ticket.Get(), devmode));
    return std::string(devmode.GetBytesView());
}

std::string DocumentSet::MakeCapabilities(const std::string& coreCapabilities, const std::string& ticketText) {
    const auto ticket = ticketText.empty() ? nullptr : Read(ticketText);
    const auto capabilities = Read(coreCapabilities);
    bench_.Step(ticket ? "CompletePrintCapabilities for a ticket" : "CompletePrintCapabilities");
    Require("CompletePrintCapabilities", session_->CallCapabilities(ticket.Get(), capabilities.Get()));
    return FormatDocument(capabilities.Get());
}

std::string DocumentSet::Expand(const std::string& text) {
    const auto ticket = Read(text);
    bench_.Step("ExpandIntentOptions");
    Require("ExpandIntentOptions", session_->CallExpand(ticket.Get()));
    return FormatDocument(ticket.Get());
}

std::string DocumentSet::Validate(const std::string& text) {
    const auto ticket = Read(text);
    bench_.Step("ValidatePrintTicket");
    Require("ValidatePrintTicket", session_->CallValidate(ticket.Get()));
    return FormatDocument(ticket.Get());
}

std::vector<DocumentOperation> DocumentSet::ListOperations() {
    return {{"ConvertDevModeToPrintTicket", false, [this](const std::string& text) { return MakeTicket(text); }},
            {"CompletePrintCapabilities", true, [this](const std::string& text) { return MakeCapabilities(text); }},
            {"ExpandIntentOptions", false, [this](const std::string& text) { return Expand(text); }},
            {"ValidatePrintTicket", false, [this](const std::string& text) { return Validate(text); }}};
}
