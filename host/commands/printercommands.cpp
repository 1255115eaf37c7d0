// printer add, printer list, printer show, printer remove
#include <facts/drivercapabilities.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <printerinstall.h>
#include <nlohmann/json.hpp>

#include <iomanip>
#include <memory>
#include <ostream>

#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/installedprinter.h>
#include <subsystem/jsontext.h>
#include <subsystem/printercaches.h>
#include <subsystem/productfiles.h>
#include "printercommands.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr const WCHAR* kWorkflowValue = W("XWorkflowDLL");

// The installer states in a sentence why it refuses; nothing is changed then.
template <class Operation>
void Install(Operation operation) {
    try {
        operation();
    } catch (const ProductError&) {
        throw;
    } catch (const HostError&) {
        throw;
    } catch (const SpoolerFailure& error) {
        throw OperationError(error.what());
    } catch (const std::runtime_error& error) {
        throw InputError(error.what());
    }
}

// Of the command line, exactly one of these says which printers are meant.
void RequireOne(const PrinterOptions& options, const char* choice) {
    if (int{!options.name.empty()} + int{!options.from.empty()} + int{options.all} != 1)
        throw InputError(std::string("give ") + choice);
    if (options.atomic && !options.name.empty()) throw InputError("--atomic goes with many printers; leave it out");
}

void RunAdd(HostContext& context, const PrinterOptions& options) {
    RequireOne(options, "either NAME and --product, or --from FILE");
    if (options.from.empty() == options.product.empty() || !(options.from.empty() || options.port.empty()))
        throw InputError("--product and --port go with NAME; the lines of a list name their own");
    if (!options.from.empty()) return AddPrintersOfList(context, options);
    const std::filesystem::path product = FindProductFile(options.product);
    const WideString name = ArgumentToWide(options.name);
    context.ChangeStore(StoreAccess::Write);
    CapabilityCachesOfMany caches;
    Install([&] {
        InstallPrinter(name, product, ArgumentToWide(options.port), [&](HANDLE printer, const WideString& driver) {
            CompletePrinter(caches, printer, {name, {}, driver});
        });
    });
}

void RunRemove(HostContext& context, const PrinterOptions& options) {
    RequireOne(options, "either NAME, --from FILE or --all");
    if (options.all) return RemoveAllPrinters(context, options);
    if (!options.from.empty()) return RemovePrintersOfList(context, options);
    context.ChangeStore();
    const WideString name = ArgumentToWide(options.name);
    if (!HalfPrinters::Contains(name)) OpenInstalledPrinter(name);  // refuses one that is not there
    Install([&] { RemovePrinter(name); });
}

void RunList(HostContext& context, const PrinterOptions& options) {
    context.UseStore();
    Json rows = Json::array();
    for (const PrinterRow& row : ListPrinters()) {
        if (options.json) {
            rows.push_back({{"name", ToUtf8(row.name)}, {"driver", ToUtf8(row.driver)}, {"port", ToUtf8(row.port)}});
        } else {
            context.out << ToUtf8(row.name) << "  (" << ToUtf8(row.driver) << ", port " << ToUtf8(row.port) << ")\n";
        }
    }
    if (options.json) context.out << FormatJson(rows) << '\n';
    for (const WideString& half : HalfPrinters::List()) context.err << HalfPrinters::Describe(half) << '\n';
}

std::string DescribeState(int state) {
    constexpr const char* kStates[] = {"unknown printer", "no driver", "driver without data file",
                                       "data file unreadable", "complete"};
    const bool known = state >= 0 && state < static_cast<int>(std::size(kStates));
    return std::to_string(state) + (known ? std::string(" (") + kStates[state] + ")" : std::string());
}

