// OfferedOptions: what a PrintCapabilities offers, as tickets that select it, and as what is looked for in tickets.
#pragma once

#include <subsystem/schemacheck/schematree.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

// Names are expanded: "{namespace}local".
struct OfferedOption {
    std::string feature;         // its name
    std::string name;            // empty where scored properties alone tell it
    const SchemaElement* place;  // in the capabilities
};

struct OfferedParameter {
    std::string name;
    const SchemaElement* place;
    std::vector<std::string> values;  // smallest, default and largest
};

// By the names of features: the option that a ticket selects, as "name; scored property=value; ...".
using SelectedOptions = std::map<std::string, std::string>;

class OfferedOptions {
public:
    // Throws InputError when the text is no document.
    explicit OfferedOptions(std::string_view capabilities);

    const std::vector<OfferedOption>& GetOptions() const noexcept { return options_; }
    // Whole numbers that no option refers to.
    const std::vector<OfferedParameter>& GetParameters() const noexcept { return parameters_; }

    // A ticket that selects the options, the parameters that they refer to at their defaults.
    std::string SelectOptions(const std::vector<const OfferedOption*>& options) const;
    std::string SetParameter(const OfferedParameter& parameter, const std::string& value) const;
    // "psk:PageMediaSize psk:ISOA4", for people.
    static std::string Describe(const OfferedOption& option);

private:
    std::string MakeRootStart() const;

    SchemaDocument document_;
    std::vector<OfferedOption> options_;
    std::vector<OfferedParameter> parameters_;
};

// What a ticket says. Throws InputError when the text is no document.
SelectedOptions ReadSelectedOptions(std::string_view ticket);
// The value of the ticket's parameter; empty when it has none. A provider may state under a name of its own namespace
// what it offers under that of the keywords.
std::string ReadParameter(std::string_view ticket, const OfferedParameter& parameter);
// Whether that is the offered option: the name, and all scored properties that the ticket gives.
bool IsSelected(const SelectedOptions& selected, const OfferedOption& option);
