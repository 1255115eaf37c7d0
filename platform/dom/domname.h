// Names of elements and attributes, and the prefixes that are bound where they stand.
#pragma once

#include "domtree.h"

#include <string>
#include <string_view>

namespace dom {

struct QName {
    std::string_view prefix;  // empty: none
    std::string_view local;
};

// Splits at the first colon.
QName SplitName(std::string_view name);
// Whether the text is a name that a namespace-aware document can hold.
bool IsQName(const std::string& name);
// Whether an attribute of that name declares a namespace: "xmlns" or "xmlns:" and a prefix.
bool IsDeclarationName(std::string_view name);
// The prefix that a declaration declares; empty for the default namespace.
std::string_view DeclaredPrefix(std::string_view declarationName);
std::string_view DeclaredPrefix(const xmlAttr* declaration);
// Whether the prefix (empty: the default namespace) may be declared for the URI. That of xml may not, although XML
// would let it be declared for its own.
bool IsDeclarable(std::string_view prefix, std::string_view uri);

// The name of an element or attribute as it is written.
std::string WholeName(const xmlNode* node);
bool HasWholeName(const xmlNode* node, std::string_view name);
std::string_view NamespaceOf(const xmlNode* node);
// An attribute's text: at most one node holds it.
std::string_view AttributeText(const xmlAttr* attribute);

// The namespace record for the name that a new element or attribute is to have, from the URI that came with it: a name
// with a prefix needs a URI (that of xml is known). False when name and URI do not go together.
bool NamespaceForName(DomTree& tree, const QName& name, std::string_view uri, xmlNs** space);
// The URI that the prefix stands for at the element, by the names that use it and the declarations in scope; empty for
// none.
std::string_view BoundNamespace(const xmlNode* element, std::string_view prefix);
// Whether the element's own name, an attribute or a declaration on it, other than the one given, says that the prefix
// stands for another URI. Nothing that contradicts is ever put on an element: it could not be written.
bool ContradictsPrefix(const xmlNode* element, const xmlAttr* except, std::string_view prefix, std::string_view uri);
// Whether the declaration, with the text given, can stand on the element beside all else but the attribute excepted.
bool CanDeclare(const xmlNode* element, const xmlAttr* except, const xmlAttr* declaration, std::string_view uri);

}  // namespace dom
