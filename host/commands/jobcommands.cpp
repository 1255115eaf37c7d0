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
    context.UseStore();
    EndPrintedJob(InstalledPrinter(ArgumentToWide(options.printer)), devmode);
}

void RunPreferences(HostContext& context, const JobOptions& options) {
    context.UseStore();
    for (const auto& [feature, value] : ReadJobPreferences(InstalledPrinter(ArgumentToWide(options.printer))))
        context.out << NameFeature(feature) << ": " << value << '\n';
}

}  // namespace

void AddJobCommands(CLI::App& app, HostContext& context) {
    CLI::App* job = app.add_subcommand("job", "What the driver remembers from one job for the next");
    job->require_subcommand(1);
    const auto options = std::make_shared<JobOptions>();
    const auto add = [&](const char* name, const char* description, void (*run)(HostContext&, const JobOptions&)) {
        CLI::App* command = job->add_subcommand(name, description);
        command->add_option("--printer", options->printer, "The printer's name")->required();
        context.SetAction(*command, options, run);
        return command;
    };
    add("printed", "Plays the end of a printed job: the user's preferences in it are saved", RunPrinted)
        ->add_option("--devmode", options->devmode, "The job's DEVMODE, a file")
        ->required();
    add("preferences", "Prints the user's preferences that the next job starts with", RunPreferences);
}
