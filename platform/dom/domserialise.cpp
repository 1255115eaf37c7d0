// Writing over libxml2's serializer, which is given the declarations that are missing for the time of the writing.
#include "domserialise.h"

#include "domname.h"
#include "domscope.h"

#include <libxml/xmlsave.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

namespace dom {
namespace {

// Puts the declarations that are missing into nsDef, where the serializer finds them, and takes them out at the end.
class MissingDeclarations {
public:
    // Delegates, so that the destructor runs when the walk throws.
    explicit MissingDeclarations(xmlNode* top) : MissingDeclarations() {
        WalkSubtree(
            top, [this](xmlNode* node) { Enter(node); }, [this](const xmlNode* node) { Leave(node); });
    }
    MissingDeclarations(const MissingDeclarations&) = delete;
    MissingDeclarations& operator=(const MissingDeclarations&) = delete;
    ~MissingDeclarations() {
        for (xmlNode* const element : touched_) {
            xmlFreeNsList(element->nsDef);
            element->nsDef = nullptr;
        }
    }

private:
    MissingDeclarations() = default;

    void Enter(xmlNode* node) {
        if (node->type != XML_ELEMENT_NODE) return;
        scope_.OpenElement();
        bool declaresDefault = false;
        for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
            if (!IsDeclaration(attribute)) continue;
            const std::string_view prefix = DeclaredPrefix(attribute);
            scope_.Declare(prefix, AttributeText(attribute));
            declaresDefault = declaresDefault || prefix.empty();
        }
        // A caller that puts xmlns="..." on an element made without a namespace wants just that written.
        if (node->ns || !declaresDefault) Require(node, node->ns);
        for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
            if (attribute->ns && attribute->ns->prefix) Require(node, attribute->ns);
        }
    }

    void Leave(const xmlNode* node) {
        if (node->type == XML_ELEMENT_NODE) scope_.CloseElement();
    }

    void Require(xmlNode* element, const xmlNs* space) {
        const std::string_view prefix = space ? ViewOf(space->prefix) : std::string_view();
        const std::string_view uri = space ? ViewOf(space->href) : std::string_view();
        if (prefix == "xml") return;
        const std::string_view* const bound = scope_.Find(prefix);
        if (bound ? *bound == uri : uri.empty()) return;
        if (!element->nsDef) touched_.push_back(element);
        const xmlChar* const href = space ? space->href : XmlChars("");
        if (!xmlNewNs(element, href, space ? space->prefix : nullptr)) throw std::bad_alloc();
        scope_.Declare(prefix, uri);
    }

    DomScope<std::string_view> scope_;  // URIs
    std::vector<xmlNode*> touched_;
};

extern "C" int AppendBytes(void* context, const char* bytes, int length) {
    try {
        static_cast<std::string*>(context)->append(bytes, static_cast<std::size_t>(length));
        return length;
    } catch (...) {
        return -1;
    }
}

template <class Write>
std::string Save(int options, Write write) {
    std::string text;
    xmlSaveCtxt* const save = xmlSaveToIO(AppendBytes, nullptr, &text, "UTF-8", options | XML_SAVE_AS_XML);
    if (!save) throw std::bad_alloc();
    write(save);
    if (xmlSaveClose(save) < 0) throw std::runtime_error("the document could not be written");
    return text;
}

struct BufferDeleter {
    void operator()(xmlBuffer* buffer) const noexcept { xmlBufferFree(buffer); }
};

// As the document was read with it, without an encoding.
std::string Declaration(const xmlDoc& document) {
    if (document.standalone == -1) return "";
    const char* const standalone = document.standalone == 1   ? " standalone=\"yes\""
                                   : document.standalone == 0 ? " standalone=\"no\""
                                                              : "";
    return "<?xml version=\"1.0\"" + std::string(standalone) + "?>\n";
}

std::string EscapedText(xmlAttr* attribute) {
    const std::unique_ptr<xmlBuffer, BufferDeleter> buffer(xmlBufferCreate());
    if (!buffer) throw std::bad_alloc();
    const std::string text(AttributeText(attribute));
    xmlAttrSerializeTxtContent(buffer.get(), attribute->doc, attribute, XmlChars(text.c_str()));
    return std::string(ViewOf(xmlBufferContent(buffer.get())));
}

}  // namespace

std::string SerialiseDocument(xmlDoc* document) {
    const MissingDeclarations declarations(AsNode(document));
    return Save(0, [document](xmlSaveCtxt* save) { xmlSaveDoc(save, document); });
}

std::string SerialiseNode(xmlNode* node) {
    if (node->type == XML_DOCUMENT_NODE) {
        auto* const document = reinterpret_cast<xmlDoc*>(node);
        const MissingDeclarations declarations(node);
        return Declaration(*document) +
               Save(XML_SAVE_NO_DECL, [document](xmlSaveCtxt* save) { xmlSaveDoc(save, document); });
    }
    if (IsAttribute(node)) return WholeName(node) + "=\"" + EscapedText(AsAttribute(node)) + '"';
    const MissingDeclarations declarations(node);
    return Save(XML_SAVE_NO_DECL, [node](xmlSaveCtxt* save) { xmlSaveTree(save, node); });
}

}  // namespace dom
