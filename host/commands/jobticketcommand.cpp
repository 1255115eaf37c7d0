// jobticket
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
    context.UseStore();
    const PrintSession session(CXString::FromUtf8(options.printer));
    const PrintSession::Document ticket = session.MakeTicket(devmode);
    const std::optional<std::string> text = ReadJobTicket(ticket.Get());
    if (!text)
        throw OperationError(
            "there is no job ticket: printers of family 8434 have them, for a DEVMODE with the "
            "setting 286=true");
    context.out << *text;
}

}  // namespace

void AddJobTicketCommand(CLI::App& app, HostContext& context) {
    const auto options = std::make_shared<JobTicketOptions>();
    CLI::App* command = app.add_subcommand("jobticket", "Prints the MVJT job ticket of a DEVMODE, as UTF-8");
    command->add_option("--printer", options->printer, "The printer's name")->required();
    command->add_option("--devmode", options->devmode, "The DEVMODE's file")->required();
    context.SetAction(*command, options, RunJobTicket);
}
