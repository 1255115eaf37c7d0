// RunHost: one command line of the host, run to its end.
#include "runhost.h"

#include <products/reader/productdescription.h>
#include <store.h>

#include <filesystem>
#include <optional>
#include <ostream>

#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>
#include <subsystem/operationreports.h>
#include "commands/commands.h"

namespace {

constexpr const char* kProgram = "mvpthost";
constexpr const char* kStoreVariable = "MVPTHOST_STORE";

int Fail(std::ostream& err, const std::string& sentence, int exitStatus) {
    err << kProgram << ": " << sentence << '\n';
    return exitStatus;
}

void AddCommands(Command app, HostContext& context) {
    app.AddOption("--store", context.storeFolder,
                  "Folder that keeps printers and settings (default: $MVPTHOST_STORE, else a folder of the user's)")
        .NotEmpty();
    AddDemoCommand(app, context);
    AddProductCommands(app, context);
    AddPrinterCommands(app, context);
    AddCachesCommands(app, context);
    AddDevmodeCommands(app, context);
    AddConversionCommands(app, context);
    AddExplainCommand(app, context);
    AddJobCommands(app, context);
    AddJobTicketCommand(app, context);
    AddCheckCommand(app, context);
    AddRegistryCommands(app, context);
}

int RunCommandLine(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
                   const OperationReports& reports) {
    try {
        HostContext context(out, err);
        CommandLine commandLine(
            kProgram, "Does from the command line what the print subsystem does around the PrintTicket provider.");
        AddCommands(commandLine.GetRoot(), context);
        commandLine.Run(arguments, out);
        if (!out.flush()) return Fail(err, "the output cannot be written; check where it goes", kExitFailed);
        return context.exitStatus;
    } catch (const InputError& error) {
        return Fail(err, error.what(), error.GetExitStatus());
    } catch (const HostError& error) {
        const std::vector<std::string> lines = reports.Describe();
        const int status = Fail(err, std::string(error.what()) + (lines.empty() ? "" : "; its report tells why"),
                                error.GetExitStatus());
        for (const std::string& line : lines) err << "  reported: " << line << '\n';
        return status;
    } catch (const ProductError& error) {
        return Fail(err, std::string("a product file is bad: ") + error.what(), kExitUsage);
    } catch (const MorvaneException& exception) {
        return Fail(err, "the command failed with " + DescribeException(exception), kExitFailed);
    } catch (const std::bad_alloc&) {
        return Fail(err, "there is not enough memory; close other programs and try again", kExitFailed);
    } catch (const std::exception& exception) {
        return Fail(err, std::string("the command failed: ") + exception.what(), kExitFailed);
    }
}

}  // namespace

HostContext::~HostContext() {
    if (open_) CloseStore();
}

void HostContext::UseStore() {
    if (!storeFolder.empty()) return Open(storeFolder);
    if (const std::optional<std::string> folder = GetEnvironment(kStoreVariable)) return Open(*folder);
    if (const std::optional<std::filesystem::path> folder = GetUserDataFolder())
        return Open(PathToUtf8(*folder / kProgram));
    throw InputError("there is no place for the store; name a folder with --store");
}

void HostContext::UseThrowawayStore() { Open(":memory:"); }

void HostContext::Open(const std::string& folder) {
    try {
        OpenStore(folder);
    } catch (const std::runtime_error& error) {
        std::string sentence = error.what();
        if (sentence.ends_with('.')) sentence.pop_back();
        throw InputError(sentence + "; name another folder with --store");
    }
    open_ = true;
}

int RunHost(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    const OperationReports reports;
    return RunCommandLine(arguments, out, err, reports);
}
