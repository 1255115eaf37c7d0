// ticket, apply, capabilities, validate
#include <mvutil/printer.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <ostream>

#include <subsystem/documentkind.h>
#include <subsystem/explain/explain.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hresultnames.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/inputs/ticketinput.h>
#include <subsystem/jsontext.h>
#include <subsystem/printsession.h>
#include <subsystem/schemasettings.h>
#include <subsystem/xmlfile.h>
#include "bulkconversioncommands.h"
#include "commands.h"
#include "missingcaches.h"
#include "providerchoice.h"

namespace {

using Document = PrintSession::Document;
using Json = nlohmann::ordered_json;

constexpr std::size_t kMostLosses = 50;  // that are reported one by one

// Options of the four commands; each declares those that it takes. Empty: not given.
struct ConversionOptions {
    std::string printer, devmode, ticket, in, out;
    bool strict = false, all = false, json = false;
    ProviderChoice provider;
};
using SharedOptions = std::shared_ptr<ConversionOptions>;

// Each is null when no file is named.
Document ReadCapabilities(const std::string& file) {
    if (file.empty()) return nullptr;
    Document document = ReadDocumentFile(PathFromUtf8(file));
    RequireRoot(document.Get(), kCapabilitiesRoot, file);
    return document;
}

Document ReadTicket(const std::string& file) { return file.empty() ? nullptr : ReadTicketInput(PathFromUtf8(file)); }

DevmodeBuffer ReadDevmode(const ConversionOptions& options) {
    return ReadDevmodeInput(PathFromUtf8(options.devmode), options.printer);
}

PrinterRow FindPrinter(const CXString& name) {
    const UniquePrinter printer = OpenInstalledPrinter(name);
    return {name.AsWideString(), Printer(printer.Get()).GetPrinterPort().AsWideString(), {}};
}

PrintSession OpenSession(HostContext& context, const ConversionOptions& options) {
    context.UseStore(StoreAccess::ReadMostly);
    const CXString name = CXString::FromUtf8(options.printer);
    if (const std::string missing = DescribeMissingCaches(FindPrinter(name)); !missing.empty())
        context.err << missing << '\n';
    return PrintSession(name, MakeProviderSource(options.provider));
}

// Says on standard error what is lost and what is ignored; under --strict that fails before anything is written.
void ReportLosses(HostContext& context, const ConversionOptions& options, const Explanation& explanation) {
    const std::vector<std::string> losses = ListLosses(explanation);
    for (std::size_t index = 0; index < std::min(losses.size(), kMostLosses); ++index)
        context.err << losses[index] << '\n';
    if (losses.size() > kMostLosses)
        context.err << losses.size() - kMostLosses << " more are lost or ignored; 'explain' lists them\n";
    if (!options.strict || losses.empty()) return;
    throw OperationError(std::to_string(losses.size()) +
                         " settings are lost or ignored, and --strict was given; nothing was written");
}

// For all printers, one document each, or for one.
bool IsForAll(const ConversionOptions& options) {
    if (options.all != options.printer.empty()) throw InputError("give either --printer NAME or --all-printers");
    if (!options.all) return false;
    if (options.out.empty()) throw InputError("--all-printers writes a file for each; name a folder with -o");
    if (!options.in.empty() || !options.ticket.empty())
        throw InputError("--in and --ticket are documents of one printer; leave them out with --all-printers");
    return true;
}

void RunTicket(HostContext& context, const ConversionOptions& options) {
    if (IsForAll(options))
        return MakeAllTickets(context,
                              {options.out, options.devmode, options.strict, MakeProviderSource(options.provider)});
    if (options.devmode.empty()) throw InputError("name the DEVMODE's file with --devmode");
    const DevmodeBuffer devmode = ReadDevmode(options);
    const Document coreTicket = ReadTicket(options.in);
    const PrintSession session = OpenSession(context, options);
    PrinterFacts printer(session);
    const ExplainedTicket result = ConvertAndExplain(printer, devmode, coreTicket);
    ReportLosses(context, options, result.explanation);
    context.WriteFile(options.out, FormatDocument(result.ticket.Get()));
}

void RunApply(HostContext& context, const ConversionOptions& options) {
    DevmodeBuffer devmode = ReadDevmode(options);
    const Document ticket = ReadTicket(options.ticket);
    const PrintSession session = OpenSession(context, options);
    PrinterFacts printer(session);
    ReportLosses(context, options, ApplyAndExplain(printer, ticket.Get(), devmode));
    context.WriteFile(options.out, devmode.GetBytesView());
}

Json ToJson(const SchemaName& name) { return {{"name", name.text}, {"namespace", name.uri}}; }

// Properties apart, which programs find nothing in.
std::string FormatOffersAsJson(const SchemaSettings& offers) {
    Json rows = Json::array();
    for (const SchemaSetting& setting : offers.GetAll()) {
        if (setting.kind == SchemaSetting::Kind::Property) continue;
        const bool isFeature = setting.kind == SchemaSetting::Kind::Feature;
        Json row = ToJson(setting.name);
        row["kind"] = isFeature ? "feature" : "parameter";
        if (!setting.parents.empty()) row["parents"] = setting.parents;
        if (isFeature) row["options"] = Json::array();
        for (const SchemaOption& option : setting.options) {
            Json& shown = row["options"].emplace_back(ToJson(option.name));
            for (const auto& [name, value] : option.scores) shown["scores"][name] = value;
        }
        rows.push_back(std::move(row));
    }
    return FormatJson(rows) + '\n';
}

void RunCapabilities(HostContext& context, const ConversionOptions& options) {
    if (options.json && options.all) throw InputError("--json goes with one printer; leave it out with --all-printers");
    if (IsForAll(options))
        return MakeAllCapabilities(context, {options.out, {}, false, MakeProviderSource(options.provider)});
    const Document ticket = ReadTicket(options.ticket);
    Document capabilities = ReadCapabilities(options.in);
    context.UseStore(StoreAccess::ReadMostly);
    const CXString name = CXString::FromUtf8(options.printer);
    MakeUpForMissingCaches(context, {FindPrinter(name)});
    const PrintSession session(name, MakeProviderSource(options.provider));
    capabilities = session.MakeCapabilities(ticket.Get(), capabilities);
    context.WriteFile(options.out, options.json ? FormatOffersAsJson(SchemaSettings(capabilities.Get()))
                                                : FormatDocument(capabilities.Get()));
}

void RunValidate(HostContext& context, const ConversionOptions& options) {
    const Document ticket = ReadTicket(options.ticket);
    const PrintSession session = OpenSession(context, options);
    const HRESULT expanded = session.CallExpand(ticket.Get());
    std::ostream& out = context.GetStreamBeside(options.out);
    const HRESULT validated = session.CallValidate(ticket.Get());
    const std::string expansion = DescribeHresult(expanded), validation = DescribeHresult(validated);
    if (options.json) {
        out << FormatJson({{"ExpandIntentOptions", expansion}, {"ValidatePrintTicket", validation}}) << '\n';
    } else {
        out << "ExpandIntentOptions: " << expansion << "\nValidatePrintTicket: " << validation << '\n';
    }
    if (FAILED(expanded)) throw OperationError("ExpandIntentOptions", expanded);
    if (FAILED(validated)) throw OperationError("ValidatePrintTicket", validated);
    if (!options.out.empty()) context.WriteFile(options.out, FormatDocument(ticket.Get()));
}

Command AddConversion(Command app, HostContext& context, const SharedOptions& options, const char* name,
                      const char* description, void (*run)(HostContext&, const ConversionOptions&)) {
    const Command command = app.AddCommand(name, description, [&context, options, run] { run(context, *options); });
    AddProviderOptions(command, options->provider);
    return command;
}

constexpr const char* kPrinter = "The printer's name";

void AddPrinterOrAll(const Command& command, const SharedOptions& options) {
    command.AddOption("--printer", options->printer, kPrinter).Takes(kPrinterValue).NotEmpty();
    command.AddFlag("--all-printers", options->all, "All printers, with a file for each in the folder that -o names");
}

constexpr const char* kOutDocument = "The document's file (default: standard output)";
constexpr const char* kStrict = "Fail, and write nothing, when a setting is lost or ignored";

}  // namespace

