// SchemaElement: a Print Schema document as a plain tree whose elements know their lines.
#pragma once

#include <facts/printschemanamespaces.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Element of the framework by its local name; Unknown: another element of the framework; Foreign: of another namespace.
enum class SchemaKind {
    PrintTicket,
    PrintCapabilities,
    Feature,
    Option,
    ScoredProperty,
    Property,
    ParameterDef,
    ParameterInit,
    ParameterRef,
    Value,
    Unknown,
    Foreign,
};

struct SchemaAttribute {
    std::string prefix, local, uri, value;
};

// A qualified name that stands in an attribute or a text, read where the document's declarations are known.
struct ExpandedName {
    std::string prefix, local, uri;
    bool isQName = false;  // one prefix at most, and both parts are names
    bool isBound = false;  // the prefix is declared, or there is none

    bool Is(std::string_view namespaceUri, std::string_view name) const {
        return isBound && uri == namespaceUri && local == name;
    }
    // Equal for equal names, whatever their prefixes.
    std::string GetKey() const { return isBound ? "{" + uri + "}" + local : prefix + ":" + local; }
};

struct SchemaElement {
    SchemaElement* parent = nullptr;  // null for the root
    SchemaKind kind = SchemaKind::Foreign;
    int line = 0;
    std::string prefix, local;
    std::vector<SchemaAttribute> attributes;          // declarations are not among them
    std::map<std::string, std::string> declarations;  // prefix (empty: the default namespace) to URI
    std::string text;                                 // its own character data
    bool holdsRemark = false;                         // a comment or a processing instruction of its own
    std::vector<std::unique_ptr<SchemaElement>> children;

    // The attribute of that namespace (empty: none); null when there is none.
    const std::string* FindAttribute(std::string_view local, std::string_view uri = {}) const;
    ExpandedName Expand(std::string_view qualifiedName) const;
    // Of the attribute "name"; not a QName when there is none.
    ExpandedName GetName() const;
    const SchemaElement* FindChild(SchemaKind kind) const;                                  // the first
    const SchemaElement* FindProperty(std::string_view uri, std::string_view local) const;  // the first child Property
    std::string Describe() const;  // "the Feature 'psk:PageMediaSize'"
};

struct SchemaDocument {
    std::unique_ptr<SchemaElement> root;
    std::string encoding;  // as stated or detected; empty: UTF-8
};

// Throws InputError when the bytes are no XML with its prefixes declared, or hold a document type declaration.
SchemaDocument ReadSchemaDocument(std::string_view bytes);

std::string_view TrimXmlSpace(std::string_view text);
