// The parser: libxml2 reads the bytes through its older callbacks, which hand over an element's attributes and
// declarations in one list as they were written; the namespaces are worked out here.
#include "domparser.h"

#include "domname.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <quietxmlerrors.h>

#include <algorithm>
#include <limits>
#include <set>
#include <vector>

namespace dom {
namespace {

struct ContextDeleter {
    void operator()(xmlParserCtxt* context) const noexcept { xmlFreeParserCtxt(context); }
};

// What one parse knows beside libxml2's own state; the context's _private points to it.
class Builder {
public:
    explicit Builder(DomTree& tree) : tree_(tree) { scope_.push_back({"xml", tree.Namespace("xml", kXmlNamespace)}); }

    static Builder& Of(void* context) { return *static_cast<Builder*>(static_cast<xmlParserCtxt*>(context)->_private); }

    void StartElement(xmlParserCtxt* parser, const xmlChar* name, const xmlChar** attributes);
    void EndElement(xmlParserCtxt* parser, const xmlChar* name);
    // The first failure is the one that is told.
    void Fail(const std::string& reason, int line, int column);
    void FailHere(xmlParserCtxt* parser, const std::string& reason);

    ParseFailure failure;
    bool outOfMemory = false;

private:
    struct Binding {
        std::string prefix;
        xmlNs* space;
    };
    bool Declare(const xmlChar** attributes, std::string* reason);
    bool Resolve(std::string_view name, bool isElement, QName* parts, xmlNs** space, std::string* reason) const;
    bool AddAttributes(xmlNode* element, const xmlChar** attributes, std::string* reason);

    DomTree& tree_;
    std::vector<Binding> scope_;
    std::vector<std::size_t> marks_;  // the scope's size before each open element
};

void Builder::Fail(const std::string& reason, int line, int column) {
    if (!failure.reason.empty()) return;
    failure = {reason, line, column};
    std::replace(failure.reason.begin(), failure.reason.end(), '\n', ' ');
    failure.reason.resize(failure.reason.find_last_not_of(" .") + 1);
    if (failure.reason.empty()) failure.reason = "the document is not well-formed";
}

void Builder::FailHere(xmlParserCtxt* parser, const std::string& reason) {
    Fail(reason, parser->input ? parser->input->line : 0, parser->input ? parser->input->col : 0);
    xmlStopParser(parser);
}

bool Builder::Declare(const xmlChar** attributes, std::string* reason) {
    for (; attributes && *attributes; attributes += 2) {
        const std::string_view name = ViewOf(attributes[0]);
        const std::string_view uri = ViewOf(attributes[1]);
        if (!IsDeclarationName(name)) continue;
        const std::string_view prefix = DeclaredPrefix(name);
        if (!IsQName(std::string(name)) || !IsDeclarable(prefix, uri)) {
            *reason = "the namespace declaration '" + std::string(name) + "' is not allowed";
            return false;
        }
        scope_.push_back({std::string(prefix), tree_.Namespace(prefix, uri)});
    }
    return true;
}

bool Builder::Resolve(std::string_view name, bool isElement, QName* parts, xmlNs** space, std::string* reason) const {
    if (!IsQName(std::string(name))) {
        *reason = "'" + std::string(name) + "' is not a qualified name";
        return false;
    }
    *parts = SplitName(name);
    *space = nullptr;
    if (parts->prefix.empty() && !isElement) return true;
    for (auto binding = scope_.rbegin(); binding != scope_.rend(); ++binding) {
        if (binding->prefix != parts->prefix) continue;
        *space = binding->space;
        return true;
    }
    if (parts->prefix.empty()) return true;
    *reason = "the prefix '" + std::string(parts->prefix) + "' is not declared";
    return false;
}

bool Builder::AddAttributes(xmlNode* element, const xmlChar** attributes, std::string* reason) {
    std::set<std::pair<std::string_view, std::string_view>> seen;  // expanded names of those with a prefix
    xmlNode* last = nullptr;
    for (; attributes && *attributes; attributes += 2) {
        const std::string_view name = ViewOf(attributes[0]);
        const bool isDeclaration = IsDeclarationName(name);
        QName parts{{}, name};
        xmlNs* space = nullptr;
        if (!isDeclaration && !Resolve(name, false, &parts, &space, reason)) return false;
        if (space && !seen.insert({ViewOf(space->href), parts.local}).second) {
            *reason = "the attribute '" + std::string(name) + "' occurs twice under different prefixes";
            return false;
        }
        const xmlElementType type = isDeclaration ? kDeclarationType : XML_ATTRIBUTE_NODE;
        OwnedNode attribute = NewAttribute(element->doc, type, space, std::string(parts.local));
        if (attributes[1] && *attributes[1]) {
            LinkLast(attribute.get(), NewContentNode(element->doc, XML_TEXT_NODE, {}, Chars(attributes[1])));
        }
        // LinkLast would look for the end of the list each time.
        attribute->parent = element;
        attribute->prev = last;
        xmlNode* const linked = attribute.release();
        if (last) {
            last->next = linked;
        } else {
            element->properties = AsAttribute(linked);
        }
        last = linked;
    }
    return true;
}

void Builder::StartElement(xmlParserCtxt* parser, const xmlChar* name, const xmlChar** attributes) {
    marks_.push_back(scope_.size());
    QName parts;
    xmlNs* space = nullptr;
    std::string reason;
    if (!Declare(attributes, &reason) || !Resolve(ViewOf(name), true, &parts, &space, &reason)) {
        FailHere(parser, reason);
        return;
    }
    // Without a prefix and without attributes libxml2's own handler makes the node, links it and keeps its stack.
    const xmlNode* const parent = parser->node;
    xmlSAX2StartElement(parser, XmlChars(std::string(parts.local).c_str()), nullptr);
    if (parser->node == parent || !parser->node) throw std::bad_alloc();
    parser->node->ns = space;
    if (!AddAttributes(parser->node, attributes, &reason)) FailHere(parser, reason);
}

void Builder::EndElement(xmlParserCtxt* parser, const xmlChar* name) {
    scope_.resize(marks_.back());
    marks_.pop_back();
    xmlSAX2EndElement(parser, name);
}

// ---- libxml2's callbacks; no exception may pass through its frames
// ------------------------------------------------------
extern "C" {

void OnStartElement(void* context, const xmlChar* name, const xmlChar** attributes) {
    auto* const parser = static_cast<xmlParserCtxt*>(context);
    Builder& builder = Builder::Of(context);
    try {
        builder.StartElement(parser, name, attributes);
    } catch (...) {
        builder.outOfMemory = true;
        xmlStopParser(parser);
    }
}

void OnEndElement(void* context, const xmlChar* name) {
    Builder::Of(context).EndElement(static_cast<xmlParserCtxt*>(context), name);
}

void OnDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    auto* const parser = static_cast<xmlParserCtxt*>(context);
    Builder& builder = Builder::Of(context);
    try {
        builder.FailHere(parser, "a document type declaration (<!DOCTYPE) is not accepted");
    } catch (...) {
        builder.outOfMemory = true;
        xmlStopParser(parser);
    }
}

// The library has noted the error in the context when it comes here.
void OnError(void* context, const char*, ...) {
    Builder& builder = Builder::Of(context);
    const xmlError& error = static_cast<xmlParserCtxt*>(context)->lastError;
    try {
        builder.Fail(error.message ? error.message : "", error.line, error.int2);
    } catch (...) {
        builder.outOfMemory = true;
    }
}

void OnWarning(void*, const char*, ...) {}

}  // extern "C"

constexpr int kOptions = XML_PARSE_NONET     // nothing is fetched
                         | XML_PARSE_NODICT  // strings belong to their nodes, so that nodes can move between documents
                         | XML_PARSE_NOENT;  // attribute values come with their references resolved

xmlDoc* Parse(Builder& builder, const void* bytes, int length, int options) {
    const std::unique_ptr<xmlParserCtxt, ContextDeleter> parser(xmlNewParserCtxt());
    if (!parser) throw std::bad_alloc();
    parser->_private = &builder;
    parser->sax->startElementNs = nullptr;
    parser->sax->endElementNs = nullptr;
    parser->sax->startElement = OnStartElement;
    parser->sax->endElement = OnEndElement;
    parser->sax->internalSubset = OnDocumentType;
    parser->sax->initialized = 1;  // with the mark of the newer interface the library would pass over all of these
    parser->sax->error = OnError;
    parser->sax->fatalError = OnError;
    parser->sax->warning = OnWarning;
    const QuietXmlErrors quiet;
    return xmlCtxtReadMemory(parser.get(), static_cast<const char*>(bytes), length, nullptr, nullptr, options);
}

}  // namespace

