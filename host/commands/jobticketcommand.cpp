// jobticket
#include <facts/features.h>
#include <facts/values.h>

#include <memory>
#include <ostream>

#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/jobticket.h>
#include <subsystem/printsession.h>
#include "commands.h"

namespace {

struct JobTicketOptions {
    std::string printer, devmode;
};

void RunJobTicket(HostContext& context, const JobTicketOptions& options) {
    DevmodeBuffer devmode = ReadDevmodeInput(PathFromUtf8(options.devmode), options.printer);
    context.UseStore(StoreAccess::ReadMostly);
    const PrintSession session(CXString::FromUtf8(options.printer));
    const PrintSession::Document ticket = session.MakeTicket(devmode);
    const std::optional<std::string> text = ReadJobTicket(ticket.Get());
    if (!text)
        throw OperationError(
            "there is no job ticket: printers of family " + std::to_string(facts::value::kControllerFamily8434) +
            " have them, for a DEVMODE with the setting " + std::to_string(facts::feature::kJobTickets) + "=true");
    context.out << *text;
}

}  // namespace

void AddJobTicketCommand(Command app, HostContext& context) {
    const auto options = std::make_shared<JobTicketOptions>();
    const Command command = app.AddCommand("jobticket", "Prints the MVJT job ticket of a DEVMODE, as UTF-8",
                                           [&context, options] { RunJobTicket(context, *options); });
    command.AddOption("--printer", options->printer, "The printer's name").Takes(kPrinterValue).Required();
    command.AddOption("--devmode", options->devmode, "The DEVMODE's file").Required();
}
