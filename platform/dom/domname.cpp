// Names, their namespaces, and what a prefix is bound to.
#include "domname.h"

#include <libxml/tree.h>

namespace dom {

QName SplitName(std::string_view name) {
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos) return {{}, name};
    return {name.substr(0, colon), name.substr(colon + 1)};
}

bool IsQName(const std::string& name) {
    return name.find('\0') == std::string::npos && xmlValidateQName(XmlChars(name.c_str()), 0) == 0;
}

bool IsDeclarable(std::string_view prefix, std::string_view uri) {
    return prefix != "xml" && prefix != "xmlns" && uri != kXmlNamespace && uri != kXmlnsNamespace &&
           (prefix.empty() || !uri.empty());
}

bool IsDeclarationName(std::string_view name) { return name == "xmlns" || name.starts_with("xmlns:"); }

std::string_view DeclaredPrefix(std::string_view declarationName) {
    const QName name = SplitName(declarationName);
    return name.prefix.empty() ? std::string_view() : name.local;
}

std::string_view DeclaredPrefix(const xmlAttr* declaration) { return DeclaredPrefix(ViewOf(declaration->name)); }

std::string WholeName(const xmlNode* node) {
    std::string name(ViewOf(node->name));
    if (node->ns && node->ns->prefix) name.insert(0, std::string(ViewOf(node->ns->prefix)) + ':');
    return name;
}

bool HasWholeName(const xmlNode* node, std::string_view name) {
    const std::string_view prefix = node->ns ? ViewOf(node->ns->prefix) : std::string_view();
    const std::string_view local = ViewOf(node->name);
    if (prefix.empty()) return name == local;
    return name.size() == prefix.size() + 1 + local.size() && name.starts_with(prefix) && name[prefix.size()] == ':' &&
           name.ends_with(local);
}

std::string_view NamespaceOf(const xmlNode* node) {
    if (node->type == kDeclarationType) return kXmlnsNamespace;
    const bool named = node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE;
    return named && node->ns ? ViewOf(node->ns->href) : std::string_view();
}

std::string_view AttributeText(const xmlAttr* attribute) {
    return attribute->children ? ViewOf(attribute->children->content) : std::string_view();
}

bool NamespaceForName(DomTree& tree, const QName& name, std::string_view uri, xmlNs** space) {
    if (name.prefix == "xmlns" || uri == kXmlnsNamespace) return false;
    if (name.prefix == "xml") {
        if (!uri.empty() && uri != kXmlNamespace) return false;
        uri = kXmlNamespace;
    } else if (uri == kXmlNamespace || (uri.empty() && !name.prefix.empty())) {
        return false;
    }
    *space = tree.Namespace(name.prefix, uri);
    return true;
}

namespace {

// What the element itself says of a prefix: calls say(uri) for its own name, then for each attribute and declaration
// other than the one given, where they mention it, until that answers true.
template <class Say>
bool EachBinding(const xmlNode* element, const xmlAttr* except, std::string_view prefix, Say say) {
    if (element->ns && ViewOf(element->ns->prefix) == prefix && say(ViewOf(element->ns->href))) return true;
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        if (attribute == except) continue;
        if (IsDeclaration(attribute)) {
            if (DeclaredPrefix(attribute) == prefix && say(AttributeText(attribute))) return true;
        } else if (attribute->ns && attribute->ns->prefix && ViewOf(attribute->ns->prefix) == prefix) {
            if (say(ViewOf(attribute->ns->href))) return true;
        }
    }
    return false;
}

}  // namespace

std::string_view BoundNamespace(const xmlNode* element, std::string_view prefix) {
    if (prefix == "xml") return kXmlNamespace;
    std::string_view bound;
    const auto take = [&bound](std::string_view uri) {
        bound = uri;
        return true;
    };
    for (; element && element->type == XML_ELEMENT_NODE; element = element->parent) {
        if (EachBinding(element, nullptr, prefix, take)) break;
    }
    return bound;
}

bool ContradictsPrefix(const xmlNode* element, const xmlAttr* except, std::string_view prefix, std::string_view uri) {
    return EachBinding(element, except, prefix, [uri](std::string_view bound) { return bound != uri; });
}

bool CanDeclare(const xmlNode* element, const xmlAttr* except, const xmlAttr* declaration, std::string_view uri) {
    const std::string_view prefix = DeclaredPrefix(declaration);
    if (!IsDeclarable(prefix, uri)) return false;
    return !ContradictsPrefix(element, except, prefix, uri);
}

}  // namespace dom
