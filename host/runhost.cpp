// RunHost: one command line of the host, run to its end.
#include "runhost.h"

#include <products/reader/productdescription.h>
#include <store.h>

#include <algorithm>
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

void AddCommands(CLI::App& app, HostContext& context) {
    app.require_subcommand(1);
    app.fallthrough();  // --store is taken anywhere
    app.add_option("--store", context.storeFolder,
                   "Folder that keeps printers and settings (default: $MVPTHOST_STORE, else a folder of the user's)")
        ->check(NotEmpty());
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

// False when the command line asked for help, which is then shown.
bool ReadCommandLine(CLI::App& app, const std::vector<std::string>& arguments, std::ostream& out) {
    try {
        // The parser takes its arguments from the end.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        return true;
    } catch (const CLI::CallForHelp&) {
        out << app.help();
        return false;
    } catch (const CLI::ParseError& error) {
        std::string sentence = error.what();
        // That a command is missing is only half of it when there is a word in its place.
        const std::vector<std::string> words = app.remaining(true);
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError) && !words.empty())
            sentence = "'" + words.front() + "' is no command";
        std::replace(sentence.begin(), sentence.end(), '\n', ' ');
        throw InputError(sentence + "; '" + kProgram + " --help' shows the commands");
    }
}

int RunCommandLine(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
                   const OperationReports& reports) {
    try {
        HostContext context(out, err);
        CLI::App app("Does from the command line what the print subsystem does around the PrintTicket provider.",
                     kProgram);
        app.allow_windows_style_options(false);  // a path may begin with a slash on either host
        AddCommands(app, context);
        if (ReadCommandLine(app, arguments, out) && context.action) context.action();
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
