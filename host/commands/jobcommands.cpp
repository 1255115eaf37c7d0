// job printed, job preferences
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/printedjob.h>
#include <subsystem/settingnames.h>

#include <memory>
#include <ostream>

#include "commands.h"

namespace {

struct JobOptions {
    std::string printer, devmode;
};

void RunPrinted(HostContext& context, const JobOptions& options) {
    DevmodeBuffer devmode = ReadDevmodeInput(PathFromUtf8(options.devmode), options.printer);
    context.ChangeStore();
    EndPrintedJob(InstalledPrinter(ArgumentToWide(options.printer)), devmode);
}

void RunPreferences(HostContext& context, const JobOptions& options) {
    context.UseStore(StoreAccess::ReadMostly);
    for (const auto& [feature, value] : ReadJobPreferences(InstalledPrinter(ArgumentToWide(options.printer))))
        context.out << NameFeature(feature) << ": " << value << '\n';
}

}  // namespace

void AddJobCommands(Command app, HostContext& context) {
    const Command job = app.AddGroup("job", "What the driver remembers from one job for the next");
    const auto options = std::make_shared<JobOptions>();
    const auto add = [&](const char* name, const char* description, void (*run)(HostContext&, const JobOptions&)) {
        const Command command = job.AddCommand(name, description, [&context, options, run] { run(context, *options); });
        command.AddOption("--printer", options->printer, "The printer's name").Takes(kPrinterValue).Required();
        return command;
    };
    add("printed", "Plays the end of a printed job: the user's preferences in it are saved", RunPrinted)
        .AddOption("--devmode", options->devmode, "The job's DEVMODE, a file")
        .Required();
    add("preferences", "Prints the user's preferences that the next job starts with", RunPreferences);
}
