// ReadSchemaDocument: libxml2 reads the bytes, its events become the tree.
#include <libxml/parser.h>
#include <quietxmlerrors.h>
#include <subsystem/hosterror.h>
#include <subsystem/xmlfile.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "schematree.h"

namespace {

struct ContextDeleter {
    void operator()(xmlParserCtxt* context) const noexcept { xmlFreeParserCtxt(context); }
};
struct DocumentDeleter {
    void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
};

constexpr std::pair<std::string_view, SchemaKind> kKinds[] = {
    {"PrintTicket", SchemaKind::PrintTicket},
    {"PrintCapabilities", SchemaKind::PrintCapabilities},
    {"Feature", SchemaKind::Feature},
    {"Option", SchemaKind::Option},
    {"ScoredProperty", SchemaKind::ScoredProperty},
    {"Property", SchemaKind::Property},
    {"ParameterDef", SchemaKind::ParameterDef},
    {"ParameterInit", SchemaKind::ParameterInit},
    {"ParameterRef", SchemaKind::ParameterRef},
    {"Value", SchemaKind::Value},
};

constexpr const char* kNoDocumentType = "a document type declaration (<!DOCTYPE) is not accepted; take it out";

std::string Text(const xmlChar* text) { return text ? reinterpret_cast<const char*>(text) : std::string(); }

SchemaKind KindOf(std::string_view local, std::string_view uri) {
    if (uri != facts::kFrameworkNamespace) return SchemaKind::Foreign;
    for (const auto& [name, kind] : kKinds)
        if (name == local) return kind;
    return SchemaKind::Unknown;
}

// The parser stands at the end of the start tag, in which no second '<' can be.
int FindStartLine(const xmlParserInput& input) {
    const xmlChar* start = input.cur;
    int line = input.line;
    for (; start > input.base && *start != '<'; --start)
        if (*start == '\n' && start != input.cur) --line;
    return *start == '<' ? line : input.line;
}

// What one parse knows; the context's _private points to it.
struct ParseState {
    std::unique_ptr<SchemaElement> root;
    SchemaElement* open = nullptr;
    std::string failure;  // the first is the one that is reported
    bool outOfMemory = false;

    static ParseState& Of(void* context) {
        return *static_cast<ParseState*>(static_cast<xmlParserCtxt*>(context)->_private);
    }

    // No exception may pass through libxml2's frames.
    template <class Work>
    static void Guard(void* context, Work work) {
        try {
            work(Of(context));
        } catch (...) {
            Of(context).outOfMemory = true;
            xmlStopParser(static_cast<xmlParserCtxt*>(context));
        }
    }
};

extern "C" {

static void OnStart(void* context, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri, int declarations,
                    const xmlChar** declared, int attributes, int, const xmlChar** values) {
    ParseState::Guard(context, [&](ParseState& state) {
        auto element = std::make_unique<SchemaElement>();
        element->parent = state.open;
        element->line = FindStartLine(*static_cast<xmlParserCtxt*>(context)->input);
        element->prefix = Text(prefix);
        element->local = Text(local);
        element->kind = KindOf(element->local, Text(uri));
        for (int index = 0; index < declarations; ++index, declared += 2)
            element->declarations[Text(declared[0])] = Text(declared[1]);
        for (int index = 0; index < attributes; ++index, values += 5)
            element->attributes.push_back(
                {Text(values[1]), Text(values[0]), Text(values[2]),
                 std::string(reinterpret_cast<const char*>(values[3]), reinterpret_cast<const char*>(values[4]))});
        SchemaElement* const added = element.get();
        if (state.open) {
            state.open->children.push_back(std::move(element));
        } else {
            state.root = std::move(element);
        }
        state.open = added;
    });
}

// One that HoldsDocumentType does not see, in an encoding that is neither UTF-8 nor UTF-16.
static void OnDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    ParseState::Guard(context, [&](ParseState& state) {
        state.failure = kNoDocumentType;
        xmlStopParser(static_cast<xmlParserCtxt*>(context));
    });
}

static void OnEnd(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    ParseState& state = ParseState::Of(context);
    if (state.open) state.open = state.open->parent;
}

static void OnText(void* context, const xmlChar* text, int length) {
    ParseState::Guard(context, [&](ParseState& state) {
        if (state.open && length > 0)
            state.open->text.append(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
    });
}

static void OnComment(void* context, const xmlChar*) {
    ParseState& state = ParseState::Of(context);
    if (state.open) state.open->holdsRemark = true;
}

static void OnInstruction(void* context, const xmlChar*, const xmlChar*) { OnComment(context, nullptr); }

// The library has noted the error in the context when it comes here.
static void OnError(void* context, const char*, ...) {
    const xmlError& error = static_cast<xmlParserCtxt*>(context)->lastError;
    // Documents exist whose private namespace has a name with blanks.
    if (error.code == XML_WAR_NS_URI) return;
    ParseState::Guard(context, [&](ParseState& state) {
        if (!state.failure.empty()) return;
        std::string reason = error.message ? error.message : "the document is not well-formed";
        std::replace(reason.begin(), reason.end(), '\n', ' ');
        reason.resize(TrimXmlSpace(reason).size());
        state.failure = "line " + std::to_string(error.line) + ", column " + std::to_string(error.int2) + ": " + reason;
    });
}

static void OnWarning(void*, const char*, ...) {}

}  // extern "C"

}  // namespace

SchemaDocument ReadSchemaDocument(std::string_view bytes) {
    if (HoldsDocumentType(bytes)) throw InputError(kNoDocumentType);
    if (bytes.empty()) throw InputError("the document is empty");
    if (const std::string fault = FindEncodingFault(bytes); !fault.empty()) throw InputError(fault);
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw InputError("the document is too large");

    ParseState state;
    const std::unique_ptr<xmlParserCtxt, ContextDeleter> parser(xmlNewParserCtxt());
    if (!parser) throw std::bad_alloc();
    parser->_private = &state;
    xmlSAXHandler& events = *parser->sax;
    events.startElementNs = OnStart;
    events.endElementNs = OnEnd;
    events.characters = OnText;
    events.ignorableWhitespace = OnText;
    events.cdataBlock = OnText;
    events.internalSubset = OnDocumentType;
    events.comment = OnComment;
    events.processingInstruction = OnInstruction;
    events.error = OnError;
    events.fatalError = OnError;
    events.warning = OnWarning;
    const QuietXmlErrors quiet;
    const std::unique_ptr<xmlDoc, DocumentDeleter> document(xmlCtxtReadMemory(
        parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, XML_PARSE_NONET));
    if (state.outOfMemory) throw std::bad_alloc();
    if (!state.failure.empty()) throw InputError(state.failure);
    if (!document || !state.root) throw InputError("the document is not well-formed");
    return {std::move(state.root), Text(document->encoding)};
}
