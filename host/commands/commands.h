// The host's commands: each function adds a group of them to the command line.
#pragma once

#include <CLI/CLI.hpp>

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

// What a command works with.
class HostContext {
public:
    HostContext(std::ostream& output, std::ostream& errors) : out(output), err(errors) {}
    ~HostContext();
    HostContext(const HostContext&) = delete;
    HostContext& operator=(const HostContext&) = delete;

    // Opens the store that the command line, the environment or the user's data folder names; closed with the context.
    // Throws InputError when there is none or it cannot be opened.
    void UseStore();
    void UseThrowawayStore();  // a store that ends with the context

    // What the command does with its options, once the whole command line is read.
    template <class Options>
    void SetAction(CLI::App& command, const std::shared_ptr<Options>& options,
                   void (*run)(HostContext&, const Options&)) {
        command.callback([this, options, run] { action = [this, options, run] { run(*this, *options); }; });
    }

    std::ostream& out;
    std::ostream& err;
    std::string storeFolder;  // as given by --store; empty when it was not
    std::function<void()> action;
    int exitStatus = 0;  // of the command line, when nothing fails

private:
    void Open(const std::string& folder);

    bool open_ = false;
};

// For options that name a file or a folder and may be left out: an empty name is refused, not taken for none.
inline CLI::Validator NotEmpty() {
    return CLI::Validator(
        [](std::string& text) { return text.empty() ? std::string("the name is empty; give one") : std::string(); },
        "");
}

void AddDemoCommand(CLI::App& app, HostContext& context);
void AddCheckCommand(CLI::App& app, HostContext& context);
void AddProductCommands(CLI::App& app, HostContext& context);
void AddPrinterCommands(CLI::App& app, HostContext& context);
void AddPaperCommands(CLI::App& printer, HostContext& context);  // forms and custom sizes, under the command "printer"
void AddCachesCommands(CLI::App& app, HostContext& context);
void AddDevmodeCommands(CLI::App& app, HostContext& context);
void AddConversionCommands(CLI::App& app, HostContext& context);
void AddExplainCommand(CLI::App& app, HostContext& context);
void AddJobCommands(CLI::App& app, HostContext& context);
void AddJobTicketCommand(CLI::App& app, HostContext& context);
void AddRegistryCommands(CLI::App& app, HostContext& context);
