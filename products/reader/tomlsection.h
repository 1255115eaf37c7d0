// TomlSection: one table of a product file, read key by key, each value checked and each mistake reported with its
// line.
#pragma once

#include <products/reader/productdescription.h>

#include "tomlparser.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <vector>

// Number of UTF-16 units that a valid UTF-8 text takes.
std::size_t CountUtf16Units(std::string_view utf8) noexcept;

// Refers to the table and the file's name; both must outlive it. Every failing call throws ProductError.
class TomlSection {
public:
    static constexpr std::size_t kLongestText = 1000;
    static constexpr std::int64_t kLargest = std::numeric_limits<LONG>::max();

    // The title leads to the table in messages: "" for the root, "papers[3]". With a list of faults, which must outlive
    // the section, reading goes on behind a mistake as Try says.
    TomlSection(const std::string& file, const toml::table& table, std::string title,
                std::vector<std::string>* faults = nullptr);

    // Runs what reads one entry. With a list of faults what it throws is noted there, and the next entry can be read.
    template <class Read>
    void Try(Read read) const {
        try {
            read();
        } catch (const ProductError& error) {
            if (!faults_) throw;
            faults_->push_back(error.what());
        }
    }

    std::size_t GetLine() const noexcept;  // where it begins, from 1
    bool Has(std::string_view key) const { return table_.contains(key); }
    // Texts hold no control characters. Lengths are in UTF-16 units.
    std::string GetText(std::string_view key, std::size_t longest = kLongestText);  // not empty
    std::optional<std::string> GetTextIfGiven(std::string_view key, std::size_t longest = kLongestText);
    std::int64_t GetInteger(std::string_view key, std::int64_t lowest, std::int64_t highest = kLargest);
    std::optional<std::int64_t> GetIntegerIfGiven(std::string_view key, std::int64_t lowest,
                                                  std::int64_t highest = kLargest);
    bool GetBoolean(std::string_view key, bool byDefault);
    std::vector<DWORD> GetIntegers(std::string_view key, std::int64_t lowest, std::int64_t highest);  // none twice
    std::vector<std::string> GetTexts(std::string_view key);                                          // none twice
    std::optional<TomlSection> GetSection(std::string_view key);
    std::vector<TomlSection> GetSections(std::string_view key);  // an array of tables
    // Keys of a section whose keys are numbers, ascending.
    std::vector<std::pair<DWORD, std::string>> GetNumbers(DWORD highest);
    const toml::node* Find(std::string_view key);

    // A key that nobody asked for is a mistake.
    void RefuseOtherKeys() const;
    [[noreturn]] void Fail(std::string_view key, const std::string& expected) const;  // got: the key's value

private:
    const toml::node& Get(std::string_view key, const char* expected);
    [[noreturn]] void Fail(std::string_view key, const toml::node* node, const std::string& expected) const;
    const toml::array* GetArray(std::string_view key, const char* expected);
    std::string CheckedText(std::string_view key, const toml::node& node, std::size_t shortest,
                            std::size_t longest) const;
    std::int64_t CheckedInteger(std::string_view key, const toml::node& node, std::int64_t lowest,
                                std::int64_t highest) const;

    const std::string& file_;
    const toml::table& table_;
    std::string title_;
    std::vector<std::string>* faults_;
    std::set<std::string, std::less<>> asked_;
};
