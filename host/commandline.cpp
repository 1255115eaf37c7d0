// The command line over the parser of the library.
#include "commandline.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <ostream>
#include <utility>

#include <subsystem/hosterror.h>
#include <subsystem/nearestname.h>

CommandOption CommandOption::Takes(const char* kind) const {
    option_->type_name(kind);
    return *this;
}

CommandOption CommandOption::Required() const {
    option_->required();
    return *this;
}

CommandOption CommandOption::NotEmpty() const {
    option_->check(CLI::Validator(
        [](std::string& text) { return text.empty() ? std::string("the name is empty; give one") : std::string(); },
        ""));
    return *this;
}

CommandOption CommandOption::Excludes(CommandOption other) const {
    option_->excludes(other.option_);
    return *this;
}

CommandOption CommandOption::Hidden() const {
    option_->group("");
    return *this;
}

namespace {

CommandOption NameValue(CLI::Option* option) {
    option->type_name(option->get_positional() ? "" : kFileValue);
    return CommandOption(option);
}

OptionDescription Describe(const CLI::Option& option) {
    OptionDescription description;
    for (const std::string& name : option.get_snames()) description.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) description.names.push_back("--" + name);
    const bool isFlag = option.get_items_expected_max() == 0;
    description.value = option.get_positional() ? option.get_name(true) : isFlag ? "" : option.get_type_name();
    description.text = option.get_description();
    description.isRequired = option.get_required();
    description.isRepeated = option.get_items_expected_max() > 1;
    return description;
}

CommandDescription Describe(const CLI::App& app) {
    CommandDescription description{app.get_name(), app.get_description(), {}, {}};
    for (const CLI::Option* option : app.get_options())
        if (!option->get_group().empty()) description.options.push_back(Describe(*option));
    for (const CLI::App* command : app.get_subcommands([](const CLI::App* each) { return !each->get_group().empty(); }))
        description.commands.push_back(Describe(*command));
    return description;
}

}  // namespace

Command Command::AddGroup(const char* name, const char* description) const {
    CLI::App* group = app_->add_subcommand(name, description);
    group->require_subcommand(1);
    return {group, chosen_};
}

Command Command::AddCommand(const char* name, const char* description) const {
    return {app_->add_subcommand(name, description), chosen_};
}

Command Command::AddCommand(const char* name, const char* description, Action action) const {
    const Command command = AddCommand(name, description);
    command.SetAction(std::move(action));
    return command;
}

void Command::Hide() const { app_->group(""); }

void Command::SetAction(Action action) const {
    app_->callback([chosen = chosen_, action = std::move(action)] { *chosen = action; });
}

CommandOption Command::AddOption(const char* names, std::string& value, const char* description) const {
    return NameValue(app_->add_option(names, value, description));
}

CommandOption Command::AddOption(const char* names, std::vector<std::string>& values, const char* description) const {
    return NameValue(app_->add_option(names, values, description)->allow_extra_args(false));
}

CommandOption Command::AddArguments(const char* name, std::vector<std::string>& values, const char* description) const {
    return NameValue(app_->add_option(name, values, description)->required());
}

void Command::AddFlag(const char* names, bool& value, const char* description) const {
    app_->add_flag(names, value, description);
}

bool Command::IsFirst(CommandOption option, CommandOption other) const {
    const std::vector<CLI::Option*>& read = app_->parse_order();
    const auto first = std::find_if(read.begin(), read.end(), [&](const CLI::Option* candidate) {
        return candidate == option.option_ || candidate == other.option_;
    });
    return first != read.end() && *first == option.option_;
}

CommandLine::CommandLine(const char* program, const char* description)
    : app_(std::make_unique<CLI::App>(description, program)) {
    app_->allow_windows_style_options(false);  // a path may begin with a slash on either host
    app_->require_subcommand(1);
    app_->fallthrough();  // the program's own options are taken anywhere
}

CommandLine::~CommandLine() = default;

CommandDescription CommandLine::Describe() const { return ::Describe(*app_); }

void CommandLine::SetFooter(const std::string& text) { app_->footer(text); }

void CommandLine::AddVersion(std::function<std::string()> describe) {
    app_->set_version_flag("--version", std::move(describe),
                           "Print the versions of the host and of the driver's files");
}

namespace {

// The command that the line goes up to.
const CLI::App& FindMeant(const CLI::App& root) {
    const CLI::App* meant = &root;
    while (!meant->get_subcommands().empty()) meant = meant->get_subcommands().back();
    return *meant;
}

std::string NameWithGroups(const CLI::App& command) {
    const CLI::App* group = command.get_parent();
    return (group ? NameWithGroups(*group) + ' ' : std::string()) + command.get_name();
}

// What may stand where the word stands: options of the command and the program, or commands of the group.
std::vector<std::string> ListNames(const CLI::App& root, const CLI::App& meant, bool options) {
    std::vector<std::string> names;
    if (options) {
        for (const CLI::App* app : {&meant, &root})
            for (const CLI::Option* option : app->get_options())
                if (!option->get_group().empty())
                    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    } else {
        for (const CLI::App* command : meant.get_subcommands([](const CLI::App*) { return true; }))
            names.push_back(command->get_name());
    }
    return names;
}

std::string DescribeFault(const CLI::App& root, const CLI::ParseError& error) {
    const CLI::App& meant = FindMeant(root);
    const std::vector<std::string> words = root.remaining(true);
    std::string sentence = error.what(), nearest;
    // That a command is missing is only half of it when there is a word in its place. Of many words that are too many
    // the first is enough.
    if (!words.empty()) {
        const bool isOption = words.front().starts_with('-');
        const bool isGroup = meant.get_require_subcommand_min() > 0;
        sentence = "'" + words.front() + "' is no " +
                   (isOption  ? "option of '"
                    : isGroup ? "command of '"
                              : "argument that can follow '") +
                   NameWithGroups(meant) + "'";
        nearest = SuggestName(words.front(), ListNames(root, meant, isOption));
    }
    std::replace(sentence.begin(), sentence.end(), '\n', ' ');
    return sentence + "; '" + NameWithGroups(meant) + " --help' shows " +
           (meant.get_require_subcommand_min() > 0 ? "the commands" : "what it takes") + nearest;
}

}  // namespace

void CommandLine::Run(const std::vector<std::string>& arguments, std::ostream& out) {
    try {
        // The parser takes its arguments from the end.
        app_->parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        out << app_->help();
        return;
    } catch (const CLI::CallForVersion& version) {
        out << version.what();
        return;
    } catch (const CLI::ParseError& error) {
        throw InputError(DescribeFault(*app_, error));
    }
    if (chosen_) chosen_();
}
