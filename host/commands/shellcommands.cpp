// manual, completion, complete: what a shell and a reader of manuals are given.
#include <printerlist.h>

#include <memory>
#include <ostream>

#include <subsystem/attributesettings.h>
#include <subsystem/hosttext.h>
#include <subsystem/installedprinter.h>
#include <subsystem/productfiles.h>
#include "commands.h"
#include "manual/completion.h"
#include "manual/completionscript.h"
#include "manual/manpage.h"

namespace {

std::vector<std::string> ListPrinterNames(HostContext& context) {
    context.UseStore();
    std::vector<std::string> names;
    for (const PrinterRow& row : ListPrinters()) names.push_back(ToUtf8(row.name));
    return names;
}

std::vector<std::string> ListProductNames() {
    std::vector<std::string> names;
    for (const std::filesystem::path& file : FindKnownProducts().files) names.push_back(NameProduct(file));
    return names;
}

std::vector<std::string> ListSettings(HostContext& context, const std::string& word,
                                      const std::vector<GivenOption>& options) {
    for (const auto& [name, value] : options) {
        if (name != "--printer") continue;
        context.UseStore();
        return ListSettingTexts(word, InstalledPrinter(CXString::FromUtf8(value)).GetProduct().get());
    }
    return ListSettingTexts(word, nullptr);
}

// What the values of a kind are now. Where the answer fails there is none: nobody asked for it.
std::vector<std::string> ListValuesOf(HostContext& context, const std::string& kind, const std::string& word,
                                      const std::vector<GivenOption>& options) {
    try {
        for (const auto& [name, value] : options)
            if (name == "--store") context.storeFolder = value;
        if (kind == kPrinterValue) return ListPrinterNames(context);
        if (kind == kProductValue) return ListProductNames();
        if (kind == kSettingValue) return ListSettings(context, word, options);
    } catch (const std::exception&) {
    }
    return {};
}

}  // namespace

void AddShellCommands(const CommandLine& commandLine, Command app, HostContext& context) {
    app.AddCommand("manual", "Prints the manual's page, in the macros of man(7)",
                   [&] { context.out << MakeManPage(commandLine.Describe()); });
    app.AddGroup("completion", "Completion of command lines")
        .AddCommand("bash", "Prints what bash reads: eval \"$(mvpthost completion bash)\"",
                    [&context] { context.out << kCompletionScript; });
    const auto words = std::make_shared<std::vector<std::string>>();
    const Command complete =
        app.AddCommand("complete", "Prints what can stand in the place of the last word", [&, words] {
            const auto list = [&](const auto& kind, const auto& word, const auto& options) {
                return ListValuesOf(context, kind, word, options);
            };
            for (const std::string& each : CompleteLine(commandLine.Describe(), *words, list))
                context.out << each << '\n';
        });
    complete.AddArguments("WORD", *words, "The words of a line behind the program's name");
    complete.Hide();
}
