// The command line as the commands describe it. commandline.cpp alone includes the parser's headers, which are many.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

// Kinds of values that the host can list.
inline constexpr const char* kPrinterValue = "PRINTER";
inline constexpr const char* kProductValue = "PRODUCT";
inline constexpr const char* kSettingValue = "SETTING=VALUE";
inline constexpr const char* kFileValue = "FILE";
inline constexpr const char* kFolderValue = "FOLDER";

// A command line as plain data; what is hidden from the help is not in it.
struct OptionDescription {
    std::vector<std::string> names;  // "-o", "--out"; empty for what stands without a name
    std::string value;               // its kind; empty for a flag
    std::string text;
    bool isRequired = false;
    bool isRepeated = false;  // may be given several times
};
struct CommandDescription {
    std::string name, text;
    std::vector<OptionDescription> options;
    std::vector<CommandDescription> commands;
};

class CommandOption {
public:
    explicit CommandOption(CLI::Option* option) noexcept : option_(option) {}

    // What kind of value it takes, for the help, the manual and the completion: FILE where nothing is said, one of the
    // kinds below, words separated by | or any other name. What stands without an option's name has its name for its
    // kind.
    CommandOption Takes(const char* kind) const;
    CommandOption Required() const;
    // For names of files and folders that may be left out: an empty one is refused, not taken for none.
    CommandOption NotEmpty() const;
    CommandOption Excludes(CommandOption other) const;
    CommandOption Hidden() const;  // from the help

private:
    friend class Command;

    CLI::Option* option_;
};

// A command, or a group of commands. What it refers to lasts as long as its command line.
class Command {
public:
    using Action = std::function<void()>;

    Command(CLI::App* app, Action* chosen) noexcept : app_(app), chosen_(chosen) {}

    Command AddGroup(const char* name, const char* description) const;
    Command AddCommand(const char* name, const char* description) const;
    Command AddCommand(const char* name, const char* description, Action action) const;
    void Hide() const;  // from the help
    // The action runs when this is the command that the command line names.
    void SetAction(Action action) const;
    // Options are named "-o,--out"; what stands without an option's name is named "FILE".
    CommandOption AddOption(const char* names, std::string& value, const char* description) const;
    // An option that may be given several times, with a value each.
    CommandOption AddOption(const char* names, std::vector<std::string>& values, const char* description) const;
    // What stands without an option's name, once at least.
    CommandOption AddArguments(const char* name, std::vector<std::string>& values, const char* description) const;
    void AddFlag(const char* names, bool& value, const char* description) const;

    // Once the command line is read: whether the first of these two options on it is this one.
    bool IsFirst(CommandOption option, CommandOption other) const;

private:
    CLI::App* app_;
    Action* chosen_;
};

class CommandLine {
public:
    CommandLine(const char* program, const char* description);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    Command GetRoot() noexcept { return {app_.get(), &chosen_}; }

    // An option --version; what it prints is asked for then.
    void AddVersion(std::function<std::string()> describe);

    // A paragraph at the end of the program's own help.
    void SetFooter(const std::string& text);
    CommandDescription Describe() const;

    // Reads the arguments and runs the command that they name, or prints the help or version that they ask for. Throws
    // InputError when they are wrong.
    void Run(const std::vector<std::string>& arguments, std::ostream& out);

private:
    std::unique_ptr<CLI::App> app_;
    Command::Action chosen_;
};
