// verify: tries a provider with all checks, or with some of them.
#include <capabilitycaches.h>
#include <printerinstall.h>
#include <verify/checkchild.h>
#include <verify/checkrunner.h>

#include <algorithm>
#include <memory>
#include <ostream>

#include <subsystem/hosterror.h>
#include <subsystem/hostfiles.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/productfiles.h>
#include "commands.h"
#include "providerchoice.h"

namespace {

struct VerifyOptions {
    std::string printer, junit, keep, seed = "1", seconds = "10";
    std::vector<std::string> only;
    ProviderChoice provider;  // and the product
    bool json = false, isLong = false, list = false;
    std::string child, note, result;  // of a child process
};

constexpr const char* kVerifiedPrinter = "Verified";          // of a product
constexpr const char* kOtherPrinter = "Beside the verified";  // of another one

unsigned ReadCount(const char* option, const std::string& text) {
    const std::optional<std::int64_t> number = ParseNumber(text);
    if (!number || *number < 1 || *number > UINT32_MAX)
        throw InputError(std::string(option) + " takes a whole number from 1, not '" + text + "'");
    return static_cast<unsigned>(*number);
}

// Checks and whole groups by their names; all when none is named.
std::vector<Check> ChooseChecks(const std::vector<std::string>& only) {
    if (only.empty()) return ListChecks();
    const std::vector<Check> all = ListChecks();
    const auto isNamed = [](const Check& check, const std::string& name) {
        return name == check.name || name == NameOfGroup(check.group);
    };
    for (const std::string& name : only) {
        if (std::any_of(all.begin(), all.end(), [&](const Check& check) { return isNamed(check, name); })) continue;
        throw InputError("there is no check '" + name + "'; 'verify --list' shows those that there are");
    }
    std::vector<Check> chosen;
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen), [&](const Check& check) {
        return std::any_of(only.begin(), only.end(), [&](const std::string& name) { return isNamed(check, name); });
    });
    return chosen;
}

void ListAll(std::ostream& out) {
    for (const Check& check : ListChecks())
        out << NameOfGroup(check.group) << ", " << check.name << ": " << check.what << '\n';
}

// One that the process can unload.
ProviderSource MakeSource(ProviderChoice choice) {
    if (choice.file.empty()) choice.file = PathToUtf8(FindOwnPlugin());
    return MakeProviderSource(choice);
}

void AddPrinter(const CXString& name, const std::filesystem::path& product) {
    InstallPrinter(name.AsWideString(), product, WideString(),
                   [](HANDLE handle, const WideString&) { RebuildCapabilityCaches(handle); });
}

// The printer of a product, and one of another product beside it, are made here, in a store that ends with the process.
TestBench MakeBench(HostContext& context, const VerifyOptions& options, StepNote& note) {
    CXString printer = CXString::FromUtf8(options.printer), other;
    if (options.printer.empty()) {
        context.UseThrowawayStore();
        const std::filesystem::path product = FindProductFile(options.provider.product);
        printer = CXString::FromUtf8(kVerifiedPrinter);
        AddPrinter(printer, product);
        const std::vector<std::filesystem::path> products = FindKnownProducts().files;
        const auto another = std::find_if(products.begin(), products.end(), [&](const std::filesystem::path& file) {
            return file.filename() != product.filename();
        });
        if (another != products.end()) AddPrinter(other = CXString::FromUtf8(kOtherPrinter), *another);
    } else {
        context.UseStore(StoreAccess::ReadMostly);
        OpenInstalledPrinter(printer);
    }
    const BenchOptions benchOptions{ReadCount("--seed", options.seed), ReadCount("--time", options.seconds),
                                    options.isLong};
    TestBench bench(MakeSource(options.provider), printer, benchOptions, note);
    bench.SetOtherPrinterName(other);
    return bench;
}

void RunChild(HostContext& context, const VerifyOptions& options) {
    StepNote note(PathFromUtf8(options.note));
    RunCheckHere(
        options.child, [&] { return MakeBench(context, options, note); }, PathFromUtf8(options.result));
}

std::vector<std::string> MakeChildArguments(const HostContext& context, const VerifyOptions& options) {
    std::vector<std::string> arguments = {"verify", "--seed", options.seed, "--time", options.seconds};
    const auto add = [&](const char* option, const std::string& value) {
        if (!value.empty()) arguments.insert(arguments.end(), {option, value});
    };
    add("--store", context.storeFolder);
    add("--provider", options.provider.file);
    add("--printer", options.printer);
    add("--product", options.provider.product);
    if (options.provider.gpdLike) arguments.emplace_back("--gpd-like");
    if (options.isLong) arguments.emplace_back("--long");
    return arguments;
}

