// ticket, apply, capabilities, validate
#include <memory>
#include <ostream>

#include <subsystem/documentkind.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hresultnames.h>
#include <subsystem/printsession.h>
#include <subsystem/xmlfile.h>
#include "commands.h"

namespace {

using Document = PrintSession::Document;

// Options of the four commands; each declares those that it takes. Empty: not given.
struct ConversionOptions {
    std::string printer, devmode, ticket, in, out;
};
using SharedOptions = std::shared_ptr<ConversionOptions>;

// Null when no file is named.
Document ReadDocument(const std::string& file, WideStringView rootName) {
    if (file.empty()) return nullptr;
    Document document = ReadDocumentFile(PathFromUtf8(file));
    RequireRoot(document.Get(), rootName, file);
    return document;
}

PrintSession OpenSession(HostContext& context, const ConversionOptions& options) {
    context.UseStore();
    return PrintSession(CXString::FromUtf8(options.printer));
}

void WriteDocument(HostContext& context, const ConversionOptions& options, IXMLDOMDocument2* document) {
    if (options.out.empty()) {
        context.out << FormatDocument(document);
    } else {
        WriteDocumentFile(PathFromUtf8(options.out), document);
    }
}

void RunTicket(HostContext& context, const ConversionOptions& options) {
    DevmodeBuffer devmode = ReadDevmodeFile(PathFromUtf8(options.devmode));
    Document document = ReadDocument(options.in, kTicketRoot);
    const PrintSession session = OpenSession(context, options);
    document = session.MakeTicket(devmode, document);
    WriteDocument(context, options, document.Get());
}

void RunApply(HostContext& context, const ConversionOptions& options) {
    DevmodeBuffer devmode = ReadDevmodeFile(PathFromUtf8(options.devmode));
    const Document ticket = ReadDocument(options.ticket, kTicketRoot);
    const PrintSession session = OpenSession(context, options);
    session.ApplyTicket(ticket.Get(), devmode);
    if (options.out.empty()) {
        context.out << devmode.GetBytesView();
    } else {
        WriteWholeFile(PathFromUtf8(options.out), devmode.GetBytesView());
    }
}

void RunCapabilities(HostContext& context, const ConversionOptions& options) {
    const Document ticket = ReadDocument(options.ticket, kTicketRoot);
    Document capabilities = ReadDocument(options.in, kCapabilitiesRoot);
    const PrintSession session = OpenSession(context, options);
    capabilities = session.MakeCapabilities(ticket.Get(), capabilities);
    WriteDocument(context, options, capabilities.Get());
}

void RunValidate(HostContext& context, const ConversionOptions& options) {
    const Document ticket = ReadDocument(options.ticket, kTicketRoot);
    const PrintSession session = OpenSession(context, options);
    const HRESULT expanded = session.CallExpand(ticket.Get());
    context.out << "ExpandIntentOptions: " << DescribeHresult(expanded) << '\n';
    const HRESULT validated = session.CallValidate(ticket.Get());
    context.out << "ValidatePrintTicket: " << DescribeHresult(validated) << '\n';
    if (FAILED(expanded)) throw OperationError("ExpandIntentOptions", expanded);
    if (FAILED(validated)) throw OperationError("ValidatePrintTicket", validated);
    if (!options.out.empty()) WriteDocumentFile(PathFromUtf8(options.out), ticket.Get());
}

CLI::App* AddConversion(CLI::App& app, HostContext& context, const SharedOptions& options, const char* name,
                        const char* description, void (*run)(HostContext&, const ConversionOptions&)) {
    CLI::App* command = app.add_subcommand(name, description);
    command->add_option("--printer", options->printer, "The printer's name")->required();
    command->callback(
        [&context, options, run] { context.action = [&context, options, run] { run(context, *options); }; });
    return command;
}

constexpr const char* kOutDocument = "The document's file (default: standard output)";

}  // namespace

void AddConversionCommands(CLI::App& app, HostContext& context) {
    const auto options = std::make_shared<ConversionOptions>();

    CLI::App* ticket = AddConversion(app, context, options, "ticket", "A DEVMODE becomes a PrintTicket", RunTicket);
    ticket->add_option("--devmode", options->devmode, "The DEVMODE's file")->required();
    ticket->add_option("--in", options->in, "The PrintTicket as the core driver left it (default: mvpthost writes one)")
        ->check(NotEmpty());
    ticket->add_option("-o,--out", options->out, kOutDocument)->check(NotEmpty());

    CLI::App* apply = AddConversion(app, context, options, "apply", "A PrintTicket is applied to a DEVMODE", RunApply);
    apply->add_option("--ticket", options->ticket, "The PrintTicket's file")->required()->check(NotEmpty());
    apply->add_option("--devmode", options->devmode, "The file of the DEVMODE to start from")->required();
    apply->add_option("-o,--out", options->out, "The new DEVMODE's file (default: standard output)")->check(NotEmpty());

    CLI::App* capabilities = AddConversion(app, context, options, "capabilities",
                                           "What the printer can do, as PrintCapabilities", RunCapabilities);
    capabilities->add_option("--ticket", options->ticket, "A PrintTicket that the capabilities are asked for")
        ->check(NotEmpty());
    capabilities
        ->add_option("--in", options->in,
                     "The PrintCapabilities as the core driver left it (default: mvpthost writes one)")
        ->check(NotEmpty());
    capabilities->add_option("-o,--out", options->out, kOutDocument)->check(NotEmpty());

    CLI::App* validate = AddConversion(app, context, options, "validate", "A PrintTicket is checked", RunValidate);
    validate->add_option("--ticket", options->ticket, "The PrintTicket's file")->required()->check(NotEmpty());
    validate->add_option("-o,--out", options->out, "File for the document as it then is")->check(NotEmpty());
}