std::shared_ptr<DomTree> ParseDocument(const void* bytes, std::size_t length, Encoding encoding,
                                       ParseFailure* failure) {
    auto tree = std::make_shared<DomTree>();
    Builder builder(*tree);
    if (!bytes || length == 0) {
        builder.Fail("the document is empty", 0, 0);
    } else if (length > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        builder.Fail("the document is too large", 0, 0);
    } else {
        const int options = kOptions | (encoding == kEncodingIsUtf8 ? XML_PARSE_IGNORE_ENC : 0);
        xmlDoc* const document = Parse(builder, bytes, static_cast<int>(length), options);
        if (document) {
            tree->TakeDocument(document);
        } else if (!builder.outOfMemory) {
            builder.Fail("", 0, 0);
        }
    }
    if (builder.outOfMemory) throw std::bad_alloc();
    if (!builder.failure.reason.empty()) {
        *failure = builder.failure;
        return nullptr;
    }
    return tree;
}

void StripWhiteSpace(DomTree& tree) {
    std::vector<xmlNode*> blanks;
    std::vector<bool> keeps = {false};
    const auto enter = [&](xmlNode* node) {
        if (node->type == XML_ELEMENT_NODE) {
            bool keep = keeps.back();
            for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
                if (HasWholeName(reinterpret_cast<const xmlNode*>(attribute), "xml:space")) {
                    keep = AttributeText(attribute) == "preserve";
                }
            }
            keeps.push_back(keep);
        } else if (node->type == XML_TEXT_NODE && !keeps.back() && xmlIsBlankNode(node)) {
            blanks.push_back(node);
        }
    };
    const auto leave = [&keeps](const xmlNode* node) {
        if (node->type == XML_ELEMENT_NODE) keeps.pop_back();
    };
    WalkSubtree(AsNode(tree.Document()), enter, leave);
    for (xmlNode* const node : blanks) tree.Discard(node);
}

std::string Describe(const ParseFailure& failure) {
    std::string place;
    if (failure.line > 0)
        place = "line " + std::to_string(failure.line) + ", column " + std::to_string(failure.column) + ": ";
    return place + failure.reason + ".";
}

}  // namespace dom
