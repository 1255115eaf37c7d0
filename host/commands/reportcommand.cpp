// report: a page that shows what a printer offers, and what becomes of a job.
#include <convert/throwawayprinter.h>
#include <report/report.h>

#include <memory>

#include <subsystem/explain/explain.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/inputs/ticketinput.h>
#include <subsystem/productfiles.h>
#include "commands.h"
#include "missingcaches.h"

namespace {

struct ReportOptions {
    std::string printer, product, devmode, ticket, out;
};

// As explain says it: a ticket is applied to the DEVMODE or the printer's own; a DEVMODE alone becomes a ticket.
std::optional<ReportedJob> ExplainJob(PrinterFacts& printer, const ReportOptions& options) {
    if (options.devmode.empty() && options.ticket.empty()) return std::nullopt;
    DevmodeBuffer devmode = options.devmode.empty() ? printer.MakeDefaultDevmode()
                                                    : ReadDevmodeInput(PathFromUtf8(options.devmode), options.printer);
    Explanation rows = options.ticket.empty()
                           ? ConvertAndExplain(printer, devmode, nullptr).explanation
                           : ApplyAndExplain(printer, ReadTicketInput(PathFromUtf8(options.ticket)).Get(), devmode);
    return ReportedJob{std::move(rows), devmode.CopyPublicPart()};
}

void RunReport(HostContext& context, const ReportOptions& options) {
    if (options.printer.empty() == options.product.empty()) throw InputError("give either --printer NAME or --product");
    CXString printer = CXString::FromUtf8(options.printer);
    if (options.product.empty()) {
        context.UseStore(StoreAccess::ReadMostly);
    } else {
        context.UseThrowawayStore();
        printer = InstallThrowawayPrinter(FindProductFile(options.product));
    }
    const PrintSession session(printer);
    const InstalledPrinter& installed = session.GetPrinter();
    if (const std::string missing = DescribeMissingCaches(installed); !missing.empty()) context.err << missing << '\n';
    PrinterFacts facts(session);
    const std::string product = NameProduct(installed.GetProduct()->file);
    context.WriteFile(options.out, MakeReport(facts, printer.ToUtf8(), product, ExplainJob(facts, options)));
}

}  // namespace

void AddReportCommand(Command app, HostContext& context) {
    const auto options = std::make_shared<ReportOptions>();
    const Command report = app.AddCommand(
        "report", "Shows what a printer or product offers, and what becomes of a job, as a page for a browser",
        [&context, options] { RunReport(context, *options); });
    const CommandOption printer =
        report.AddOption("--printer", options->printer, "The printer's name").Takes(kPrinterValue).NotEmpty();
    report
        .AddOption("--product", options->product,
                   "The product's name ('product list') or its file, in place of a printer")
        .Takes(kProductValue)
        .NotEmpty()
        .Excludes(printer);
    report.AddOption("--devmode", options->devmode, "A job's DEVMODE, in any form: what becomes of it in a ticket")
        .NotEmpty();
    report
        .AddOption("--ticket", options->ticket,
                   "A job's PrintTicket, alone or in an XPS file: what becomes of it, applied to the DEVMODE or the "
                   "printer's own")
        .NotEmpty();
    report.AddOption("-o,--out", options->out, "The page's file (default: standard output)").NotEmpty();
}
