// devmode new, devmode show
#include <memory>
#include <ostream>

#include <subsystem/attributesettings.h>
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
    context.WriteFile(options.file, devmode.GetBytesView());
}

void RunShow(HostContext& context, const DevmodeOptions& options) {
    DevmodeBuffer devmode = ReadDevmodeInput(PathFromUtf8(options.file));
    if (options.json) {
        context.out << FormatDevmodeAsJson(devmode) << '\n';
    } else {
        PrintDevmodeDescription(devmode, context.out);
    }
}

}  // namespace

void AddDevmodeCommands(Command app, HostContext& context) {
    const Command devmode = app.AddGroup("devmode", "DEVMODE files");
    const auto options = std::make_shared<DevmodeOptions>();

    const Command make = devmode.AddCommand("new", "Writes a DEVMODE as the driver would make it",
                                            [&context, options] { RunNew(context, *options); });
    make.AddOption("--printer", options->printer, "The printer's name").Takes(kPrinterValue).Required();
    make.AddOption("-o,--out", options->file, "The file to write").Required();
    make.AddOption("--set", options->fields, "FIELD=VALUE: a member of DEVMODEW, such as dmCopies=7")
        .Takes("FIELD=VALUE");
    const std::string attribute = "NAME=VALUE or PATH=VALUE: a driver setting, such as " + GetAttributeExamples();
    make.AddOption("--attribute", options->attributes, attribute.c_str()).Takes(kSettingValue);
    make.AddFlag("--caches", options->caches, "Put the printer's capability caches into the private block");

    const Command show = devmode.AddCommand("show", "Prints what a DEVMODE file holds",
                                            [&context, options] { RunShow(context, *options); });
    show.AddOption("FILE", options->file, "The DEVMODE's file").Required();
    show.AddFlag("--json", options->json, "Print JSON");
}
