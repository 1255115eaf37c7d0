// The host's commands: each function adds a group of them to the command line.
#pragma once

#include <store.h>

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include <subsystem/hosterror.h>
#include "commandline.h"

// What a command works with.
class HostContext {
public:
    HostContext(std::ostream& output, std::ostream& errors) : out(output), err(errors) {}
    ~HostContext();
    HostContext(const HostContext&) = delete;
    HostContext& operator=(const HostContext&) = delete;

    // Opens the store that the command line, the environment or the user's data folder names; closed with the context.
    // A command that only reads sees one state of it. Throws InputError when there is none or it cannot be opened; only
    // the user's own may be missing, and is empty then.
    void UseStore(StoreAccess access = StoreAccess::Read);
    // The same for a command whose changes are made together, when it has succeeded.
    void ChangeStore(StoreAccess access = StoreAccess::ReadMostly);
    void UseThrowawayStore();  // a store that ends with the context

    // Writes the file; output when no file or "-" is named. Throws what WriteWholeFile throws.
    void WriteFile(const std::string& file, std::string_view bytes) const;
    // Where a command prints that also writes the file: output, unless the file goes there.
    std::ostream& GetStreamBeside(const std::string& file) const;

    // The command has succeeded. Throws OperationError when its changes cannot be made; none is then.
    void Finish();

    std::ostream& out;
    std::ostream& err;
    std::string storeFolder;     // as given by --store; empty when it was not
    int exitStatus = kExitDone;  // of the command line, when nothing fails

private:
    void Open(const std::string& folder, StoreAccess access);
    void Begin();

    bool open_ = false;
    std::optional<StoreTransaction> transaction_;
};

// What all flags "--json" say; docs/json.md has the keys.
inline constexpr const char* kJson = "Print JSON";
inline constexpr const char* kJsonRows = "Print a JSON array";

void AddDemoCommand(Command app, HostContext& context);
void AddCheckCommand(Command app, HostContext& context);
void AddProductCommands(Command app, HostContext& context);
void AddProductCheckCommand(Command product, HostContext& context);  // under the command "product"
void AddProductNewCommand(Command product, HostContext& context);
void AddProductPackCommand(Command product, HostContext& context);
void AddProductShowCommand(Command product, HostContext& context);
void AddPrinterCommands(Command app, HostContext& context);
void AddPaperCommands(Command printer, HostContext& context);  // forms and custom sizes, under the command "printer"
void AddPaperLists(Command form, Command customSize, HostContext& context);  // their commands "list"
void AddCachesCommands(Command app, HostContext& context);
void AddDevmodeCommands(Command app, HostContext& context);
void AddConversionCommands(Command app, HostContext& context);
void AddConvertCommand(Command app, HostContext& context);
void AddExplainCommand(Command app, HostContext& context);
void AddJobCommands(Command app, HostContext& context);
void AddJobTicketCommand(Command app, HostContext& context);
void AddReportCommand(Command app, HostContext& context);
// What a shell and a reader of manuals are given: of all commands, those that are added later included.
void AddShellCommands(const CommandLine& commandLine, Command app, HostContext& context);
void AddRegistryCommands(Command app, HostContext& context);
void AddVerifyCommand(Command app, HostContext& context);
