// explain
#include <subsystem/documentkind.h>
#include <subsystem/explain/explain.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/inputs/ticketinput.h>
#include <subsystem/xmlfile.h>

#include <memory>
#include <ostream>

#include "commands.h"
#include "providerchoice.h"

namespace {

struct ExplainOptions {
    std::string printer, devmode, ticket, capabilities, in;
    bool json = false;
    ProviderChoice provider;
};

Explanation ExplainDevmodeFile(PrinterFacts& printer, const ExplainOptions& options) {
    const DevmodeBuffer devmode = ReadDevmodeInput(PathFromUtf8(options.devmode), options.printer);
    const PrintSession::Document coreTicket =
        options.in.empty() ? PrintSession::Document() : ReadTicketInput(PathFromUtf8(options.in));
    return ConvertAndExplain(printer, devmode, coreTicket).explanation;
}

Explanation ExplainTicketFile(PrinterFacts& printer, const ExplainOptions& options) {
    DevmodeBuffer devmode = options.devmode.empty() ? printer.MakeDefaultDevmode()
                                                    : ReadDevmodeInput(PathFromUtf8(options.devmode), options.printer);
    const PrintSession::Document ticket = ReadTicketInput(PathFromUtf8(options.ticket));
    return ApplyAndExplain(printer, ticket.Get(), devmode);
}

Explanation ExplainBothFiles(PrinterFacts& printer, const ExplainOptions& options) {
    const DevmodeBuffer devmode = ReadDevmodeInput(PathFromUtf8(options.devmode), options.printer);
    const PrintSession::Document ticket = ReadTicketInput(PathFromUtf8(options.ticket));
    printer.GetSession().DeclareNamespaces(ticket.Get());
    return ExplainAgreement(printer, devmode, SchemaSettings(ticket.Get()));
}

void RunExplain(HostContext& context, const ExplainOptions& options, bool ticketIsFirst) {
    if (options.devmode.empty() && options.ticket.empty())
        throw InputError("there is nothing to explain; give --devmode, --ticket or both");
    context.UseStore(StoreAccess::ReadMostly);
    const PrintSession session(CXString::FromUtf8(options.printer), MakeProviderSource(options.provider));
    PrinterFacts printer(session);
    if (!options.capabilities.empty()) {
        const PrintSession::Document capabilities = ReadDocumentFile(PathFromUtf8(options.capabilities));
        RequireRoot(capabilities.Get(), kCapabilitiesRoot, options.capabilities);
        printer.SetCapabilities(capabilities.Get());
    }
    Explanation rows = options.ticket.empty()                     ? ExplainDevmodeFile(printer, options)
                       : ticketIsFirst || options.devmode.empty() ? ExplainTicketFile(printer, options)
                                                                  : ExplainBothFiles(printer, options);
    SortByVerdict(rows);
    if (options.json) {
        context.out << FormatAsJson(rows) << '\n';
    } else {
        PrintExplanation(rows, context.out);
    }
}

}  // namespace

void AddExplainCommand(Command app, HostContext& context) {
    const auto options = std::make_shared<ExplainOptions>();
    const Command command = app.AddCommand(
        "explain",
        "Why a setting changed. --devmode alone: what becomes of the DEVMODE in a ticket. --ticket alone, or before "
        "--devmode: what becomes of the ticket, applied to that DEVMODE or the printer's own. --devmode before "
        "--ticket: whether they agree.");
    command.AddOption("--printer", options->printer, "The printer's name").Takes(kPrinterValue).Required();
    const CommandOption devmode =
        command
            .AddOption("--devmode", options->devmode,
                       "A DEVMODE: raw, as hex or Base64 text, in a .reg file, or inside a ticket's driver data")
            .NotEmpty();
    const CommandOption ticket =
        command.AddOption("--ticket", options->ticket, "A PrintTicket, alone or in an XPS file").NotEmpty();
    command
        .AddOption("--capabilities", options->capabilities,
                   "What the printer offers, as PrintCapabilities (default: what it tells now)")
        .NotEmpty();
    command.AddOption("--in", options->in, "With --devmode alone: the PrintTicket as the core driver left it")
        .NotEmpty()
        .Excludes(ticket);
    AddProviderOptions(command, options->provider);
    command.AddFlag("--json", options->json, "Print an array of rows: setting, before, after, verdict, reason");
    // Of the two, the one that stands first on the command line is what is explained.
    command.SetAction([&context, options, command, ticket, devmode] {
        RunExplain(context, *options, command.IsFirst(ticket, devmode));
    });
}
