// devmode new, devmode show
#include <memory>
#include <ostream>

#include <subsystem/devmodemaker.h>
#include <subsystem/devmodereport.h>
#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/inputs/devmodeinput.h>
#include <subsystem/installedprinter.h>
#include "commands.h"

namespace {

struct DevmodeOptions {
    std::string printer, file;
    std::vector<std::string> fields, attributes;
    bool caches = false, json = false;
};

std::vector<std::pair<std::string, std::string>> SplitSettings(const std::vector<std::string>& texts) {
    std::vector<std::pair<std::string, std::string>> settings;
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0)
            throw InputError("'" + text + "' is no setting; write NAME=VALUE");
        settings.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    }
    return settings;
}

void RunNew(HostContext& context, const DevmodeOptions& options) {
    const DevmodeSettings settings{SplitSettings(options.fields), SplitSettings(options.attributes)};
    context.UseStore();
    const InstalledPrinter printer(CXString::FromUtf8(options.printer));
    DevmodeBuffer devmode = MakeDevmode(*printer.GetProduct(), printer.GetName().AsWideString(), settings);
    if (options.caches) ExportCapabilityCaches(printer.GetHandle(), devmode);
    WriteWholeFile(PathFromUtf8(options.file), devmode.GetBytesView());
}

void RunShow(HostContext& context, const DevmodeOptions& options) {
    DevmodeBuffer devmode = ReadDevmodeInput(PathFromUtf8(options.file));
    const nlohmann::ordered_json description = DescribeDevmode(devmode);
    if (options.json) {
        context.out << description.dump(2) << '\n';
    } else {
        PrintDevmodeDescription(description, context.out);
    }
}

}  // namespace

void AddDevmodeCommands(CLI::App& app, HostContext& context) {
    CLI::App* devmode = app.add_subcommand("devmode", "DEVMODE files");
    devmode->require_subcommand(1);
    const auto options = std::make_shared<DevmodeOptions>();

    CLI::App* make = devmode->add_subcommand("new", "Writes a DEVMODE as the driver would make it");
    make->add_option("--printer", options->printer, "The printer's name")->required();
    make->add_option("-o,--out", options->file, "The file to write")->required();
    make->add_option("--set", options->fields, "FIELD=VALUE: a member of DEVMODEW, such as dmCopies=7")
        ->allow_extra_args(false);
    make->add_option("--attribute", options->attributes,
                     "NAME=VALUE or PATH=VALUE: a driver setting, such as Duplex=5421 or 477/210/175=6801")
        ->allow_extra_args(false);
    make->add_flag("--caches", options->caches, "Put the printer's capability caches into the private block");
    context.SetAction(*make, options, RunNew);

    CLI::App* show = devmode->add_subcommand("show", "Prints what a DEVMODE file holds");
    show->add_option("FILE", options->file, "The DEVMODE's file")->required();
    show->add_flag("--json", options->json, "Print JSON");
    context.SetAction(*show, options, RunShow);
}
