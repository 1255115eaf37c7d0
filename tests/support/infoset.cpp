// The dump of a document, over its COM interface alone.
#include "infoset.h"

#include <bstr.h>
#include <comptr.h>
#include <textcodec.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace {

void Check(HRESULT result) {
    if (FAILED(result)) throw std::runtime_error("the document cannot be read");
}

std::string ValueOf(IXMLDOMNode* node) {
    Variant value;
    Check(node->get_nodeValue(value.Put()));
    return Utf8Text(value.Text());
}

std::string NodeNameOf(IXMLDOMNode* node) {
    Bstr name;
    Check(node->get_nodeName(name.Put()));
    return Utf8Text(name.View());
}

std::string NameOf(IXMLDOMNode* node) {
    Bstr uri, name;
    Check(node->get_namespaceURI(uri.Put()));
    Check(node->get_baseName(name.Put()));
    return '{' + Utf8Text(uri.View()) + '}' + Utf8Text(name.View());
}

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

class Dump {
public:
    explicit Dump(InfosetOptions options) : options_(options) {}

    void Add(IXMLDOMNode* node, std::size_t depth) {
        DOMNodeType type = NODE_INVALID;
        Check(node->get_nodeType(&type));
        if (type == NODE_TEXT || type == NODE_CDATA_SECTION) {
            text_ += ValueOf(node);
            textDepth_ = depth;
            return;
        }
        if (type == NODE_ELEMENT) Line(depth, NameOf(node) + AttributesOf(node));
        if (type == NODE_COMMENT) Line(depth, "comment " + Quoted(ValueOf(node)));
        // MSXML shows the XML declaration as an instruction; it is no part of what the document says.
        if (type == NODE_PROCESSING_INSTRUCTION && NodeNameOf(node) != "xml")
            Line(depth, "instruction " + NodeNameOf(node) + ' ' + Quoted(ValueOf(node)));
        if (type != NODE_ELEMENT && type != NODE_DOCUMENT) return;
        ComPtr<IXMLDOMNode> child, next;
        Check(node->get_firstChild(child.Put()));
        for (; child; child = next) {
            Add(child.Get(), depth + 1);
            Check(child->get_nextSibling(next.Put()));
        }
        FlushText();
    }
    std::string Take() {
        FlushText();
        return std::move(dump_);
    }

private:
    std::string AttributesOf(IXMLDOMNode* element) const {
        ComPtr<IXMLDOMNamedNodeMap> map;
        Check(element->get_attributes(map.Put()));
        std::vector<std::pair<bool, std::string>> attributes;  // namespace declarations behind the others
        for (ComPtr<IXMLDOMNode> attribute; map->nextNode(attribute.Put()) == S_OK;) {
            const std::string name = NodeNameOf(attribute.Get());
            const bool isDeclaration = name == "xmlns" || name.starts_with("xmlns:");
            if (isDeclaration && options_ == kIgnoreDeclarations) continue;
            attributes.emplace_back(isDeclaration, (isDeclaration ? name : NameOf(attribute.Get())) + '=' +
                                                       Quoted(ValueOf(attribute.Get())));
        }
        std::sort(attributes.begin(), attributes.end());
        std::string line;
        for (const auto& [isDeclaration, text] : attributes) line += ' ' + text;
        return line;
    }
    void FlushText() {
        if (!text_.empty()) dump_ += std::string(textDepth_ * 2, ' ') + Quoted(text_) + '\n';
        text_.clear();
    }
    void Line(std::size_t depth, const std::string& text) {
        FlushText();
        dump_ += std::string(depth * 2, ' ') + text + '\n';
    }

    const InfosetOptions options_;
    std::string dump_;
    std::string text_;  // not yet written: a neighbour may follow
    std::size_t textDepth_ = 0;
};

}  // namespace

std::string DumpInfoset(IXMLDOMNode* node, InfosetOptions options) {
    Dump dump(options);
    dump.Add(node, 0);
    return dump.Take();
}

std::string Utf8Text(WideStringView text) { return Utf8FromWide(text, BadText::Refuse); }
