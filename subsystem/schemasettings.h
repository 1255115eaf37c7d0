// What a Print Schema document selects (a PrintTicket) or offers (a PrintCapabilities): its features with their
// options, its parameters and its properties, by expanded names.
#pragma once

#include <msxml2.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// A name as "prefix:local" in the document. All text is UTF-8.
struct SchemaName {
    std::string text;   // as it is written; empty when there is none
    std::string uri;    // what the prefix stands for there; empty when it has none, or one that is not declared
    std::string local;  // behind the colon
    bool hasUndeclaredPrefix = false;
    bool isPrivate = false;  // of this driver family, as the component finds its own names in the document

    bool IsKeyword() const;      // of the published Print Schema
    std::string GetKey() const;  // equal for the same name in another document
    friend bool operator==(const SchemaName& a, const SchemaName& b) { return a.GetKey() == b.GetKey(); }
};

struct SchemaOption {
    SchemaName name;
    // Scored properties with their values, their own or else that of the parameter that they refer to: by keyword; by
    // the whole name where it is no keyword.
    std::vector<std::pair<std::string, std::string>> scores;

    const std::string* FindScore(std::string_view name) const;
    // The score as a whole decimal number; nothing when it is none.
    std::optional<std::int64_t> FindNumber(std::string_view name) const;
};

struct SchemaSetting {
    enum class Kind { Feature, Parameter, Property };
    Kind kind;
    SchemaName name;
    std::string parents;                // names of the features around it, each with "/" behind it
    std::vector<SchemaOption> options;  // of a feature
    std::string text;                   // of a parameter, without white space around it
    bool isReferenced = false;          // a parameter that a scored property refers to

    std::string GetKey() const;  // equal for the same setting in another document
    // A parameter's text as a whole decimal number; nothing when it is none.
    std::optional<std::int64_t> GetNumber() const;
};

// In the order of the document; features before the features inside them.
class SchemaSettings {
public:
    SchemaSettings() = default;
    explicit SchemaSettings(IXMLDOMDocument2* document);

    const std::vector<SchemaSetting>& GetAll() const noexcept { return settings_; }
    // The first of that key, or null.
    const SchemaSetting* Find(const std::string& key) const;
    // The first in the root with that keyword of the Print Schema, or that name of the driver family's; or null.
    const SchemaSetting* FindKeyword(SchemaSetting::Kind kind, std::string_view keyword) const;
    const SchemaSetting* FindPrivate(SchemaSetting::Kind kind, std::string_view name) const;

private:
    std::vector<SchemaSetting> settings_;
    std::map<std::string, std::size_t> first_;  // by key
};
