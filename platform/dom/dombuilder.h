// DomBuilder: makes elements of the tags that the parser reads, in which declarations and attributes stand in the order
// in which they were written, and works out their namespaces.
#pragma once

#include "domscope.h"
#include "domtree.h"

#include <libxml/parser.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dom {

struct QName;

// A start tag's attribute. The parser keeps each name once, so that equal names are the same pointer.
struct ReadAttribute {
    struct TextDeleter {
        void operator()(xmlChar* text) const noexcept { xmlFree(text); }
    };
    const xmlChar* name;
    std::unique_ptr<xmlChar, TextDeleter> value;
};

class DomBuilder {
public:
    explicit DomBuilder(DomTree& tree);

    // The element becomes the parser's current node. Says why not in failure.
    void StartElement(xmlParserCtxt* parser, const xmlChar* name, const std::vector<ReadAttribute>& attributes);
    void EndElement(xmlParserCtxt* parser, const xmlChar* name);
    // The first failure is the one that is reported.
    void Fail(const std::string& reason, int line, int column);
    // At the place where the parser is, which then stops.
    void FailHere(xmlParserCtxt* parser, const std::string& reason);

    ParseFailure failure;
    bool outOfMemory = false;

private:
    std::string CheckNames(const std::vector<ReadAttribute>& attributes);
    std::string Declare(const std::vector<ReadAttribute>& attributes);
    std::string Resolve(std::string_view name, bool isElement, QName* parts, xmlNs** space) const;
    std::string AddAttributes(xmlNode* element, const std::vector<ReadAttribute>& attributes) const;

    DomTree& tree_;
    DomScope<xmlNs*> scope_;  // the default namespace under the empty prefix; null where it is taken back
    std::vector<const xmlChar*> names_;
};

}  // namespace dom
