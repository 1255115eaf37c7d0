// The parser: libxml2 reads the prolog, the names and all that elements hold; the elements themselves are read here.
// Its own reader compares each attribute with all those in front of it.
#include "domparser.h"

#include "dombuilder.h"
#include "domname.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <quietxmlerrors.h>

#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace dom {
namespace {

struct ContextDeleter {
    void operator()(xmlParserCtxt* context) const noexcept {
        xmlFreeDoc(context->myDoc);
        xmlFreeParserCtxt(context);
    }
};

DomBuilder& BuilderOf(void* context) {
    return *static_cast<DomBuilder*>(static_cast<xmlParserCtxt*>(context)->_private);
}

// What follows the XML declaration. Each step ends at a failure, which the builder has been notified of.
class ContentReader {
public:
    ContentReader(xmlParserCtxt* parser, DomBuilder& builder) : parser_(parser), builder_(builder) {}

    void Read() {
        xmlParseMisc(parser_);
        if (Starts("<!DOCTYPE")) Fail("a document type declaration (<!DOCTYPE) is not accepted");
        if (Starts("<")) {
            ReadStartTag();
            while (HasGoneWell() && !open_.empty()) ReadNext();
        } else {
            Fail("the start of the root element was expected");
        }
        xmlParseMisc(parser_);
        if (HasGoneWell() && Has(1)) Fail("there is text behind the root element");
    }

private:
    bool HasGoneWell() const { return builder_.failure.reason.empty() && !builder_.outOfMemory; }
    void Fail(const std::string& reason) { builder_.FailHere(parser_, reason); }

    const xmlParserInput& Input() const { return *parser_->input; }
    // Whether that many bytes are left; a text in another encoding comes in pieces.
    bool Has(std::size_t length) {
        const auto left = [this] { return static_cast<std::size_t>(Input().end - Input().cur); };
        if (left() < length) xmlParserInputGrow(parser_->input, kGrowth);
        return left() >= length;
    }
    bool Starts(std::string_view text) {
        return Has(text.size()) && std::memcmp(Input().cur, text.data(), text.size()) == 0;
    }
    bool Take(std::string_view text) {
        if (!Starts(text)) return false;
        for (std::size_t i = 0; i < text.size(); ++i) xmlNextChar(parser_);
        return true;
    }
    std::size_t Position() const { return Input().consumed + static_cast<std::size_t>(Input().cur - Input().base); }

    // A tag, or a piece of what an element holds.
    void ReadNext() {
        const std::size_t before = Position();
        if (Starts("</")) {
            ReadEndTag();
        } else if (Starts("<?")) {
            xmlParsePI(parser_);
        } else if (Starts("<!--")) {
            xmlParseComment(parser_);
        } else if (Starts("<![CDATA[")) {
            xmlParseCDSect(parser_);
        } else if (Starts("<")) {
            ReadStartTag();
        } else if (!Has(1)) {
            Fail("the element '" + std::string(ViewOf(open_.back())) + "' is not closed");
        } else if (Starts("&")) {
            xmlParseReference(parser_);
        } else {
            xmlParseCharData(parser_, 0);
        }
        if (HasGoneWell() && Position() == before) Fail("there is a character that no document holds");
    }

    void ReadStartTag() {
        Take("<");
        const xmlChar* const name = xmlParseName(parser_);
        if (!name) {
            Fail("the name of an element was expected");
            return;
        }
        attributes_.clear();
        for (;;) {
            const bool isApart = xmlSkipBlankChars(parser_) > 0;
            if (Starts(">") || Starts("/>")) break;
            xmlChar* value = nullptr;
            const xmlChar* const attribute = isApart ? xmlParseAttribute(parser_, &value) : nullptr;
            ReadAttribute read{attribute, decltype(ReadAttribute::value)(value)};
            if (!attribute || !value) {
                Fail("the tag of the element '" + std::string(ViewOf(name)) + "' is malformed");
                return;
            }
            attributes_.push_back(std::move(read));
        }
        builder_.StartElement(parser_, name, attributes_);
        if (!HasGoneWell()) return;
        open_.push_back(name);
        if (Take("/>")) {
            EndElement();
        } else {
            Take(">");
        }
    }

    void ReadEndTag() {
        Take("</");
        const xmlChar* const name = xmlParseName(parser_);
        xmlSkipBlankChars(parser_);
        if (name == open_.back() && Take(">")) {  // the parser keeps each name once
            EndElement();
        } else {
            Fail("the end of the element '" + std::string(ViewOf(open_.back())) + "' was expected");
        }
    }

    void EndElement() {
        builder_.EndElement(parser_, open_.back());
        open_.pop_back();
    }

    static constexpr int kGrowth = 250;

    xmlParserCtxt* const parser_;
    DomBuilder& builder_;
    std::vector<const xmlChar*> open_;
    std::vector<ReadAttribute> attributes_;
};

// ---- libxml2's callbacks; no exception may pass through its frames
extern "C" {

// Comes when the XML declaration is read. The reader takes all that follows, and for libxml2 this was all.
void OnStartDocument(void* context) {
    auto* const parser = static_cast<xmlParserCtxt*>(context);
    DomBuilder& builder = BuilderOf(context);
    xmlSAX2StartDocument(context);
    try {
        parser->instate = XML_PARSER_CONTENT;
        if (parser->myDoc) ContentReader(parser, builder).Read();
    } catch (...) {
        builder.outOfMemory = true;
    }
    xmlStopParser(parser);
}

// The library has noted the error in the context when it comes here.
void OnError(void* context, const char*, ...) {
    DomBuilder& builder = BuilderOf(context);
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

// Null when the library has not come to the document's start.
xmlDoc* Parse(DomBuilder& builder, const void* bytes, int length, int options) {
    const QuietXmlErrors quiet;
    const std::unique_ptr<xmlParserCtxt, ContextDeleter> parser(
        xmlCreateMemoryParserCtxt(static_cast<const char*>(bytes), length));
    if (!parser) throw std::bad_alloc();
    parser->_private = &builder;
    parser->sax->startDocument = OnStartDocument;
    parser->sax->error = OnError;
    parser->sax->fatalError = OnError;
    parser->sax->warning = OnWarning;
    xmlCtxtUseOptions(parser.get(), options);
    xmlParseDocument(parser.get());
    return std::exchange(parser->myDoc, nullptr);
}

}  // namespace

std::shared_ptr<DomTree> ParseDocument(const void* bytes, std::size_t length, Encoding encoding,
                                       ParseFailure* failure) {
    auto tree = std::make_shared<DomTree>();
    DomBuilder builder(*tree);
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
    WalkSubtree(AsNode(tree.GetDocument()), enter, leave);
    for (xmlNode* const node : blanks) tree.Discard(node);
}

std::string Describe(const ParseFailure& failure) {
    std::string place;
    if (failure.line > 0)
        place = "line " + std::to_string(failure.line) + ", column " + std::to_string(failure.column) + ": ";
    return place + failure.reason + ".";
}

}  // namespace dom