void AddConversionCommands(Command app, HostContext& context) {
    const auto options = std::make_shared<ConversionOptions>();

    const Command ticket = AddConversion(app, context, options, "ticket", "A DEVMODE becomes a PrintTicket", RunTicket);
    AddPrinterOrAll(ticket, options);
    ticket
        .AddOption("--devmode", options->devmode,
                   "The DEVMODE's file (default with --all-printers: what each driver starts from)")
        .NotEmpty();
    ticket.AddOption("--in", options->in, "The PrintTicket as the core driver left it (default: mvpthost writes one)")
        .NotEmpty();
    ticket.AddOption("-o,--out", options->out, kOutDocument).NotEmpty();
    ticket.AddFlag("--strict", options->strict, kStrict);

    const Command apply =
        AddConversion(app, context, options, "apply", "A PrintTicket is applied to a DEVMODE", RunApply);
    apply.AddOption("--printer", options->printer, kPrinter).Takes(kPrinterValue).Required();
    apply.AddOption("--ticket", options->ticket, "The PrintTicket's file").Required().NotEmpty();
    apply.AddOption("--devmode", options->devmode, "The file of the DEVMODE to start from").Required();
    apply.AddOption("-o,--out", options->out, "The new DEVMODE's file (default: standard output)").NotEmpty();
    apply.AddFlag("--strict", options->strict, kStrict);

    const Command capabilities = AddConversion(app, context, options, "capabilities",
                                               "What the printer can do, as PrintCapabilities", RunCapabilities);
    AddPrinterOrAll(capabilities, options);
    capabilities.AddOption("--ticket", options->ticket, "A PrintTicket that the capabilities are asked for").NotEmpty();
    capabilities
        .AddOption("--in", options->in,
                   "The PrintCapabilities as the core driver left it (default: mvpthost writes one)")
        .NotEmpty();
    capabilities.AddOption("-o,--out", options->out, kOutDocument).NotEmpty();
    capabilities.AddFlag("--json", options->json,
                         "Write a JSON array in the document's place: its features with their options, its parameters");

    const Command validate = AddConversion(app, context, options, "validate", "A PrintTicket is checked", RunValidate);
    validate.AddOption("--printer", options->printer, kPrinter).Takes(kPrinterValue).Required();
    validate.AddOption("--ticket", options->ticket, "The PrintTicket's file").Required().NotEmpty();
    validate.AddOption("-o,--out", options->out, "File for the document as it then is").NotEmpty();
    validate.AddFlag("--json", options->json, kJson);
}
