// Completion of command lines: the words before the last one say what can stand there.
#include "completion.h"

#include <algorithm>

namespace {

class LineReader {
public:
    explicit LineReader(const CommandDescription& program) : program_(program), command_(&program) {}

    void Take(const std::string& word) {
        if (awaiting_) {
            given_.emplace_back(awaiting_->names.back(), word);
            awaiting_ = nullptr;
        } else if (word.size() > 1 && word.starts_with('-')) {
            TakeOption(word);
        } else if (!command_->commands.empty()) {
            const auto found = std::find_if(command_->commands.begin(), command_->commands.end(),
                                            [&](const CommandDescription& each) { return each.name == word; });
            isKnown_ = isKnown_ && found != command_->commands.end();
            if (isKnown_) command_ = &*found;
        } else {
            ++arguments_;
        }
    }

    std::vector<std::string> Complete(const std::string& word, const ListValues& listValues) const {
        if (!isKnown_) return {};
        if (awaiting_) return ListOf(awaiting_->value, word, listValues);
        if (word.starts_with("--") && word.find('=') != std::string::npos) return CompleteJoined(word, listValues);
        if (word.starts_with('-')) return ListOptions();
        if (command_->commands.empty()) return CompleteArgument(word, listValues);
        std::vector<std::string> names;
        for (const CommandDescription& each : command_->commands) names.push_back(each.name);
        return names;
    }

private:
    const OptionDescription* FindOption(const std::string& name) const {
        for (const CommandDescription* command : {command_, &program_})
            for (const OptionDescription& option : command->options)
                if (std::find(option.names.begin(), option.names.end(), name) != option.names.end()) return &option;
        return nullptr;
    }

    // "--name", whose value is the next word, or "--name=value".
    void TakeOption(const std::string& word) {
        const std::size_t end = word.find('=');
        const OptionDescription* option = FindOption(word.substr(0, end));
        if (!option) return;
        if (option->value.empty() || end != std::string::npos) {
            given_.emplace_back(option->names.back(), end == std::string::npos ? std::string() : word.substr(end + 1));
        } else {
            awaiting_ = option;
        }
    }

    static std::vector<std::string> ListOfWords(const std::string& kind) {
        std::vector<std::string> words;
        for (std::size_t at = 0; at < kind.size();) {
            const std::size_t end = std::min(kind.find('|', at), kind.size());
            words.push_back(kind.substr(at, end - at));
            at = end + 1;
        }
        return words;
    }
    std::vector<std::string> ListOf(const std::string& kind, const std::string& word,
                                    const ListValues& listValues) const {
        if (kind.find('|') != std::string::npos) return ListOfWords(kind);
        return listValues(kind, word, given_);
    }

    std::vector<std::string> CompleteJoined(const std::string& word, const ListValues& listValues) const {
        const std::size_t end = word.find('=') + 1;
        const OptionDescription* option = FindOption(word.substr(0, end - 1));
        if (!option || option->value.empty()) return {};
        std::vector<std::string> values = ListOf(option->value, word.substr(end), listValues);
        for (std::string& value : values) value.insert(0, word, 0, end);
        return values;
    }

    std::vector<std::string> ListOptions() const {
        std::vector<std::string> names;
        for (const CommandDescription* command : {command_, &program_}) {
            for (const OptionDescription& option : command->options) {
                if (option.names.empty() || (command != command_ && option.names.back() == "--help")) continue;
                const bool isGiven = std::any_of(given_.begin(), given_.end(), [&](const GivenOption& given) {
                    return given.first == option.names.back();
                });
                if (!isGiven || option.isRepeated) names.push_back(option.names.back());
            }
            if (&program_ == command_) break;
        }
        return names;
    }

    std::vector<std::string> CompleteArgument(const std::string& word, const ListValues& listValues) const {
        std::size_t place = 0;
        for (const OptionDescription& option : command_->options)
            if (option.names.empty() && (place++ == arguments_ || option.isRepeated))
                return ListOf(option.value, word, listValues);
        return {};
    }

    const CommandDescription& program_;
    const CommandDescription* command_;
    const OptionDescription* awaiting_ = nullptr;  // whose value comes next
    std::vector<GivenOption> given_;
    std::size_t arguments_ = 0;
    bool isKnown_ = true;
};

}  // namespace

std::vector<std::string> CompleteLine(const CommandDescription& program, const std::vector<std::string>& words,
                                      const ListValues& listValues) {
    if (words.empty()) return {};
    LineReader reader(program);
    for (std::size_t index = 0; index + 1 < words.size(); ++index) reader.Take(words[index]);
    std::vector<std::string> found = reader.Complete(words.back(), listValues);
    std::erase_if(found, [&](const std::string& each) { return !each.starts_with(words.back()); });
    return found;
}
