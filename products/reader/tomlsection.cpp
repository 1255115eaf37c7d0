// TomlSection.
#include "tomlsection.h"

#include <algorithm>
#include <charconv>

namespace {

std::string Quote(std::string_view text) {
    constexpr std::size_t kShown = 60;
    std::string quoted = "\"" + std::string(text.substr(0, kShown)) + "\"";
    std::replace_if(
        quoted.begin(), quoted.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    return quoted;
}

std::string Describe(const toml::node* node) {
    if (!node) return "nothing";
    if (const auto* text = node->as_string()) return Quote(text->get());
    if (const auto* number = node->as_integer()) return std::to_string(number->get());
    if (const auto* truth = node->as_boolean()) return truth->get() ? "true" : "false";
    if (node->is_table()) return "a table";
    if (node->is_array()) return node->as_array()->empty() ? "an empty array" : "an array";
    if (node->is_floating_point()) return "a number with a fraction";
    return "a date or time";
}

std::string Range(std::int64_t lowest, std::int64_t highest) {
    return "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
}

}  // namespace

std::size_t CountUtf16Units(std::string_view utf8) noexcept {
    std::size_t units = 0;
    for (const unsigned char byte : utf8) units += (byte & 0xC0) != 0x80 ? (byte >= 0xF0 ? 2 : 1) : 0;
    return units;
}

TomlSection::TomlSection(const std::string& file, const toml::table& table, std::string title,
                         std::vector<std::string>* faults)
    : file_(file), table_(table), title_(std::move(title)), faults_(faults) {}

std::size_t TomlSection::GetLine() const noexcept { return std::max<std::size_t>(1, table_.source().begin.line); }

const toml::node* TomlSection::Find(std::string_view key) {
    asked_.emplace(key);
    return table_.get(key);
}

const toml::node& TomlSection::Get(std::string_view key, const char* expected) {
    const toml::node* node = Find(key);
    if (!node) Fail(key, nullptr, expected);
    return *node;
}

std::string TomlSection::GetText(std::string_view key, std::size_t longest) {
    return CheckedText(key, Get(key, "a text"), 1, longest);
}

std::optional<std::string> TomlSection::GetTextIfGiven(std::string_view key, std::size_t longest) {
    const toml::node* node = Find(key);
    if (!node) return std::nullopt;
    return CheckedText(key, *node, 0, longest);
}

std::int64_t TomlSection::GetInteger(std::string_view key, std::int64_t lowest, std::int64_t highest) {
    return CheckedInteger(key, Get(key, Range(lowest, highest).c_str()), lowest, highest);
}

std::optional<std::int64_t> TomlSection::GetIntegerIfGiven(std::string_view key, std::int64_t lowest,
                                                           std::int64_t highest) {
    const toml::node* node = Find(key);
    if (!node) return std::nullopt;
    return CheckedInteger(key, *node, lowest, highest);
}

bool TomlSection::GetBoolean(std::string_view key, bool byDefault) {
    const toml::node* node = Find(key);
    if (!node) return byDefault;
    if (!node->is_boolean()) Fail(key, node, "true or false");
    return node->as_boolean()->get();
}

std::vector<DWORD> TomlSection::GetIntegers(std::string_view key, std::int64_t lowest, std::int64_t highest) {
    std::vector<DWORD> numbers;
    std::set<DWORD> used;
    const toml::array* array = GetArray(key, "an array of whole numbers");
    if (!array) return numbers;
    for (const toml::node& node : *array) {
        const auto number = static_cast<DWORD>(CheckedInteger(key, node, lowest, highest));
        if (!used.insert(number).second) Fail(key, &node, "each number once");
        numbers.push_back(number);
    }
    return numbers;
}

std::vector<std::string> TomlSection::GetTexts(std::string_view key) {
    std::vector<std::string> texts;
    std::set<std::string> used;
    const toml::array* array = GetArray(key, "an array of texts");
    if (!array) return texts;
    for (const toml::node& node : *array) {
        std::string text = CheckedText(key, node, 1, kLongestText);
        if (!used.insert(text).second) Fail(key, &node, "each text once");
        texts.push_back(std::move(text));
    }
    return texts;
}

std::optional<TomlSection> TomlSection::GetSection(std::string_view key) {
    const toml::node* node = Find(key);
    if (!node) return std::nullopt;
    if (!node->is_table()) Fail(key, node, "a table");
    return TomlSection(file_, *node->as_table(), title_.empty() ? std::string(key) : title_ + "." + std::string(key),
                       faults_);
}

std::vector<TomlSection> TomlSection::GetSections(std::string_view key) {
    std::vector<TomlSection> sections;
    const toml::array* array = GetArray(key, "an array of tables");
    if (!array) return sections;
    sections.reserve(array->size());
    for (const toml::node& node : *array) {
        if (!node.is_table()) Fail(key, &node, "a table");
        sections.emplace_back(file_, *node.as_table(), std::string(key) + "[" + std::to_string(sections.size()) + "]",
                              faults_);
    }
    return sections;
}

std::vector<std::pair<DWORD, std::string>> TomlSection::GetNumbers(DWORD highest) {
    std::vector<std::pair<DWORD, std::string>> numbers;
    for (const auto& [key, node] : table_) {
        const std::string_view text = key.str();
        DWORD number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        const bool whole = error == std::errc() && end == text.data() + text.size();
        Try([&, text = text, &node = node] {
            if (!whole || text.front() == '0' || number > highest)
                Fail(text, &node, "a key that is " + Range(1, highest));
            numbers.emplace_back(number, text);
        });
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

void TomlSection::RefuseOtherKeys() const {
    for (const auto& [key, node] : table_)
        if (!asked_.contains(key.str())) Try([&, &key = key, &node = node] { Fail(key.str(), &node, "no such key"); });
}

void TomlSection::Fail(std::string_view key, const std::string& expected) const {
    Fail(key, table_.get(key), expected);
}

void TomlSection::Fail(std::string_view key, const toml::node* node, const std::string& expected) const {
    const auto line = std::max<std::size_t>(1, (node ? node->source() : table_.source()).begin.line);
    throw ProductError(file_ + ":" + std::to_string(line) + ": " + (title_.empty() ? "" : title_ + ".") +
                       std::string(key) + ": expected " + expected + ", got " + Describe(node));
}

const toml::array* TomlSection::GetArray(std::string_view key, const char* expected) {
    const toml::node* node = Find(key);
    if (node && !node->is_array()) Fail(key, node, expected);
    return node ? node->as_array() : nullptr;
}

std::string TomlSection::CheckedText(std::string_view key, const toml::node& node, std::size_t shortest,
                                     std::size_t longest) const {
    const auto* value = node.as_string();
    const auto isControl = [](unsigned char c) { return c < 0x20 || c == 0x7F; };
    if (!value || std::any_of(value->get().begin(), value->get().end(), isControl))
        Fail(key, &node, "a text without control characters");
    const std::size_t units = CountUtf16Units(value->get());
    if (units < shortest || units > longest)
        Fail(key, &node, "a text of " + std::to_string(shortest) + " to " + std::to_string(longest) + " characters");
    return value->get();
}

std::int64_t TomlSection::CheckedInteger(std::string_view key, const toml::node& node, std::int64_t lowest,
                                         std::int64_t highest) const {
    const auto* value = node.as_integer();
    if (!value || value->get() < lowest || value->get() > highest) Fail(key, &node, Range(lowest, highest));
    return value->get();
}
