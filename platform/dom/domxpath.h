// Queries: XPath 1.0 from a node, with the prefixes of the document's property SelectionNamespaces.
#pragma once

#include "domtree.h"

#include <libxml/xpath.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dom {

// A document's prefixes, and libxml2's evaluation context once a query needs it; kept with the tree, for making that
// costs more than a query.
class Selector {
public:
    using Bindings = std::vector<std::pair<std::string, std::string>>;  // prefixes and their URIs

    Selector(DomTree& tree, Bindings bindings) noexcept;
    HRESULT Select(xmlNode* from, const std::string& query, std::size_t limit, std::vector<xmlNode*>* found);

private:
    HRESULT Evaluate(xmlNode* from, const std::string& query, std::vector<xmlNode*>* found);
    std::string_view FindUri(std::string_view prefix) const noexcept;
    void MakeContext();
    bool KnowsFunction(const std::string& name) const;
    bool KnowsNamesOf(const std::string& query) const;

    struct Deleter {
        void operator()(xmlXPathContext* context) const noexcept { xmlXPathFreeContext(context); }
    };
    xmlDoc* document_;
    Bindings bindings_;
    std::unique_ptr<xmlXPathContext, Deleter> context_;
};

inline constexpr std::size_t kEveryNode = static_cast<std::size_t>(-1);

// The nodes that the query selects, in document order; whoever wants but some of them says how many, and may get more.
// E_INVALIDARG for a null or empty query, E_FAIL for one that is
// malformed, uses a prefix that is not bound, or does not select nodes.
HRESULT Select(DomTree& tree, xmlNode* from, BSTR query, std::size_t limit, std::vector<xmlNode*>* found);

// Sets the property: declarations as in a start tag, in either kind of quotes. E_FAIL, and no prefix is bound any more,
// when the text is anything else.
HRESULT SetSelectionNamespaces(DomTree& tree, const std::string& declarations);

}  // namespace dom
