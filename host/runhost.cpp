// RunHost: one command line of the host, run to its end.
#include "runhost.h"

#include <products/reader/productdescription.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <ostream>

#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/operationreports.h>
#include "commands/commands.h"
#include "manual/manualtexts.h"
#include "versions.h"

namespace {

constexpr const char* kProgram = "mvpthost";
constexpr const char* kStoreVariable = "MVPTHOST_STORE";
constexpr const char* kInMemory = ":memory:";

// The platform's sentences end with a full stop, those of the host go on.
std::string WithoutStop(std::string sentence) {
    if (sentence.ends_with('.')) sentence.pop_back();
    return sentence;
}

int Fail(std::ostream& err, const std::string& sentence, int exitStatus) {
    err << kProgram << ": " << sentence << '\n';
    return exitStatus;
}

void AddCommands(Command app, HostContext& context) {
    app.AddOption("--store", context.storeFolder,
                  "Folder that keeps printers and settings (default: $MVPTHOST_STORE, else a folder of the user's)")
        .Takes(kFolderValue)
        .NotEmpty();
    AddDemoCommand(app, context);
    AddProductCommands(app, context);
    AddPrinterCommands(app, context);
    AddCachesCommands(app, context);
    AddDevmodeCommands(app, context);
    AddConversionCommands(app, context);
    AddConvertCommand(app, context);
    AddExplainCommand(app, context);
    AddJobCommands(app, context);
    AddJobTicketCommand(app, context);
    AddCheckCommand(app, context);
    AddReportCommand(app, context);
    AddRegistryCommands(app, context);
    AddVerifyCommand(app, context);
}

std::string DescribeExitStatuses() {
    std::string text = "Exit status:";
    for (const manual::ExitStatus& status : manual::kExitStatuses)
        text.append("\n  ").append(std::to_string(status.status)).append("  ").append(status.text);
    return text;
}

int RunCommandLine(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
                   const OperationReports& reports) {
    try {
        HostContext context(out, err);
        CommandLine commandLine(kProgram, manual::kSummary);
        commandLine.AddVersion(DescribeVersions);
        AddCommands(commandLine.GetRoot(), context);
        AddShellCommands(commandLine, commandLine.GetRoot(), context);
        commandLine.SetFooter(DescribeExitStatuses());
        commandLine.Run(arguments, out);
        context.Finish();
        if (!out.flush())  // a reader that has seen enough closes its end
            return errno == EPIPE ? kExitFailed
                                  : Fail(err, "the output cannot be written; check where it goes", kExitFailed);
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
    transaction_.reset();
    if (open_) CloseStore();
}

void HostContext::UseStore(StoreAccess access) {
    const std::optional<std::string> named =
        storeFolder.empty() ? GetEnvironment(kStoreVariable) : std::make_optional(storeFolder);
    if (named) {
        if (access != StoreAccess::Write && !IsStore(*named))
            throw InputError("there is no store in '" + *named +
                             "'; 'printer add' makes one, --store names another folder");
        Open(*named, access);
    } else if (const std::optional<std::filesystem::path> folder = GetUserDataFolder()) {
        const std::string own = PathToUtf8(*folder / kProgram);
        Open(access == StoreAccess::Write || IsStore(own) ? own : kInMemory, access);
    } else {
        throw InputError("there is no place for the store; name a folder with --store");
    }
    if (access == StoreAccess::Read) Begin();
}

void HostContext::ChangeStore(StoreAccess access) {
    UseStore(access);
    Begin();
}

void HostContext::UseThrowawayStore() { Open(kInMemory, StoreAccess::Write); }

void HostContext::Open(const std::string& folder, StoreAccess access) {
    transaction_.reset();
    try {
        OpenStore(folder, access);
    } catch (const std::runtime_error& error) {
        throw InputError(WithoutStop(error.what()) + "; name another folder with --store");
    }
    open_ = true;
}

void HostContext::Begin() {
    try {
        transaction_.emplace();
    } catch (const std::runtime_error& error) {
        throw OperationError(WithoutStop(error.what()));
    }
}

void HostContext::Finish() {
    if (!transaction_) return;
    try {
        transaction_->Commit();
    } catch (const std::runtime_error& error) {
        throw OperationError(WithoutStop(error.what()) + "; nothing was changed");
    }
}

void HostContext::WriteFile(const std::string& file, std::string_view bytes) const {
    if (const std::filesystem::path path = PathFromUtf8(file); path.empty() || IsStandardStream(path)) {
        out << bytes;
    } else {
        WriteWholeFile(path, bytes);
    }
}

std::ostream& HostContext::GetStreamBeside(const std::string& file) const {
    return IsStandardStream(PathFromUtf8(file)) ? err : out;
}

int RunHost(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    UseDriverFolder();
    const OperationReports reports;
    return RunCommandLine(arguments, out, err, reports);
}
