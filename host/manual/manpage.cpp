// The manual's page, of the command line's own descriptions.
#include "manpage.h"

#include <kitversion.h>

#include <span>
#include <string_view>

#include "manualtexts.h"

namespace {

// The text as it stands: what the formatter takes for more than itself is escaped, also at a line's begin.
std::string Escaped(std::string_view text) {
    std::string escaped;
    if (text.starts_with('.') || text.starts_with('\'')) escaped = "\\&";
    for (const char unit : text) {
        if (unit == '\\')
            escaped += "\\e";
        else if (unit == '-')
            escaped += "\\-";
        else if (unit == '~')
            escaped += "\\(ti";
        else if (unit == '\'')
            escaped += "\\(aq";
        else if (unit == '"')
            escaped += "\\(dq";
        else
            escaped += unit;
    }
    return escaped;
}

std::string Sentence(std::string text) {
    if (!text.empty() && !text.ends_with('.')) text += '.';
    return Escaped(text);
}

class Page {
public:
    Page() { text_ = ".TH MVPTHOST 1 " MV_KIT_DATE " \"" MV_KIT_NAME " " MV_KIT_VERSION "\" \"User Commands\"\n"; }
    void Section(const char* name) { text_.append(".SH ").append(name).append("\n"); }
    void Subsection(const std::string& name) { text_.append(".SS ").append(name).append("\n"); }
    void Text(const std::string& escaped) { text_.append(escaped).append("\n"); }
    void Paragraph() { text_ += ".PP\n"; }
    void Entry(const std::string& head, const std::string& escaped) {
        text_.append(".TP\n").append(head).append("\n").append(escaped).append("\n");
    }
    void Example(const char* text, const char* command) {
        text_.append(".PP\n").append(Escaped(text)).append("\n.PP\n.nf\n    ");
        text_.append(Escaped(std::string("mvpthost ") + command)).append("\n.fi\n");
    }
    std::string Get() { return std::move(text_); }

private:
    std::string text_;
};

std::string Bold(std::string_view text) { return "\\fB" + Escaped(text) + "\\fR"; }
std::string Italic(std::string_view text) { return "\\fI" + Escaped(text) + "\\fR"; }

std::string DescribeNames(const OptionDescription& option) {
    std::string names;
    for (const std::string& name : option.names) names.append(names.empty() ? "" : ", ").append(Bold(name));
    if (!option.value.empty()) names.append(names.empty() ? "" : " ").append(Italic(option.value));
    return names;
}

// "mvpthost printer show [options] PRINTER"
std::string DescribeUse(const std::string& path, const CommandDescription& command) {
    std::string use = Bold("mvpthost" + path);
    bool hasOptions = false;
    for (const OptionDescription& option : command.options) {
        if (option.names.empty() || !option.isRequired) continue;
        use.append(" ").append(Bold(option.names.back())).append(" ").append(Italic(option.value));
    }
    for (const OptionDescription& option : command.options)
        hasOptions = hasOptions || (!option.names.empty() && !option.isRequired && option.names.back() != "--help");
    if (hasOptions) use += " [" + Italic("options") + "]";
    for (const OptionDescription& option : command.options) {
        if (!option.names.empty()) continue;
        const std::string value = Italic(option.value) + (option.isRepeated ? "..." : "");
        use.append(option.isRequired ? " " + value : " [" + value + "]");
    }
    return use;
}

void AddOptions(Page& page, const CommandDescription& command) {
    for (const OptionDescription& option : command.options)
        if (option.names.empty() || option.names.back() != "--help")
            page.Entry(DescribeNames(option), Sentence(option.text));
}

void AddCommands(Page& page, const std::string& path, const CommandDescription& command) {
    for (const CommandDescription& inner : command.commands) {
        const std::string innerPath = path + ' ' + inner.name;
        if (inner.commands.empty()) {
            page.Subsection(Escaped(innerPath.substr(1)));
            page.Text(DescribeUse(innerPath, inner));
            page.Paragraph();
            page.Text(Sentence(inner.text));
            AddOptions(page, inner);
        }
        AddCommands(page, innerPath, inner);
    }
}

void AddEntries(Page& page, const char* section, std::span<const manual::Entry> entries) {
    page.Section(section);
    for (const manual::Entry& entry : entries) page.Entry(Bold(entry.name), Escaped(entry.text));
}

}  // namespace

std::string MakeManPage(const CommandDescription& program) {
    Page page;
    page.Section("NAME");
    page.Text("mvpthost \\- the print subsystem around a PrintTicket provider, on the command line");
    page.Section("SYNOPSIS");
    page.Text(Bold("mvpthost") + " [" + Italic("options") + "] " + Italic("command") + " ...");
    page.Section("DESCRIPTION");
    page.Text(Escaped(manual::kSummary));
    for (const char* paragraph : manual::kDescription) {
        page.Paragraph();
        page.Text(Escaped(paragraph));
    }
    page.Section("OPTIONS");
    page.Entry(Bold("-h") + ", " + Bold("--help"), "Print the help of the program, or of the command before it.");
    AddOptions(page, program);
    page.Section("COMMANDS");
    AddCommands(page, {}, program);
    page.Section("EXIT STATUS");
    for (const manual::ExitStatus& status : manual::kExitStatuses)
        page.Entry(Bold(std::to_string(status.status)), Sentence(status.text));
    AddEntries(page, "ENVIRONMENT", manual::kVariables);
    AddEntries(page, "FILES", manual::kFiles);
    page.Section("EXAMPLES");
    page.Text("One after the other, with an empty store:");
    for (const manual::Entry& example : manual::kExamples) page.Example(example.text, example.name);
    return page.Get();
}
