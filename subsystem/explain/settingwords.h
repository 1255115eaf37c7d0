// Settings of Print Schema documents in words, and whether two of them say the same.
#pragma once

#include <optional>

#include <subsystem/schemasettings.h>

inline constexpr std::string_view kMediaSizeKeyword = "PageMediaSize";

// The name that people use; the name in the document where they have none.
std::string NameSetting(const SchemaSetting& setting);
// A feature's option, or an option of it by itself: "NorthAmericaLetter, 215.9 x 279.4 mm".
std::string DescribeOption(const SchemaSetting& feature, const SchemaOption& option);
// What the setting says: its first option, or its text.
std::string DescribeSetting(const SchemaSetting& setting);

// Whether both options say the same: by name, papers by name and size, options without a name by their scored
// properties.
bool OptionsAgree(const SchemaSetting& feature, const SchemaOption& a, const SchemaOption& b);
// Whether both settings say the same; numbers are compared as numbers.
bool SettingsAgree(const SchemaSetting& a, const SchemaSetting& b);

// The width and height of a paper's option in micrometres, given directly or by parameters of either kind of custom
// size; nothing unless both are whole numbers.
struct OptionSize {
    std::int64_t width, height;
};
std::optional<OptionSize> GetOptionSize(const SchemaOption& option);
bool IsCustomSize(const SchemaOption& option);