// What is verified by turns: one printer, one product, or all products.
std::vector<VerifyOptions> ListSubjects(const VerifyOptions& options) {
    if (!options.printer.empty() || !options.provider.product.empty()) return {options};
    std::vector<VerifyOptions> subjects;
    for (const std::filesystem::path& file : FindKnownProducts().files) {
        subjects.push_back(options);
        subjects.back().provider.product = PathToUtf8(file.stem());
    }
    if (subjects.empty()) throw InputError("there are no products beside the program; name a printer with --printer");
    return subjects;
}

std::string NameOf(const VerifyOptions& subject) {
    return subject.printer.empty() ? PathToUtf8(PathFromUtf8(subject.provider.product).stem()) : subject.printer;
}

// The folder for inputs: the user's, or a new one that goes again when nothing is kept in it.
class KeepFolder {
public:
    explicit KeepFolder(const std::string& named)
        : isOwn_(named.empty()), path_(isOwn_ ? MakeTemporaryFolder("mvpthost-verified-") : PathFromUtf8(named)) {}
    ~KeepFolder() {
        std::error_code inUse;
        if (isOwn_) std::filesystem::remove(path_, inUse);
    }
    KeepFolder(const KeepFolder&) = delete;
    KeepFolder& operator=(const KeepFolder&) = delete;

    const std::filesystem::path& GetPath() const noexcept { return path_; }

private:
    bool isOwn_;
    std::filesystem::path path_;
};

void RunVerify(HostContext& context, const VerifyOptions& options) {
    if (options.list) return ListAll(context.out);
    if (!options.child.empty()) return RunChild(context, options);
    RequireProductOfChoice(options.provider);
    ReadCount("--seed", options.seed);
    const KeepFolder keep(options.keep);
    std::vector<VerifiedPrinter> printers;
    const std::vector<Check> checks = ChooseChecks(options.only);
    bool failed = false;
    std::ostream& out = context.GetStreamBeside(options.junit);
    for (const VerifyOptions& subject : ListSubjects(options)) {
        const CheckRun run{MakeChildArguments(context, subject), checks, ReadCount("--time", options.seconds),
                           keep.GetPath(), NameOf(subject)};
        printers.push_back({run.subject, RunChecks(run, [&](const CheckReport& report) {
                                failed |= report.outcome == CheckOutcome::Failed;
                                if (!options.json) PrintReport(report, out);
                                out.flush();
                            })});
        if (!options.json) PrintCounts(printers.back(), out);
    }
    if (options.json) out << FormatAsJson(printers) << '\n';
    if (!options.junit.empty()) context.WriteFile(options.junit, FormatAsJunit(printers));
    if (failed) context.exitStatus = kExitFailed;
}

}  // namespace

void AddVerifyCommand(Command app, HostContext& context) {
    const auto options = std::make_shared<VerifyOptions>();
    const Command command = app.AddCommand("verify", "Tries a PrintTicket provider as the certification kit does",
                                           [&context, options] { RunVerify(context, *options); });
    AddProviderOption(command, options->provider);
    const CommandOption printer =
        command.AddOption("--printer", options->printer, "A printer that is installed").Takes(kPrinterValue).NotEmpty();
    command
        .AddOption("--product", options->provider.product,
                   "A product, as a printer in a store of the check's own (default: every product in turn)")
        .Takes(kProductValue)
        .NotEmpty()
        .Excludes(printer);
    command.AddFlag("--gpd-like", options->provider.gpdLike,
                    "The provider knows nothing of the product: DEVMODEs without this family's private block, the core "
                    "driver's documents from --product");
    command.AddOption("--only", options->only, "A check, or a group of them; may be given several times")
        .Takes("CHECK");
    command.AddFlag("--list", options->list, "Print the checks, a line each");
    command.AddOption("--junit", options->junit, "Also write JUnit's XML to this file").NotEmpty();
    command.AddFlag("--json", options->json,
                    "Print an array of objects: group, name, outcome, what and, where it failed, found and input");
    command.AddOption("--seed", options->seed, "Number from which chance starts (default: 1)").Takes("NUMBER");
    command
        .AddOption("--time", options->seconds,
                   "Seconds without an answer that count as a hang, and that each random check goes on for with "
                   "--long (default: 10)")
        .Takes("SECONDS");
    command.AddFlag("--long", options->isLong, "The long form: more of everything");
    command.AddOption("--keep", options->keep, "Folder for inputs that show a failure (default: a temporary one)")
        .Takes(kFolderValue)
        .NotEmpty();
    command.AddOption(kChildOption, options->child, "").Hidden();
    command.AddOption(kNoteOption, options->note, "").Hidden();
    command.AddOption(kResultOption, options->result, "").Hidden();
}
