// CheckSchemaDocument: which rules of a Print Schema document a PrintTicket or a PrintCapabilities breaks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

enum class SchemaRule {
    Document,         // UTF-8 or UTF-16; the root is PrintTicket or PrintCapabilities, version 1
    RootContent,      // the root holds features, parameters of the document's kind and properties; nothing foreign
    Content,          // text only in a Value; no attributes but those of the Print Schema
    Names,            // a name with a prefix that is declared, wherever one is required
    Duplicates,       // siblings of one kind differ in their names, options excepted
    NameStart,        // names in the root, and of parameters, begin with Job, Document or Page
    Structure,        // each element in its place, with what it must hold, at most ten deep in its own kind
    Values,           // a type of XML Schema, and a text of that type
    Choices,          // capabilities: features state their selection type; "constrained" has one of four values
    Definitions,      // capabilities: a parameter's definition is whole, its default within its bounds
    References,       // what a ParameterRef names is in the document
    DistinctOptions,  // options of one feature differ in their name or in their scored properties
    Sizes,            // sizes are integers of micrometres, positive; their bounds and defaults are not negative
};

// "RootContent"
const char* NameRule(SchemaRule rule);

struct SchemaFinding {
    int line = 0;  // where the element starts, from 1
    SchemaRule rule = SchemaRule::Document;
    bool isNote = false;   // what the driver's component must write against the rule: nothing to mend
    std::string sentence;  // UTF-8, without a final full stop
};

// The breaks and notes by their line. The bytes are read by another parser than the component's documents. Throws
// InputError, with the place, when they are no XML, are in another encoding than they say or hold a document type
// declaration.
std::vector<SchemaFinding> CheckSchemaDocument(std::string_view bytes);
