// Settings of Print Schema documents in words, and whether two of them say the same.
#include "settingwords.h"

#include <subsystem/settingnames.h>

#include <algorithm>

#include <subsystem/driverdata.h>
#include "paperwords.h"

namespace {

constexpr std::size_t kLongestText = 60;  // bytes of a parameter's text that are shown

// Cut where it is long; of what is no text for people the length.
std::string Shorten(const std::string& text) {
    std::string line = text.substr(0, kLongestText);
    if (text.size() > kLongestText) {
        if (line.find_first_of(" \t\r\n") == std::string::npos) return std::to_string(text.size()) + " characters";
        std::size_t end = kLongestText;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;  // whole characters only
        line = text.substr(0, end) + "... (" + std::to_string(text.size()) + " characters)";
    }
    for (char& character : line)
        if (static_cast<unsigned char>(character) < ' ') character = ' ';
    return line;
}

}  // namespace

std::string NameSetting(const SchemaSetting& setting) {
    if (setting.name.isPrivate && setting.name.local == facts::kDriverDataParameter) return "Driver data";
    if (setting.name.isPrivate && setting.name.local == facts::kJobTicketParameter) return "Job ticket";
    const char* name =
        setting.name.IsKeyword() || setting.name.isPrivate ? FindKeywordName(setting.name.local) : nullptr;
    if (name) return setting.name.isPrivate ? std::string(name) + " (of the driver)" : name;
    const std::string text = setting.name.text.empty() ? "(no name)" : setting.name.text;
    return setting.parents + text;
}

std::optional<OptionSize> GetOptionSize(const SchemaOption& option) {
    for (const auto& [widthName, heightName] :
         {std::pair("MediaSizeWidth", "MediaSizeHeight"), std::pair("PSWidth", "PSHeight")}) {
        const std::optional<std::int64_t> width = option.FindNumber(widthName);
        const std::optional<std::int64_t> height = option.FindNumber(heightName);
        if (width && height) return OptionSize{*width, *height};
    }
    return std::nullopt;
}

bool IsCustomSize(const SchemaOption& option) {
    return option.name.local == "CustomMediaSize" || option.name.local == "PSCustomMediaSize";
}

std::string DescribeOption(const SchemaSetting& feature, const SchemaOption& option) {
    const std::string& name = option.name.local;
    if (feature.name.local == kMediaSizeKeyword) {
        const std::optional<OptionSize> size = GetOptionSize(option);
        if (!size || size->width < 1 || size->height < 1) return name.empty() ? "(no name and no size)" : name;
        const auto clamp = [](std::int64_t side) {
            return static_cast<LONG>(std::min<std::int64_t>(side, 0x7FFFFFFF));
        };
        return (name.empty() ? "" : name + ", ") + DescribeSize(clamp(size->width), clamp(size->height));
    }
    if (!name.empty()) return name;
    const std::optional<std::int64_t> x = option.FindNumber("ResolutionX"), y = option.FindNumber("ResolutionY");
    if (x && y) return std::to_string(*x) + " x " + std::to_string(*y) + " dpi";
    std::string text;
    for (const auto& [score, value] : option.scores)
        text.append(text.empty() ? "" : ", ").append(score).append(" ").append(value);
    return text.empty() ? "(no name)" : Shorten(text);
}

std::string DescribeSetting(const SchemaSetting& setting) {
    switch (setting.kind) {
        case SchemaSetting::Kind::Feature:
            return setting.options.empty() ? std::string() : DescribeOption(setting, setting.options.front());
        case SchemaSetting::Kind::Parameter:
            return Shorten(setting.text);
        case SchemaSetting::Kind::Property:
            break;
    }
    return std::string();
}

bool OptionsAgree(const SchemaSetting& feature, const SchemaOption& a, const SchemaOption& b) {
    if (!a.name.text.empty() && !b.name.text.empty() && feature.name.local != "PageResolution") {
        if (!(a.name == b.name)) return false;
        if (feature.name.local != kMediaSizeKeyword) return true;
    }
    if (feature.name.local == kMediaSizeKeyword) {
        const std::optional<OptionSize> first = GetOptionSize(a), second = GetOptionSize(b);
        if (!first || !second) return a.name == b.name;  // the name alone gives the size
        if (IsCustomSize(a) != IsCustomSize(b)) return false;
        return first->width == second->width && first->height == second->height;
    }
    bool common = false;
    for (const auto& [score, value] : a.scores) {
        const std::string* other = b.FindScore(score);
        if (other && *other != value) return false;
        common = common || other;
    }
    return common || a.name == b.name;
}

bool SettingsAgree(const SchemaSetting& a, const SchemaSetting& b) {
    if (a.kind == SchemaSetting::Kind::Feature) {
        if (a.options.empty() || b.options.empty()) return a.options.empty() == b.options.empty();
        return OptionsAgree(a, a.options.front(), b.options.front());
    }
    if (a.text == b.text) return true;
    const std::optional<std::int64_t> first = a.GetNumber(), second = b.GetNumber();
    return first && second && *first == *second;
}
