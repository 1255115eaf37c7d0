// Queries over libxml2's XPath.
#include "domxpath.h"

#include "domname.h"
#include "domparser.h"
#include "dompath.h"

#include <libxml/xpathInternals.h>

#include <algorithm>
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

// A single declaration in plain letters, as nearly everybody sets it; false for any other text.
bool ReadPlainDeclaration(std::string_view text, Selector::Bindings* bindings) {
    constexpr std::string_view kStart = "xmlns:";
    const std::size_t equals = text.find('=');
    if (!text.starts_with(kStart) || equals == std::string_view::npos || text.size() < equals + 3) return false;
    const std::string_view prefix = text.substr(kStart.size(), equals - kStart.size());
    const std::string_view uri = text.substr(equals + 2, text.size() - equals - 3);
    const char quote = text[equals + 1];
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); };
    const auto isPlain = [&](char c) { return c > ' ' && c < 0x7F && c != '&' && c != '<' && c != quote; };
    if ((quote != '"' && quote != '\'') || text.back() != quote || prefix.empty() || prefix[0] <= '9') return false;
    if (!std::all_of(prefix.begin(), prefix.end(), isLetter) || !std::all_of(uri.begin(), uri.end(), isPlain) ||
        !IsDeclarable(prefix, uri))
        return false;
    bindings->emplace_back(prefix, uri);
    return true;
}

// The declarations of a property's text. The parser of documents reads them, as the attributes of an element.
bool ReadDeclarations(const std::string& declarations, Selector::Bindings* pairs) {
    if (ReadPlainDeclaration(declarations, pairs)) return true;
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

Selector::Selector(DomTree& tree, Bindings bindings) noexcept
    : document_(tree.GetDocument()), bindings_(std::move(bindings)) {
    // XPath has no default namespace: a name without a prefix is one without a namespace.
    std::erase_if(bindings_, [](const auto& binding) { return binding.first.empty() || binding.first == "xml"; });
}

std::string_view Selector::FindUri(std::string_view prefix) const noexcept {
    if (prefix == "xml") return kXmlNamespace;
    for (const auto& [bound, uri] : bindings_)
        if (bound == prefix) return uri;
    return {};
}

void Selector::MakeContext() {
    if (context_) return;
    std::unique_ptr<xmlXPathContext, Deleter> context(xmlXPathNewContext(document_));
    if (!context) throw std::bad_alloc();
    context->error = [](void*, auto*) {};  // the result says enough; by default the library prints
    for (const auto& [prefix, uri] : bindings_)
        if (xmlXPathRegisterNs(context.get(), XmlChars(prefix.c_str()), XmlChars(uri.c_str())) != 0)
            throw std::bad_alloc();
    context_ = std::move(context);
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
        if (query[i + 1] != ':' && FindUri(name).empty()) return false;
        i += query[i + 1] == ':' ? 2 : 1;
    }
    return true;
}

HRESULT Selector::Select(xmlNode* from, const std::string& query, std::size_t limit, std::vector<xmlNode*>* found) {
    if (query.find('\0') != std::string::npos || !xmlCheckUTF8(XmlChars(query.c_str()))) return E_FAIL;
    const auto bindings = [this](const std::string& prefix) { return FindUri(prefix); };
    if (const std::optional<PathQuery> path = PathQuery::Read(query, bindings)) {
        path->Select(from, limit, found);
        return S_OK;
    }
    return Evaluate(from, query, found);
}

HRESULT Selector::Evaluate(xmlNode* from, const std::string& query, std::vector<xmlNode*>* found) {
    MakeContext();
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
        Selector::Bindings bindings;
        ReadDeclarations(tree.settings.selectionNamespaces, &bindings);  // was read once, when it was set
        tree.selector = std::make_unique<Selector>(tree, std::move(bindings));
    }
    return tree.selector->Select(from, RawToUtf8(ViewOf(query)), limit, found);
}

HRESULT SetSelectionNamespaces(DomTree& tree, const std::string& declarations) {
    if (declarations == tree.settings.selectionNamespaces) return S_OK;
    Selector::Bindings bindings;
    const bool isWellFormed = ReadDeclarations(declarations, &bindings);
    tree.settings.selectionNamespaces = isWellFormed ? declarations : std::string();
    tree.selector.reset();  // the next query registers the new ones
    return isWellFormed ? S_OK : E_FAIL;
}

}  // namespace dom
