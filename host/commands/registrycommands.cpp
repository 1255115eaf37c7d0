// registry export, registry import
#include <memory>

#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/registryexchange.h>
#include "commands.h"

namespace {

void RunExport(HostContext& context, const std::string& file) {
    context.UseStore();
    context.WriteFile(file, FormatRegFile(ExportRegistry()));
}

void RunImport(HostContext& context, const std::string& file) {
    const RegFile contents = ParseRegFile(ReadWholeFile(PathFromUtf8(file), kMaximumRegistryBytes));
    context.ChangeStore(StoreAccess::Write);
    ImportRegistry(contents);
}

}  // namespace

void AddRegistryCommands(Command app, HostContext& context) {
    const Command registry = app.AddGroup("registry", "The store as a Windows .reg file");
    const auto file = std::make_shared<std::string>();
    registry
        .AddCommand("export", "Writes the whole store to a .reg file", [&context, file] { RunExport(context, *file); })
        .AddOption("FILE", *file, "The file to write")
        .Required();
    registry
        .AddCommand("import", "Adds the keys and values of a .reg file to the store",
                    [&context, file] { RunImport(context, *file); })
        .AddOption("FILE", *file, "The file to read: version 5.00, UTF-16 or UTF-8")
        .Required();
}
