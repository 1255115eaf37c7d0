// registry export, registry import
#include <memory>

#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/registryexchange.h>
#include "commands.h"

namespace {

void RunExport(HostContext& context, const std::string& file) {
    context.UseStore();
    WriteWholeFile(PathFromUtf8(file), FormatRegFile(ExportRegistry()));
}

void RunImport(HostContext& context, const std::string& file) {
    const RegFile contents = ParseRegFile(ReadWholeFile(PathFromUtf8(file)));
    context.UseStore();
    ImportRegistry(contents);
}

}  // namespace

void AddRegistryCommands(CLI::App& app, HostContext& context) {
    CLI::App* registry = app.add_subcommand("registry", "The store as a Windows .reg file");
    registry->require_subcommand(1);
    const auto file = std::make_shared<std::string>();

    CLI::App* exportCommand = registry->add_subcommand("export", "Writes the whole store to a .reg file");
    exportCommand->add_option("FILE", *file, "The file to write")->required();
    context.SetAction(*exportCommand, file, RunExport);

    CLI::App* importCommand =
        registry->add_subcommand("import", "Adds the keys and values of a .reg file to the store");
    importCommand->add_option("FILE", *file, "The file to read: version 5.00, UTF-16 or UTF-8")->required();
    context.SetAction(*importCommand, file, RunImport);
}
