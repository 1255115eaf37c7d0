// Transcripts of command lines: what each line of tests/transcripts printed once is what it prints now.
//
// A line "$ ..." is a command, its words between blanks or single quotes; "@name" is a file of the run's own, which
// holds that file of tests/transcripts to begin with; documents are shown in lines. Below a command stands what it
// printed, errors after "! ", an exit status other than 0 in brackets. A command may end in "< @in" and "> @out", for
// its standard input and output. Commands of the transcripts' own are "edit @in @out FROM TO", "cut @in @out BYTES",
// "patch @in @out OFFSET HEX", "show @text", "set VARIABLE @file" and "files". With MV_WRITE_TRANSCRIPTS in the
// environment the files are written anew, for a reader to compare.
#include "hostrun.h"

#include <subsystem/inputs/inputform.h>
#include <support/userconventions.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <set>
#include <utility>

namespace {

namespace fs = std::filesystem;

const fs::path kTranscripts = fs::path(MV_SOURCE_FOLDER) / "tests/transcripts";

void SetVariable(const char* name, const std::string& value) {
#ifdef _WIN32
    _putenv_s(name, value.c_str());
#else
    setenv(name, value.c_str(), 1);
#endif
}

// On Windows the registry of a test holds the system's own keys as well.
bool IsPlayable(const fs::path& file) {
#ifdef _WIN32
    if (file.stem() == "registry") return false;
#endif
    return file.extension() == ".txt";
}

std::vector<std::string> SplitWords(const std::string& line) {
    std::vector<std::string> words(1);
    bool isQuoted = false;
    for (const char character : line) {
        if (character == '\'')
            isQuoted = !isQuoted;
        else if (character == ' ' && !isQuoted)
            words.emplace_back();
        else
            words.back() += character;
    }
    return words;
}

// The lines of errors, those of each printer together: several are worked on at once.
std::string MarkErrors(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    const auto printer = [](const std::string& line) {
        return line.starts_with('\'') ? line.substr(0, line.find("':")) : "";
    };
    std::stable_sort(lines.begin(), lines.end(), [&](const auto& a, const auto& b) { return printer(a) < printer(b); });
    std::string marked;
    for (const std::string& line : lines) marked += "! " + line + '\n';
    return marked;
}

// The file that the sign at the end of the words names; empty when it is not there.
std::string TakeRedirection(std::vector<std::string>& words, const char* sign) {
    if (words.size() < 3 || words[words.size() - 2] != sign) return std::string();
    const std::string file = words.back().substr(1);
    words.resize(words.size() - 2);
    return file;
}

// The bytes as the transcript's own command changes them.
std::string Change(const std::vector<std::string>& words, std::string bytes) {
    if (words[0] == "cut") return bytes.substr(0, std::stoul(words.at(3)));
    if (words[0] == "patch") {
        for (std::size_t at = 0; at < words.at(4).size(); at += 2)
            bytes.at(std::stoul(words[3]) + at / 2) =
                static_cast<char>(std::stoul(words[4].substr(at, 2), nullptr, 16));
        return bytes;
    }
    const std::size_t at = bytes.find(words.at(3));
    EXPECT_NE(at, std::string::npos) << words[3];
    return bytes.replace(at, words[3].size(), words.at(4));
}

class Transcript : public HostRun, public testing::WithParamInterface<fs::path> {
protected:
    // What the command prints, its files named as in the transcript.
    std::string Play(const std::string& line) const {
        std::vector<std::string> words = SplitWords(line);
        if (words[0] == "show") {
            std::string text = DecodeText(Read(words.at(1).substr(1)));
            std::erase(text, '\r');
            return text;
        }
        if (words[0] == "files") return ListFiles();
        if (words[0] == "set") {
            SetVariable(words.at(1).c_str(), words.size() > 2 ? File(words[2].substr(1)) : std::string());
            return std::string();
        }
        if (words[0] == "edit" || words[0] == "patch" || words[0] == "cut") {
            Write(words.at(2).substr(1), Change(words, Read(words.at(1).substr(1))));
            return std::string();
        }
        const std::string to = TakeRedirection(words, ">"), from = TakeRedirection(words, "<");
        for (std::string& word : words)
            if (word.starts_with('@')) word = File(word.substr(1));
        std::istringstream in(from.empty() ? std::string() : Read(from));
        std::streambuf* const before = std::cin.rdbuf(in.rdbuf());
        std::cin.clear();
        Outcome outcome = Run(words);
        std::cin.rdbuf(before);
        if (!to.empty()) Write(to, std::exchange(outcome.out, {}));
        std::string text = outcome.out + MarkErrors(outcome.err);
        if (!text.empty() && text.back() != '\n') text += '\n';
        if (outcome.status != 0) text += "[" + std::to_string(outcome.status) + "]\n";
        if (text.starts_with("<?xml"))
            for (std::size_t at = 0; (at = text.find("><", at)) != std::string::npos;) text.insert(++at, "\n");
        return NameOwnFiles(std::move(text));
    }

    // The run's own files as "@name", their folders behind slashes also where JSON doubles the backslashes.
    std::string NameOwnFiles(std::string text) const {
        const std::string folder = File("");
        std::string inJson;
        for (const char character : folder) inJson += std::string(character == '\\' ? 2 : 1, character);
        for (const std::string& name : {inJson, folder})
            for (std::size_t at = 0; (at = text.find(name, at)) != std::string::npos; ++at) {
                text.replace(at, name.size(), "@");
                std::size_t end = std::min(text.find_first_of(" '\":\n", at), text.size());
                std::replace(text.begin() + static_cast<std::ptrdiff_t>(at),
                             text.begin() + static_cast<std::ptrdiff_t>(end), '\\', '/');
                for (std::size_t twice; (twice = text.find("//", at)) < end; --end) text.erase(twice, 1);
            }
        return text;
    }

    // The run's own files, without those that it begins with, and without the store, which is a file natively alone.
    std::string ListFiles() const {
        std::set<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(PathFromUtf8(File(""))))
            if (!fs::exists(kTranscripts / entry.path().filename()) && entry.path().filename() != "store")
                names.insert(PathToUtf8(entry.path().filename()));
        std::string text;
        for (const std::string& name : names) text += name + '\n';
        return text;
    }
};

TEST_P(Transcript, IsWhatTheCommandsPrint) {
    const UserConventions user(false);
    SetVariable("USER", "user");  // whom DEVMODEs name
    for (const char* folder : {"XDG_CONFIG_HOME", "APPDATA"}) SetVariable(folder, File("settings"));
    SetVariable("MVPT_PRODUCTS", "");
    for (const fs::directory_entry& entry : fs::directory_iterator(kTranscripts))
        if (entry.path().extension() != ".txt")
            fs::copy(entry.path(), PathFromUtf8(File(PathToUtf8(entry.path().filename()))));
    const std::string written = ReadWholeFile(GetParam());
    std::istringstream lines(written);
    std::string played;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("$ ")) played += line + '\n' + Play(line.substr(2));
    if (std::getenv("MV_WRITE_TRANSCRIPTS")) std::ofstream(GetParam(), std::ios::binary) << played;
    EXPECT_EQ(played, written);
}

std::vector<fs::path> ListTranscripts() {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(kTranscripts))
        if (IsPlayable(entry.path())) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

INSTANTIATE_TEST_SUITE_P(Of, Transcript, testing::ValuesIn(ListTranscripts()),
                         [](const auto& instance) { return instance.param.stem().string(); });

}  // namespace
