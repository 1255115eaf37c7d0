// ReadTomlFile: the file's bytes, a look at its keys, then the parser.
#include "tomlfile.h"

#include <pathtext.h>

#include <products/reader/productdescription.h>

#include <algorithm>
#include <fstream>

namespace {

[[noreturn]] void Fail(const std::string& name, std::size_t line, const std::string& what) {
    throw ProductError(name + ":" + std::to_string(std::max<std::size_t>(1, line)) + ": expected " + what);
}

// A device or a pipe is not opened: it might never end.
std::string ReadBytes(const std::filesystem::path& file, const std::string& name) {
    std::error_code error;
    const bool isFile = std::filesystem::is_regular_file(file, error);
    const std::uintmax_t size = isFile ? std::filesystem::file_size(file, error) : 0;
    std::ifstream stream;
    if (isFile && !error) stream.open(file, std::ios::binary);
    if (!stream.is_open()) Fail(name, 1, "a readable product file, got none");
    if (size > kLargestTomlFile)
        Fail(name, 1, "at most " + std::to_string(kLargestTomlFile) + " bytes, got " + std::to_string(size));
    std::string text(static_cast<std::size_t>(size), '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (static_cast<std::size_t>(stream.gcount()) != text.size())
        Fail(name, 1, "a readable product file, got an unreadable one");
    return text;
}

// Behind the string that begins at the position: a basic or a literal one, of one line or of several.
std::size_t SkipString(std::string_view text, std::size_t at) {
    const char quote = text[at];
    const std::string_view three = quote == '"' ? "\"\"\"" : "'''";
    const bool isLong = text.substr(at, 3) == three;
    for (at += isLong ? 3 : 1; at < text.size(); ++at) {
        if (text[at] == '\\' && quote == '"') {
            ++at;
        } else if (isLong && text.substr(at, 3) == three) {
            // Up to two quotes before the closing ones are the string's own.
            for (at += 3; at < text.size() && text[at] == quote;) ++at;
            return at;
        } else if (!isLong && (text[at] == quote || text[at] == '\n')) {
            return at + 1;
        }
    }
    return text.size();
}

// The parser makes a table for each part of a key, and takes tables down by recursion: a long key would exhaust the
// stack.
void CheckKeys(std::string_view text, const std::string& name) {
    std::size_t parts = 1;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '"' || text[at] == '\'') {
            at = SkipString(text, at);
            continue;
        }
        if (text[at] == '#') at = std::min(text.find('\n', at), text.size() - 1);
        if (text[at] == '.' && ++parts > kMostKeyParts)
            Fail(name, 1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + at, '\n')),
                 "keys of at most " + std::to_string(kMostKeyParts) + " parts, got a longer one");
        if (std::string_view("=,{}[]\n").find(text[at]) != std::string_view::npos) parts = 1;
        ++at;
    }
}

}  // namespace

toml::table ReadTomlFile(const std::filesystem::path& file) {
    const std::string name = PathToUtf8(file);
    const std::string text = ReadBytes(file, name);
    CheckKeys(text, name);
    try {
        return toml::parse(std::string_view(text), std::string_view(name));
    } catch (const toml::parse_error& error) {
        Fail(name, error.source().begin.line, "TOML, got: " + std::string(error.description()));
    }
}
