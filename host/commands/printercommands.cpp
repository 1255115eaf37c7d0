// printer add, printer list, printer show, printer remove
#include <capabilitycaches.h>
#include <facts/drivercapabilities.h>
#include <mvutil/printdriver.h>
#include <mvutil/printer.h>
#include <printerinstall.h>

#include <iomanip>
#include <memory>
#include <ostream>

#include <subsystem/hosterror.h>
#include <subsystem/hostplatform.h>
#include <subsystem/hosttext.h>
#include <subsystem/installedprinter.h>
#include <subsystem/productfiles.h>
#include "commands.h"

namespace {

constexpr const WCHAR* kWorkflowValue = W("XWorkflowDLL");

struct PrinterOptions {
    std::string name, product, port;
};

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

void RunAdd(HostContext& context, const PrinterOptions& options) {
    const std::filesystem::path product = FindProductFile(options.product);
    const WideString name = ArgumentToWide(options.name);
    context.ChangeStore(StoreAccess::Write);
    Install([&] { InstallPrinter(name, product, ArgumentToWide(options.port), RebuildCapabilityCaches); });
}

void RunRemove(HostContext& context, const PrinterOptions& options) {
    context.ChangeStore();
    const WideString name = ArgumentToWide(options.name);
    if (!HalfPrinters::Contains(name)) OpenInstalledPrinter(name);  // refuses one that is not there
    Install([&] { RemovePrinter(name); });
}

void RunList(HostContext& context) {
    context.UseStore();
    for (const PrinterRow& row : ListPrinters())
        context.out << ToUtf8(row.name) << "  (" << ToUtf8(row.driver) << ", port " << ToUtf8(row.port) << ")\n";
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
    const auto line = [&](const char* what, const std::string& value) {
        context.out << std::left << std::setw(20) << what << value << '\n';
    };
    const CXString ownName = Printer(handle.Get()).GetPrinterName();
    for (const PrinterRow& row : ListPrinters()) {
        if (row.name != ownName.AsWideString()) continue;
        line("driver", ToUtf8(row.driver));
        line("port", ToUtf8(row.port));
    }
    const int state = PrintDriver::GetInstallationStateFromHandle(handle.Get());
    line("installation", DescribeState(state));
    line("workflow library", DescribeWorkflowLibrary(Printer(handle.Get())));
    if (state != PrintDriver::kInstallationComplete) return;
    const InstalledPrinter printer(name);
    line("data file", PathToUtf8(printer.GetProduct()->file));
    line("controller family", std::to_string(printer.GetProduct()->controllerFamily));
    line("capability word",
         FormatHex(PrintDriver().GetDriverCapability(handle.Get(), facts::kDriverCapabilityFlags), 3));
}

}  // namespace

void AddPrinterCommands(Command app, HostContext& context) {
    const Command printer = app.AddGroup("printer", "The printers of the store");
    const auto options = std::make_shared<PrinterOptions>();
    const auto add = [&](const char* name, const char* description, void (*run)(HostContext&, const PrinterOptions&)) {
        const Command command =
            printer.AddCommand(name, description, [&context, options, run] { run(context, *options); });
        command.AddOption("NAME", options->name, "The printer's name").Required();
        return command;
    };
    const Command addCommand = add("add", "Installs a product as a printer", RunAdd);
    addCommand.AddOption("--product", options->product, "The product's name ('product list') or its file").Required();
    addCommand.AddOption("--port", options->port, "The port (default: one of the printer's own)");
    add("show", "What a printer is made of", RunShow);
    add("remove", "Removes a printer", RunRemove);
    printer.AddCommand("list", "One line a printer: name, driver, port", [&context] { RunList(context); });
    AddPaperCommands(printer, context);
}