// The library that the component noted for the printer at the first binding.
std::string DescribeWorkflowLibrary(const Printer& printer) {
    DWORD type = REG_NONE;
    ByteBuffer value;
    if (!printer.GetPrinterDataW(kWorkflowValue, type, value)) return "not chosen yet; the first conversion chooses it";
    const auto index = static_cast<DWORD>(value.getAsLongValue());
    if (type != REG_DWORD || index < 1 || index > kWorkflowLibraries.size()) return "not valid";
    return std::to_string(index) + " (" + kWorkflowLibraries[index - 1] + ")";
}

void RunShow(HostContext& context, const PrinterOptions& options) {
    context.UseStore();
    const WideString name = ArgumentToWide(options.name);
    const auto handle = OpenInstalledPrinter(name);
    Json object = Json::object();
    const auto tell = [&](const char* label, const char* key, Json value, const std::string& text) {
        object[key] = std::move(value);
        if (!options.json) context.out << std::left << std::setw(20) << label << text << '\n';
    };
    const auto tellText = [&](const char* label, const char* key, const std::string& text) {
        tell(label, key, text, text);
    };
    const CXString ownName = Printer(handle.Get()).GetPrinterName();
    object["name"] = ownName.ToUtf8();
    for (const PrinterRow& row : ListPrinters()) {
        if (row.name != ownName.AsWideString()) continue;
        tellText("driver", "driver", ToUtf8(row.driver));
        tellText("port", "port", ToUtf8(row.port));
    }
    const int state = PrintDriver::GetInstallationStateFromHandle(handle.Get());
    tell("installation", "installation", state, DescribeState(state));
    tellText("workflow library", "workflowLibrary", DescribeWorkflowLibrary(Printer(handle.Get())));
    if (state == PrintDriver::kInstallationComplete) {
        const InstalledPrinter printer(name);
        tellText("data file", "dataFile", PathToUtf8(printer.GetProduct()->file));
        const DWORD family = printer.GetProduct()->controllerFamily;
        tell("controller family", "controllerFamily", family, std::to_string(family));
        const auto flags = PrintDriver().GetDriverCapability(handle.Get(), facts::kDriverCapabilityFlags);
        tell("capability word", "capabilityWord", flags, FormatHex(flags, 3));
    }
    if (options.json) context.out << FormatJson(object) << '\n';
}

}  // namespace

void AddPrinterCommands(Command app, HostContext& context) {
    const Command printer = app.AddGroup("printer", "The printers of the store");
    const auto options = std::make_shared<PrinterOptions>();
    const auto command = [&](const char* name, const char* description,
                             void (*run)(HostContext&, const PrinterOptions&)) {
        return printer.AddCommand(name, description, [&context, options, run] { run(context, *options); });
    };
    constexpr const char* kName = "The printer's name";
    const auto addList = [&](const Command& added, const char* kind, const char* what) {
        added.AddOption(kind, options->name, kName).NotEmpty();
        added.AddOption("--from", options->from, what).NotEmpty();
        added.AddFlag("--atomic", options->atomic, "All of many printers or none");
    };
    const Command add = command("add", "Installs a product as a printer, or many of a list", RunAdd);
    addList(add, "NAME",
            "A list of printers, '-' for standard input: CSV with the columns name, product and, if wanted, port in "
            "its first line, or JSON lines with these keys");
    add.AddOption("--product", options->product, "The product's name ('product list') or its file")
        .Takes(kProductValue);
    add.AddOption("--port", options->port, "The port (default: one of the printer's own)").Takes("PORT");
    const Command show = command("show", "What a printer is made of", RunShow);
    show.AddOption(kPrinterValue, options->name, kName).Required();
    show.AddFlag("--json", options->json, kJson);
    const Command remove = command("remove", "Removes a printer, or many; clears one that is half there", RunRemove);
    addList(remove, kPrinterValue, "A list of printers as for 'printer add'; their names alone count");
    remove.AddFlag("--all", options->all, "All printers");
    command("list", "One line a printer: name, driver, port", RunList).AddFlag("--json", options->json, kJsonRows);
    AddPaperCommands(printer, context);
}
