// Queries over libxml2's XPath.
#include "domxpath.h"

#include "domname.h"
#include "domparser.h"
#include "dompath.h"

#include <libxml/xpathInternals.h>

#include <cctype>
#include <new>

namespace dom {
namespace {

struct ExpressionDeleter {
    void operator()(xmlXPathCompExpr* expression) const noexcept { xmlXPathFreeCompExpr(expression); }
};
struct ObjectDeleter {
    void operator()(xmlXPathObject* object) const noexcept { xmlXPathFreeObject(object); }
};

bool IsNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-' || c == '.' || (c & 0x80) != 0;
}

// The declarations of a property's text. The parser of documents reads them, as the attributes of an element.
bool ReadDeclarations(const std::string& declarations, std::vector<std::pair<std::string, std::string>>* pairs) {
    ParseFailure failure;
    const std::string element = "<x " + declarations + "/>";
    const std::shared_ptr<DomTree> tree = ParseDocument(element.data(), element.size(), kEncodingIsUtf8, &failure);
    if (!tree) return false;
    const xmlNode* const root = tree->GetDocument()->children;
    if (!root || root->next || root->children) return false;  // the text ended the element
    for (const xmlAttr* attribute = root->properties; attribute; attribute = attribute->next) {
        if (!IsDeclaration(attribute)) return false;
        pairs->emplace_back(DeclaredPrefix(attribute), AttributeText(attribute));
    }
    return true;
}

}  // namespace

Selector::Selector(DomTree& tree) : context_(xmlXPathNewContext(tree.GetDocument())) {
    if (!context_) throw std::bad_alloc();
    context_->error = [](void*, auto*) {};  // the result says enough; by default the library prints
}

void Selector::Register(const std::string& prefix, const std::string& uri) {
    // XPath has no default namespace: a name without a prefix is one without a namespace.
    if (prefix.empty() || prefix == "xml") return;
    if (xmlXPathRegisterNs(context_.get(), XmlChars(prefix.c_str()), XmlChars(uri.c_str())) != 0)
        throw std::bad_alloc();
}

bool Selector::KnowsFunction(const std::string& name) const {
    // What else may stand before a parenthesis.
    for (const char* const word : {"node", "text", "comment", "processing-instruction", "and", "or", "div", "mod"}) {
        if (name == word) return true;
    }
    return xmlXPathFunctionLookup(context_.get(), XmlChars(name.c_str())) != nullptr;
}

// libxml2 notices an unbound prefix or an unknown function only where evaluation comes to it, which may be never, and
// then prints.
bool Selector::KnowsNamesOf(const std::string& query) const {
    for (std::size_t i = 0; i < query.size();) {
        if (query[i] == '"' || query[i] == '\'') {
            i = query.find(query[i], i + 1);
            if (i == std::string::npos) return false;
            ++i;
            continue;
        }
        const std::size_t start = i;
        while (i < query.size() && IsNameCharacter(query[i])) ++i;
        if (i == start) {
            ++i;
            continue;
        }
        const std::string name = query.substr(start, i - start);
        const std::size_t after = query.find_first_not_of(" \t\r\n", i);
        if (after != std::string::npos && query[after] == '(' && !KnowsFunction(name)) return false;
        if (i + 1 >= query.size() || query[i] != ':') continue;
        if (query[i + 1] != ':' && !xmlXPathNsLookup(context_.get(), XmlChars(name.c_str()))) return false;
        i += query[i + 1] == ':' ? 2 : 1;
    }
    return true;
}

HRESULT Selector::Select(xmlNode* from, const std::string& query, std::size_t limit, std::vector<xmlNode*>* found) {
    if (query.find('\0') != std::string::npos || !xmlCheckUTF8(XmlChars(query.c_str()))) return E_FAIL;
    const auto bindings = [this](const std::string& prefix) {
        return ViewOf(xmlXPathNsLookup(context_.get(), XmlChars(prefix.c_str())));
    };
    if (const std::optional<PathQuery> path = PathQuery::Read(query, bindings)) {
        path->Select(from, limit, found);
        return S_OK;
    }
    return Evaluate(from, query, found);
}

HRESULT Selector::Evaluate(xmlNode* from, const std::string& query, std::vector<xmlNode*>* found) {
    if (!KnowsNamesOf(query)) return E_FAIL;
    const std::unique_ptr<xmlXPathCompExpr, ExpressionDeleter> expression(
        xmlXPathCtxtCompile(context_.get(), XmlChars(query.c_str())));
    if (!expression) return E_FAIL;
    context_->node = from;
    const std::unique_ptr<xmlXPathObject, ObjectDeleter> result(xmlXPathCompiledEval(expression.get(), context_.get()));
    if (!result || result->type != XPATH_NODESET) return E_FAIL;
    xmlNodeSet* const nodes = result->nodesetval;
    if (!nodes) return S_OK;
    xmlXPathNodeSetSort(nodes);
    for (int i = 0; i < nodes->nodeNr; ++i) {
        if (nodes->nodeTab[i]->type == XML_NAMESPACE_DECL) return E_FAIL;  // a namespace node is no node of the tree
    }
    found->assign(nodes->nodeTab, nodes->nodeTab + nodes->nodeNr);
    return S_OK;
}

HRESULT Select(DomTree& tree, xmlNode* from, BSTR query, std::size_t limit, std::vector<xmlNode*>* found) {
    if (ViewOf(query).empty()) return E_INVALIDARG;
    if (!tree.selector) {
        auto selector = std::make_unique<Selector>(tree);
        std::vector<std::pair<std::string, std::string>> pairs;
        ReadDeclarations(tree.settings.selectionNamespaces, &pairs);  // was read once, when it was set
        for (const auto& [prefix, uri] : pairs) selector->Register(prefix, uri);
        tree.selector = std::move(selector);
    }
    return tree.selector->Select(from, RawToUtf8(ViewOf(query)), limit, found);
}

HRESULT SetSelectionNamespaces(DomTree& tree, const std::string& declarations) {
    if (declarations == tree.settings.selectionNamespaces) return S_OK;
    std::vector<std::pair<std::string, std::string>> pairs;
    const bool isWellFormed = ReadDeclarations(declarations, &pairs);
    tree.settings.selectionNamespaces = isWellFormed ? declarations : std::string();
    tree.selector.reset();  // the next query registers the new ones
    return isWellFormed ? S_OK : E_FAIL;
}

}  // namespace dom
